// The two ways of a pixel, in 8 and in 16 bits.
#include "media/video_exchange.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace vitrell::media {
namespace {

using headless::WorldBuffer;

constexpr std::uint32_t kHostWhite = 32768;
constexpr std::uint16_t kFileWhite = 65535;
constexpr std::size_t kWords = 65536;

using Table = std::vector<std::uint16_t>;

// value * to / from, rounded to the nearest; values above white become white.
Table MakeTable(std::uint32_t from, std::uint32_t to) {
  Table table(kWords);
  for (std::uint32_t value = 0; value < kWords; ++value) {
    const std::uint32_t limited = std::min(value, from);
    table[value] = static_cast<std::uint16_t>(
        (static_cast<std::uint64_t>(limited) * to * 2 + from) / (2ULL * from));
  }
  return table;
}

const Table& ToHost() {
  static const Table table = MakeTable(kFileWhite, kHostWhite);
  return table;
}

const Table& ToFile() {
  static const Table table = MakeTable(kHostWhite, kFileWhite);
  return table;
}

template <typename Channel>
Channel* RowOf(const AVFrame& frame, int y) {
  return reinterpret_cast<Channel*>(frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0]);
}

// colour * alpha / white, rounded to the nearest.
template <typename Channel>
Channel Covered(Channel colour, Channel alpha) {
  constexpr std::uint32_t kWhite = static_cast<Channel>(-1);
  return static_cast<Channel>((std::uint32_t{colour} * alpha + kWhite / 2) / kWhite);
}

bool TakeRow8(const PF_Pixel* result, int width, bool overBlack, std::uint8_t* out) {
  std::uint8_t least = 255;
  for (int x = 0; x < width; ++x, out += 4) {
    const PF_Pixel pixel = result[x];
    least = std::min<std::uint8_t>(least, pixel.alpha);
    if (overBlack) {
      out[0] = 255;
      out[1] = Covered<std::uint8_t>(pixel.red, pixel.alpha);
      out[2] = Covered<std::uint8_t>(pixel.green, pixel.alpha);
      out[3] = Covered<std::uint8_t>(pixel.blue, pixel.alpha);
    } else {
      out[0] = pixel.alpha;
      out[1] = pixel.red;
      out[2] = pixel.green;
      out[3] = pixel.blue;
    }
  }
  return least < 255;
}

struct Row16 {
  const std::uint16_t* file;
  const PF_Pixel16* given;
  const PF_Pixel16* result;
};

bool TakeRow16(const Row16& row, int width, bool overBlack, const Table& toFile,
               std::uint16_t* out) {
  std::uint16_t least = kFileWhite;
  for (int x = 0; x < width; ++x, out += 4) {
    const PF_Pixel16& before = row.given[x];
    const PF_Pixel16& after = row.result[x];
    const std::uint16_t* file = row.file + std::ptrdiff_t{x} * 4;
    out[0] = before.red == after.red ? file[0] : toFile[after.red];
    out[1] = before.green == after.green ? file[1] : toFile[after.green];
    out[2] = before.blue == after.blue ? file[2] : toFile[after.blue];
    out[3] = before.alpha == after.alpha ? file[3] : toFile[after.alpha];
    least = std::min(least, out[3]);
    if (!overBlack) continue;
    for (int i = 0; i < 3; ++i) out[i] = Covered<std::uint16_t>(out[i], out[3]);
    out[3] = kFileWhite;
  }
  return least < kFileWhite;
}

}  // namespace

void MakeOpaque(AVFrame& frame) {
  const bool deep = frame.format == kRgb16;
  for (int y = 0; y < frame.height; ++y) {
    if (deep) {
      std::uint16_t* row = RowOf<std::uint16_t>(frame, y);
      for (int x = 0; x < frame.width; ++x) row[std::ptrdiff_t{x} * 4 + 3] = kFileWhite;
    } else {
      std::uint8_t* row = RowOf<std::uint8_t>(frame, y);
      for (int x = 0; x < frame.width; ++x) row[std::ptrdiff_t{x} * 4] = 255;
    }
  }
}

void LayOverBlack(AVFrame& frame) {
  const bool deep = frame.format == kRgb16;
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      if (deep) {
        std::uint16_t* pixel = RowOf<std::uint16_t>(frame, y) + std::ptrdiff_t{x} * 4;
        for (int i = 0; i < 3; ++i) pixel[i] = Covered<std::uint16_t>(pixel[i], pixel[3]);
        pixel[3] = kFileWhite;
      } else {
        std::uint8_t* pixel = RowOf<std::uint8_t>(frame, y) + std::ptrdiff_t{x} * 4;
        for (int i = 1; i < 4; ++i) pixel[i] = Covered<std::uint8_t>(pixel[i], pixel[0]);
        pixel[0] = 255;
      }
    }
  }
}

void GiveFrame(const AVFrame& frame, WorldBuffer& world) {
  const Table& toHost = ToHost();
  for (int y = 0; y < frame.height; ++y) {
    if (!world.Deep()) {
      // The same bytes in the same order.
      std::memcpy(world.Row(y), RowOf<std::uint8_t>(frame, y),
                  static_cast<std::size_t>(frame.width) * sizeof(PF_Pixel));
      continue;
    }
    const std::uint16_t* in = RowOf<std::uint16_t>(frame, y);
    auto* out = reinterpret_cast<PF_Pixel16*>(world.Row(y));
    for (int x = 0; x < frame.width; ++x, in += 4) {
      out[x] = {toHost[in[3]], toHost[in[0]], toHost[in[1]], toHost[in[2]]};
    }
  }
}

bool TakeFrame(const AVFrame& frame, const WorldBuffer& given, const WorldBuffer& result,
               const TakeChoice& choice, AVFrame& taken) {
  const Table& toFile = ToFile();
  bool transparent = false;
  for (int y = 0; y < taken.height; ++y) {
    bool row = false;
    if (result.Deep()) {
      row = TakeRow16(
          {RowOf<std::uint16_t>(frame, y), reinterpret_cast<const PF_Pixel16*>(given.Row(y)),
           reinterpret_cast<const PF_Pixel16*>(result.Row(y))},
          taken.width, choice.overBlack, toFile, RowOf<std::uint16_t>(taken, y));
    } else {
      row = TakeRow8(reinterpret_cast<const PF_Pixel*>(result.Row(y)), taken.width,
                     choice.overBlack, RowOf<std::uint8_t>(taken, y));
    }
    transparent = transparent || row;
  }
  return transparent;
}

FrameExchange::FrameExchange(int width, int height, bool deep, int threads)
    : converter_(threads),
      rgb_(MakeFrame(width, height, deep ? kRgb16 : kRgb8)),
      given_(width, height, deep, {.fresh = headless::FreshPixels::kUnset}),
      result_(width, height, deep, {.fresh = headless::FreshPixels::kUnset}) {}

void FrameExchange::Give(const AVFrame& decoded, const std::filesystem::path& file) {
  converter_.Convert(decoded, *rgb_, file);
  if (!HasAlpha(static_cast<AVPixelFormat>(decoded.format))) MakeOpaque(*rgb_);
  GiveFrame(*rgb_, given_);
}

bool FrameExchange::Take(const TakeChoice& choice, AVFrame& taken) {
  return TakeFrame(*rgb_, given_, result_, choice, taken);
}

}  // namespace vitrell::media
