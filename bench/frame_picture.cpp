// The input images of the measured frames.
#include "bench/frame_picture.h"

#include <array>
#include <cstddef>

#include "bench/picture.h"

namespace vitrell::bench {
namespace {

constexpr std::int32_t kWhite8 = 255;
constexpr std::int32_t kWhite16 = 32768;

// Alpha, red, green and blue in the range of the depth.
using Channels = std::array<std::int32_t, 4>;

void Put(headless::WorldBuffer& buffer, std::int32_t x, std::int32_t y, const Channels& c) {
  if (buffer.Deep()) {
    buffer.At16(x, y) = {static_cast<A_u_short>(c[0]), static_cast<A_u_short>(c[1]),
                         static_cast<A_u_short>(c[2]), static_cast<A_u_short>(c[3])};
  } else {
    buffer.At8(x, y) = {static_cast<A_u_char>(c[0]), static_cast<A_u_char>(c[1]),
                        static_cast<A_u_char>(c[2]), static_cast<A_u_char>(c[3])};
  }
}

int Folded(std::int32_t position, int size) {
  const int place = position % (2 * size);
  return place < size ? place : 2 * size - 1 - place;
}

}  // namespace

headless::WorldBuffer MakeStreet(std::int32_t width, std::int32_t height, bool deep) {
  static const Picture<std::uint16_t> kStreet = ReadPicture16(VITRELL_BENCH_PICTURE);
  headless::WorldBuffer buffer(width, height, deep);
  const std::int32_t white = deep ? kWhite16 : kWhite8;
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      const std::uint16_t* const rgba =
          &kStreet.rgba[kStreet.At(Folded(x, kStreet.width), Folded(y, kStreet.height))];
      const auto channel = [&](int i) { return (rgba[i] * white + 32767) / 65535; };
      Put(buffer, x, y, {channel(3), channel(0), channel(1), channel(2)});
    }
  }
  return buffer;
}

headless::WorldBuffer MakeNoise(std::int32_t width, std::int32_t height, bool deep) {
  headless::WorldBuffer buffer(width, height, deep);
  std::uint32_t state = 12345;
  const std::int32_t white = deep ? kWhite16 : kWhite8;
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      state = state * 1664525U + 1013904223U;
      const auto noise = static_cast<std::int32_t>(state >> 24) * white / 1024;
      const bool spot = (state >> 20) % 211 == 0;
      Put(buffer, x, y,
          {x + y < height / 4 ? 0 : white - (x + y < height ? noise : 0),
           spot ? white : x * (white / 2) / width + noise,
           spot ? white : y * (white / 2) / height + noise, (white - noise) / 3});
    }
  }
  return buffer;
}

}  // namespace vitrell::bench
