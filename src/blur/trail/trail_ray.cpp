// One ray of the trail: its points, and the weighted average from each of them towards the centre.
#include "blur/trail/trail_ray.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <limits>

#include "base/line_walk.h"
#include "base/numeric.h"
#include "base/pixel_access.h"

namespace vitrell {
namespace {

constexpr double kRounding = 0x1p-53;     // Bound of the relative error of one operation.
constexpr double kLargestWhole = 0x1p53;  // Doubles up to here represent every integer.

template <typename Pixel>
constexpr double kMaxChannel = std::numeric_limits<ChannelOf<Pixel>>::max();

}  // namespace

int ComputeLinePTs(int x0, int y0, int x1, int y1, PF_FixedPoint* points) {
  int count = 0;
  WalkLine(x0, y0, x1, y1, [&](std::int64_t x, std::int64_t y) {
    points[count++] = {static_cast<PF_Fixed>(x), static_cast<PF_Fixed>(y)};
  });
  return count;
}

std::int64_t CountRayPoints(std::int64_t x, std::int64_t y, TrailCenter center) {
  return CountLinePoints(x, y, center.x, center.y);
}

bool TrailWeights::Fill(std::int32_t tapCount, std::int64_t maxRayPoints) {
  tapCount_ = static_cast<std::size_t>(std::max(tapCount, 0));
  usedCount_ = std::min(tapCount_, static_cast<std::size_t>(maxRayPoints));
  if (!weights_.Allocate(usedCount_) || !sums_.Allocate(usedCount_ + 1)) {
    return false;
  }
  sums_[0] = 0;
  for (std::size_t j = 0; j < usedCount_; ++j) {
    const double ratio = static_cast<double>(tapCount - static_cast<std::int32_t>(j)) / tapCount;
    weights_[j] = ratio * ratio;
    sums_[j + 1] = sums_[j] + weights_[j];
  }
  return true;
}

// Roundings: three in a weight (the quotient enters the square twice), one in its product, n - 1 in
// a sum of n positive terms, one in the final quotient, and one in the quotient of the exact sums.
// For colours and weights together that is below 2n + 16.
double TrailWeights::ErrorBound(double maxChannel) const {
  return maxChannel * (2.0 * static_cast<double>(usedCount_) + 16.0) * kRounding;
}

bool TrailWeights::IsExact(double maxChannel) const {
  const auto taps = static_cast<double>(tapCount_);
  return taps * taps * static_cast<double>(usedCount_) * maxChannel <= kLargestWhole;
}

double FlatSums::Sum(const TrailWeights& weights, double value, std::size_t count) {
  if (value != value_) {
    value_ = value;
    known_ = 0;
    sums_[0] = 0;
  }
  for (; known_ < count; ++known_) {
    sums_[known_ + 1] = sums_[known_] + weights.data()[known_] * value;
  }
  return sums_[count];
}

template <typename Pixel>
bool Ray<Pixel>::Allocate(std::size_t maxPoints) {
  return points_.Allocate(maxPoints) && taps_.Allocate(maxPoints) && alphas_.Allocate(maxPoints) &&
         windows_.Allocate(maxPoints) && runs_.Allocate(maxPoints) &&
         std::all_of(std::begin(flatSums_), std::end(flatSums_),
                     [&](FlatSums& sums) { return sums.Allocate(maxPoints); });
}

template <typename Pixel>
void Ray<Pixel>::Cast(A_long x, A_long y, TrailCenter center) {
  count_ = static_cast<std::size_t>(ComputeLinePTs(x, y, center.x, center.y, points_.data()));
}

template <typename Pixel>
void Ray<Pixel>::Read(const PF_LayerDef& src, const TrailWeights& weights, std::size_t pointCount) {
  readCount_ = std::min(count_, pointCount + weights.tapCount());
  ReadTaps(src);
  areRunsKnown_ = false;
  SumWindows(weights);
}

template <typename Pixel>
void Ray<Pixel>::ReadTaps(const PF_LayerDef& src) {
  firstOpaque_ = readCount_;
  opaqueEnd_ = 0;
  for (std::size_t k = 0; k < readCount_; ++k) {
    const Pixel* const pixel = GetPointerFromDataP<Pixel>(&src, points_[k].y, points_[k].x, 0);
    alphas_[k] = pixel != nullptr ? pixel->alpha : ChannelOf<Pixel>{0};
    if (alphas_[k] == 0) {
      taps_[k] = {};
      continue;
    }
    taps_[k] = {{static_cast<double>(pixel->red), static_cast<double>(pixel->green),
                 static_cast<double>(pixel->blue), 1.0}};
    firstOpaque_ = std::min(firstOpaque_, k);
    opaqueEnd_ = k + 1;
  }
}

// With N taps, the tap at distance j from its point weighs (N - j)^2. From one point to the next
// toward the border every weight m^2 becomes (m - 1)^2 = m^2 - 2m + 1, so that the sums of the
// pixels times m^2, m and 1 follow from those of the point before, at a cost independent of N. All
// are integers and exact.
template <typename Pixel>
void Ray<Pixel>::SumWindows(const TrailWeights& weights) {
  isExact_ = weights.IsExact(kMaxChannel<Pixel>);
  errorBound_ = weights.ErrorBound(kMaxChannel<Pixel>);
  const std::size_t tapCount = weights.tapCount();
  const auto taps = static_cast<double>(tapCount);
  const Components none = {};
  Components squares = {};
  Components distances = {};
  Components ones = {};
  for (std::size_t end = isExact_ ? readCount_ : 0; end > 0; --end) {
    const std::size_t k = end - 1;
    const Components& entering = taps_[k];
    const Components& leaving = tapCount < readCount_ - k ? taps_[k + tapCount] : none;
    for (int c = 0; c <= kColours; ++c) {
      squares.of[c] += ones.of[c] - 2 * distances.of[c] + taps * taps * entering.of[c];
      distances.of[c] += taps * entering.of[c] - ones.of[c];
      ones.of[c] += entering.of[c] - leaving.of[c];
    }
    windows_[k] = squares;
  }
}

template <typename Pixel>
void Ray<Pixel>::MeasureRuns() {
  for (std::size_t end = readCount_; end > 0; --end) {
    const std::size_t k = end - 1;
    const Components& here = taps_[k];
    const bool goesOn =
        k + 1 < readCount_ && std::equal(here.of, here.of + kColours + 1, taps_[k + 1].of);
    runs_[k] = alphas_[k] == 0 ? 0 : 1 + (goesOn ? runs_[k + 1] : 0);
  }
  areRunsKnown_ = true;
}

// The sums that define the average, tap by tap.
template <typename Pixel>
typename Ray<Pixel>::Components Ray<Pixel>::SumInOrder(std::size_t k, const TrailWeights& weights) {
  if (!areRunsKnown_) {
    MeasureRuns();
  }
  const std::size_t taps = std::min(weights.tapCount(), readCount_ - k);
  Components sums = {};
  if (runs_[k] >= taps) {
    for (int c = 0; c < kColours; ++c) {
      sums.of[c] = flatSums_[c].Sum(weights, taps_[k].of[c], taps);
    }
    sums.of[kColours] = weights.Sum(taps);
    return sums;
  }
  // Transparent pixels add only +0; those at the ray's ends are skipped.
  const std::size_t end = std::min(k + taps, opaqueEnd_);
  for (std::size_t i = std::max(k, firstOpaque_); i < end; ++i) {
    for (int c = 0; c <= kColours; ++c) {
      sums.of[c] += weights.data()[i - k] * taps_[i].of[c];
    }
  }
  return sums;
}

template <typename Pixel>
void Ray<Pixel>::Divide(const Components& sums, double (*averages)[kColours]) {
  for (int c = 0; c < kColours; ++c) {
    (*averages)[c] = sums.of[c] / sums.of[kColours];
  }
}

// Whether the averages of the exact sums are certain to truncate to the same integers as those of
// the defining sums: none is so near an integer that rounding could cross it. Black is exactly 0 in
// both.
template <typename Pixel>
bool Ray<Pixel>::AreSure(const double (&averages)[kColours]) const {
  return std::all_of(std::begin(averages), std::end(averages), [this](double average) {
    const double part = average - TruncateToInt32(average);
    return average == 0.0 || (part > errorBound_ && part < 1.0 - errorBound_);
  });
}

template <typename Pixel>
Pixel Ray<Pixel>::Average(std::size_t k, const TrailWeights& weights) {
  using Channel = ChannelOf<Pixel>;
  const Components sums = isExact_ ? windows_[k] : SumInOrder(k, weights);
  if (sums.of[kColours] == 0.0) {
    return {alphas_[k], 0, 0, 0};
  }
  double averages[kColours];
  Divide(sums, &averages);
  if (isExact_ && !AreSure(averages)) {
    Divide(SumInOrder(k, weights), &averages);
  }
  return {alphas_[k], TruncateToChannel<Channel>(averages[0]),
          TruncateToChannel<Channel>(averages[1]), TruncateToChannel<Channel>(averages[2])};
}

template class Ray<PF_Pixel>;
template class Ray<PF_Pixel16>;

}  // namespace vitrell
