// The two ways of a pixel, in 8 and in 16 bits.
#include "media/video_exchange.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

#include "media/frame_rows.h"
#include "media/pixel_formats.h"
#include "media/video_alpha.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::media {
namespace {

using headless::WorldBuffer;

constexpr std::uint32_t kHostWhite = 32768;
constexpr std::uint32_t kFileWhite = 65535;

// word * 32768 / 65535, rounded to the nearest: of an even word a little more than its half, of an
// odd one a little more than half a step above it.
std::uint16_t ToHost(std::uint16_t word) {
  return static_cast<std::uint16_t>((std::uint32_t{word} + 1) / 2);
}

// The way back, rounded to the nearest; values above white become white.
const std::vector<std::uint16_t>& ToFile() {
  static const std::vector<std::uint16_t> table = [] {
    std::vector<std::uint16_t> words(std::numeric_limits<std::uint16_t>::max() + 1);
    for (std::uint32_t value = 0; value < words.size(); ++value) {
      const std::uint32_t limited = std::min(value, kHostWhite);
      words[value] = static_cast<std::uint16_t>(
          (std::uint64_t{limited} * kFileWhite * 2 + kHostWhite) / (std::uint64_t{2} * kHostWhite));
    }
    return words;
  }();
  return table;
}

// Whether alpha, in its place among the four channels of a pixel, is white in the whole row. Pixels
// are words here, of which it is known which bits all have in common.
template <typename Word, typename Channel>
bool IsOpaque(const Channel* row, int width, std::size_t place) {
  static_assert(sizeof(Word) == 4 * sizeof(Channel));
  Word common = std::numeric_limits<Word>::max();
  for (int x = 0; x < width; ++x, row += 4) {
    Word pixel = 0;
    std::memcpy(&pixel, row, sizeof(pixel));
    common &= pixel;
  }
  std::array<Channel, 4> channels{};
  std::memcpy(channels.data(), &common, sizeof(common));
  return channels.at(place) == std::numeric_limits<Channel>::max();
}

struct Row16 {
  const std::uint16_t* file;
  const PF_Pixel16* given;
  const PF_Pixel16* result;
};

void TakeRow16(const Row16& row, int width, const std::vector<std::uint16_t>& toFile,
               std::uint16_t* out) {
  const std::size_t bytes = static_cast<std::size_t>(width) * sizeof(PF_Pixel16);
  if (std::memcmp(row.given, row.result, bytes) == 0) {
    std::memcpy(out, row.file, bytes);
    return;
  }
  for (int x = 0; x < width; ++x, out += 4) {
    const PF_Pixel16& before = row.given[x];
    const PF_Pixel16& after = row.result[x];
    const std::uint16_t* file = row.file + std::ptrdiff_t{x} * 4;
    out[0] = before.red == after.red ? file[0] : toFile[after.red];
    out[1] = before.green == after.green ? file[1] : toFile[after.green];
    out[2] = before.blue == after.blue ? file[2] : toFile[after.blue];
    out[3] = before.alpha == after.alpha ? file[3] : toFile[after.alpha];
  }
}

// Whether the libraries may convert frames of planar formats right into the world. Elsewhere a
// vector that they store may end behind the row, as some do anyway of packed formats.
bool TakesPlanarFrames(const WorldBuffer& world) {
  constexpr int kWidestVector = 64;
  return !world.Deep() && world.RowBytes() % kWidestVector == 0;
}

bool IsPlanar(AVPixelFormat format) {
  return (DescriptorOf(format).flags & AV_PIX_FMT_FLAG_PLANAR) != 0;
}

void KeepWorld(void* /*owner*/, std::uint8_t* /*data*/) {}

// The pixels of an 8-bit world as a frame; valid as long as the world.
FrameHandle FrameIn(WorldBuffer& world) {
  FrameHandle frame = MakeFrame();
  frame->width = world.Width();
  frame->height = world.Height();
  frame->format = kRgb8;
  frame->data[0] = reinterpret_cast<std::uint8_t*>(world.Row(0));
  frame->linesize[0] = world.RowBytes();
  // Without a counted buffer the libraries would take memory of their own.
  frame->buf[0] = av_buffer_create(
      frame->data[0],
      static_cast<std::size_t>(world.RowBytes()) * static_cast<std::size_t>(world.Height()),
      KeepWorld, nullptr, 0);
  if (frame->buf[0] == nullptr) throw std::bad_alloc();
  return frame;
}

}  // namespace

