// Conversions between samples of files and channels of the effect's pixels; for the sources of this
// folder.
#ifndef VITRELL_MEDIA_SAMPLE_MATHS_H_
#define VITRELL_MEDIA_SAMPLE_MATHS_H_

#include <OpenImageIO/half.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>
#include <vector>

#include "headless/world_buffer.h"
#include "media/picture.h"

namespace vitrell::media {

// In the order alpha, red, green, blue of the host's pixels.
using Argb = std::array<double, 4>;

template <typename Sample>
constexpr bool kIsFloat = std::is_floating_point_v<Sample> || std::is_same_v<Sample, half>;

template <typename Sample>
double Normalised(Sample sample) {
  if constexpr (kIsFloat<Sample>) {
    return static_cast<double>(static_cast<float>(sample));
  } else {
    return static_cast<double>(sample) / std::numeric_limits<Sample>::max();
  }
}

template <typename Sample>
Sample Quantised(double value) {
  if constexpr (kIsFloat<Sample>) {
    return static_cast<Sample>(static_cast<float>(value));
  } else {
    constexpr double kWhite = std::numeric_limits<Sample>::max();
    return std::isnan(value) ? Sample{0}
                             : static_cast<Sample>(std::clamp(value, 0.0, 1.0) * kWhite + 0.5);
  }
}

// A sample in another type. The same type keeps every bit, those of NaN too.
template <typename Out, typename Sample>
Out Converted(Sample sample) {
  if constexpr (std::is_same_v<Sample, Out>) {
    return sample;
  } else {
    return Quantised<Out>(Normalised(sample));
  }
}

// The file's pixel with straight (unassociated) alpha, not clipped.
template <typename Sample>
Argb StraightPixel(const Sample* pixel, const ChannelLayout& layout, bool straight) {
  const double alpha = layout.HasAlpha() ? Normalised(pixel[layout.alpha]) : 1.0;
  Argb argb = {alpha, Normalised(pixel[layout.red]), Normalised(pixel[layout.green]),
               Normalised(pixel[layout.blue])};
  if (!straight && alpha > 0) {
    for (std::size_t i = 1; i < 4; ++i) argb[i] /= alpha;
  }
  return argb;
}

// Also true for NaN. A tiny excess above white is a rounding error of dividing half floats by alpha
// and does not count.
inline bool NeedsClipping(double value) {
  constexpr double kTolerance = 1.0 / 512;
  return !(value >= 0 && value <= 1 + kTolerance);
}

template <typename Pixel>
constexpr double kWhite = std::is_same_v<Pixel, PF_Pixel16> ? 32768 : 255;

template <typename Pixel>
auto HostChannel(double value) {
  using Channel = decltype(Pixel::alpha);
  const double limited = std::isnan(value) ? 0.0 : std::clamp(value, 0.0, 1.0);
  return static_cast<Channel>(limited * kWhite<Pixel> + 0.5);
}

template <typename Pixel>
Pixel* RowOf(headless::WorldBuffer& world, int y) {
  return reinterpret_cast<Pixel*>(world.Row(y));
}

template <typename Pixel>
const Pixel* RowOf(const headless::WorldBuffer& world, int y) {
  return reinterpret_cast<const Pixel*>(world.Row(y));
}

template <typename Pixel>
auto ChannelsOf(const Pixel& pixel) {
  return std::array{pixel.alpha, pixel.red, pixel.green, pixel.blue};
}

// A lookup table of the function over all values of an integer type.
template <typename From, typename Function>
auto TableOf(const Function& function) {
  std::vector<decltype(function(From{}))> table;
  table.reserve(std::size_t{std::numeric_limits<From>::max()} + 1);
  for (unsigned value = 0; value <= std::numeric_limits<From>::max(); ++value) {
    table.push_back(function(static_cast<From>(value)));
  }
  return table;
}

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_SAMPLE_MATHS_H_
