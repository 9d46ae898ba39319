// Scaling rows of words.
#include "media/video_words.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "media/frame_rows.h"

namespace vitrell::media {
namespace {

// 65535 to 255 * 256.
constexpr std::uint32_t kOurs = 257;
constexpr std::uint32_t kTheirs = 256;
constexpr std::uint32_t kWordWhite = 65535;
constexpr int kWordBits = 16;

std::uint16_t Widened(std::uint16_t word) {
  return static_cast<std::uint16_t>(std::min(kWordWhite, (word * kOurs + kTheirs / 2) / kTheirs));
}

std::uint16_t Narrowed(std::uint16_t word) {
  return static_cast<std::uint16_t>((word * kTheirs + kOurs / 2) / kOurs);
}

// The upper bits, repeated below themselves.
std::uint16_t Repeated(std::uint16_t word, int bits) {
  const std::uint32_t upper = static_cast<std::uint32_t>(word) >> (kWordBits - bits);
  std::uint32_t filled = 0;
  for (int place = kWordBits - bits; place > -bits; place -= bits) {
    filled |= place >= 0 ? upper << place : upper >> -place;
  }
  return static_cast<std::uint16_t>(filled);
}

}  // namespace

bool HasExactWords(AVPixelFormat format) {
  constexpr std::array kExact = {
      AV_PIX_FMT_GBRP9,    AV_PIX_FMT_GBRP10,   AV_PIX_FMT_GBRP12,   AV_PIX_FMT_GBRP14,
      AV_PIX_FMT_GBRP16,   AV_PIX_FMT_GBRAP10,  AV_PIX_FMT_GBRAP12,  AV_PIX_FMT_GBRAP16,
      AV_PIX_FMT_RGB48LE,  AV_PIX_FMT_RGB48BE,  AV_PIX_FMT_BGR48LE,  AV_PIX_FMT_BGR48BE,
      AV_PIX_FMT_RGBA64LE, AV_PIX_FMT_RGBA64BE, AV_PIX_FMT_BGRA64LE, AV_PIX_FMT_BGRA64BE};
  return std::find(kExact.begin(), kExact.end(), format) != kExact.end();
}

void WidenWords(AVFrame& frame, int alphaBits) {
  for (int y = 0; y < frame.height; ++y) {
    std::uint16_t* pixel = FrameRow<std::uint16_t>(frame, y);
    for (int x = 0; x < frame.width; ++x, pixel += 4) {
      for (int i = 0; i < 3; ++i) pixel[i] = Widened(pixel[i]);
      if (alphaBits > 0) pixel[3] = Repeated(pixel[3], alphaBits);
    }
  }
}

void NarrowWords(const AVFrame& frame, AVFrame& narrowed) {
  for (int y = 0; y < frame.height; ++y) {
    const std::uint16_t* from = FrameRow<std::uint16_t>(frame, y);
    std::uint16_t* to = FrameRow<std::uint16_t>(narrowed, y);
    for (int x = 0; x < frame.width; ++x, from += 4, to += 4) {
      for (int i = 0; i < 3; ++i) to[i] = Narrowed(from[i]);
      to[3] = from[3];
    }
  }
}

void BytesToWords(const AVFrame& bytes, AVFrame& words) {
  const auto widened = [](std::uint8_t byte) { return static_cast<std::uint16_t>(byte * kOurs); };
  for (int y = 0; y < bytes.height; ++y) {
    const std::uint8_t* from = FrameRow<std::uint8_t>(bytes, y);
    std::uint16_t* to = FrameRow<std::uint16_t>(words, y);
    for (int x = 0; x < bytes.width; ++x, from += 4, to += 4) {
      to[0] = widened(from[1]);
      to[1] = widened(from[2]);
      to[2] = widened(from[3]);
      to[3] = widened(from[0]);
    }
  }
}

}  // namespace vitrell::media