void GiveFrame(const AVFrame& frame, WorldBuffer& world) {
  for (int y = 0; y < frame.height; ++y) {
    if (!world.Deep()) {
      // The same bytes in the same order.
      std::memcpy(world.Row(y), FrameRow<std::uint8_t>(frame, y),
                  static_cast<std::size_t>(frame.width) * sizeof(PF_Pixel));
      continue;
    }
    const std::uint16_t* in = FrameRow<std::uint16_t>(frame, y);
    auto* out = reinterpret_cast<PF_Pixel16*>(world.Row(y));
    for (int x = 0; x < frame.width; ++x, in += 4) {
      out[x] = {ToHost(in[3]), ToHost(in[0]), ToHost(in[1]), ToHost(in[2])};
    }
  }
}

bool TakeFrame(const AVFrame& frame, const WorldBuffer& given, const WorldBuffer& result,
               const TakeChoice& choice, AVFrame& taken) {
  bool opaque = true;
  for (int y = 0; y < taken.height; ++y) {
    if (result.Deep()) {
      auto* out = FrameRow<std::uint16_t>(taken, y);
      TakeRow16(
          {FrameRow<std::uint16_t>(frame, y), reinterpret_cast<const PF_Pixel16*>(given.Row(y)),
           reinterpret_cast<const PF_Pixel16*>(result.Row(y))},
          taken.width, ToFile(), out);
      opaque = opaque && IsOpaque<std::uint64_t>(out, taken.width, 3);
    } else {
      auto* out = FrameRow<std::uint8_t>(taken, y);
      std::memcpy(out, result.Row(y), static_cast<std::size_t>(taken.width) * sizeof(PF_Pixel));
      opaque = opaque && IsOpaque<std::uint32_t>(out, taken.width, 0);
    }
  }
  if (!opaque && choice.overBlack) LayOverBlack(taken);
  return !opaque;
}

FrameExchange::FrameExchange(int width, int height, bool deep, int threads, AlphaMeaning alpha)
    : converter_(threads),
      alpha_(alpha),
      given_(width, height, deep, {.fresh = headless::FreshPixels::kUnset}),
      result_(width, height, deep, {.fresh = headless::FreshPixels::kUnset}),
      inWorld_(TakesPlanarFrames(given_) ? FrameIn(given_) : nullptr) {}

// Most videos need none.
AVFrame& FrameExchange::OwnFrame() {
  if (rgb_ == nullptr) {
    rgb_ = MakeFrame(given_.Width(), given_.Height(), given_.Deep() ? kRgb16 : kRgb8);
  }
  return *rgb_;
}

void FrameExchange::Give(const AVFrame& decoded, const std::filesystem::path& file) {
  const auto format = static_cast<AVPixelFormat>(decoded.format);
  const bool intoWorld = inWorld_ != nullptr && IsPlanar(format);
  AVFrame& rgb = intoWorld ? *inWorld_ : OwnFrame();
  converter_.Convert(decoded, rgb, file);
  // A packed format may store a channel for nothing, as "bgr0" does; what it holds became alpha.
  const bool mayHoldAnything = !HasAlpha(format) && !IsPlanar(format);
  if (alpha_ == AlphaMeaning::kIgnored || mayHoldAnything) MakeOpaque(rgb);
  if (alpha_ == AlphaMeaning::kPremultiplied && HasAlpha(format)) {
    GiveDividedByAlpha(rgb, given_);
  } else if (!intoWorld) {
    GiveFrame(rgb, given_);
  }
}

bool FrameExchange::Take(const TakeChoice& choice, AVFrame& taken) {
  // Of 8 bits nothing is taken from the frame that came in.
  return TakeFrame(rgb_ == nullptr ? *inWorld_ : *rgb_, given_, result_, choice, taken);
}

}  // namespace vitrell::media
