// The box blur by adding up every tap, in integers; slow and plain.
#ifndef VITRELL_TESTS_BLUR_FAST_BOX_REFERENCE_H_
#define VITRELL_TESTS_BLUR_FAST_BOX_REFERENCE_H_

#include <cstdint>
#include <vector>

#include "host/picture.h"

namespace vitrell {

// How often each of n pixels is hit by the taps of a window, found by walking tap by tap: a step to
// the right of the first or last pixel reflects as the picture's edges do.
inline std::vector<std::int64_t> TapCounts(std::int64_t n, std::int64_t center,
                                           std::int64_t radius) {
  std::vector<std::int64_t> counts(static_cast<std::size_t>(n), 0);
  const std::int64_t period = 2 * n - 1;  // 0, 1, ..., n - 1, n - 1, ..., 1.
  std::int64_t phase = ((center - radius) % period + period) % period;
  for (std::int64_t taps = 2 * radius + 1; taps > 0; --taps) {
    ++counts[static_cast<std::size_t>(phase < n ? phase : period - phase)];
    phase = phase + 1 < period ? phase + 1 : 0;
  }
  return counts;
}

template <typename Pixel>
class BoxReference {
 public:
  BoxReference(A_long width, A_long height, std::int64_t radius) : taps_(2 * radius + 1) {
    for (A_long x = 0; x < width; ++x) {
      columns_.push_back(TapCounts(width, x, radius));
    }
    for (A_long y = 0; y < height; ++y) {
      rows_.push_back(TapCounts(height, y, radius));
    }
  }

  void AlongRows(const Picture<Pixel>& from, Picture<Pixel>& to) const {
    for (A_long y = 0; y < from.get()->height; ++y) {
      for (A_long x = 0; x < from.get()->width; ++x) {
        Store(
            columns_[static_cast<std::size_t>(x)],
            [&](A_long i) -> const Pixel& { return from.At(i, y); }, from.At(x, y), to.At(x, y));
      }
    }
  }
  void DownColumns(const Picture<Pixel>& from, Picture<Pixel>& to) const {
    for (A_long y = 0; y < from.get()->height; ++y) {
      for (A_long x = 0; x < from.get()->width; ++x) {
        Store(
            rows_[static_cast<std::size_t>(y)],
            [&](A_long i) -> const Pixel& { return from.At(x, i); }, from.At(x, y), to.At(x, y));
      }
    }
  }

 private:
  template <typename PixelAt>
  void Store(const std::vector<std::int64_t>& counts, const PixelAt& pixelAt, const Pixel& in,
             Pixel& out) const {
    std::int64_t sums[3] = {0, 0, 0};
    for (std::size_t i = 0; i < counts.size(); ++i) {
      const Pixel& tap = pixelAt(static_cast<A_long>(i));
      sums[0] += counts[i] * tap.red;
      sums[1] += counts[i] * tap.green;
      sums[2] += counts[i] * tap.blue;
    }
    out = {in.alpha, Mean(sums[0]), Mean(sums[1]), Mean(sums[2])};
  }
  decltype(Pixel::red) Mean(std::int64_t sum) const {
    return static_cast<decltype(Pixel::red)>(static_cast<double>(sum) / static_cast<double>(taps_) +
                                             0.5);
  }

  std::int64_t taps_;
  std::vector<std::vector<std::int64_t>> columns_;
  std::vector<std::vector<std::int64_t>> rows_;
};

}  // namespace vitrell

#endif  // VITRELL_TESTS_BLUR_FAST_BOX_REFERENCE_H_
