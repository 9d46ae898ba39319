// One ray of the trail: its points, and the weighted average from each of them towards the centre.
#ifndef VITRELL_BLUR_TRAIL_TRAIL_RAY_H_
#define VITRELL_BLUR_TRAIL_TRAIL_RAY_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "base/depth_traits.h"
#include "host/host_api.h"

namespace vitrell {

struct TrailCenter {
  std::int32_t x;
  std::int32_t y;
};

// Rasterises the line from (x0, y0) to (x1, y1), both ends included, and returns the number of
// points written, at least 1. points must have room for max(|x1 - x0|, |y1 - y0|) + 1 records;
// their fields are set to whole pixels.
int ComputeLinePTs(int x0, int y0, int x1, int y1, PF_FixedPoint* points);

// Number of points of the ray from (x, y) to the centre.
std::int64_t CountRayPoints(std::int64_t x, std::int64_t y, TrailCenter center);

// The weights of the taps towards the centre: 1 for the point itself, falling quadratically. All
// rays of a pass share them, read-only.
class TrailWeights {
 public:
  // A negative tapCount counts as 0. No ray may have more than maxRayPoints points. False if memory
  // is short.
  [[nodiscard]] bool Fill(std::int32_t tapCount, std::int64_t maxRayPoints);

  std::size_t tapCount() const { return tapCount_; }
  const double* data() const { return weights_.data(); }

  // Sum of the first `count` weights; count is at most the number of points of a ray.
  double Sum(std::size_t count) const { return sums_[count]; }

  // Bound of the difference between an average summed tap by tap and one of exact sums, for
  // channels up to maxChannel.
  double ErrorBound(double maxChannel) const;

  // Whether sums of squared distances times channels up to maxChannel are integers that a double
  // can represent.
  bool IsExact(double maxChannel) const;

 private:
  std::size_t tapCount_ = 0;
  std::size_t usedCount_ = 0;  // Most taps that a ray can use.
  Buffer<double> weights_;
  Buffer<double> sums_;
};

// Sums of one value times the first weights, tap by tap, cached for the next point.
class FlatSums {
 public:
  [[nodiscard]] bool Allocate(std::size_t maxCount) { return sums_.Allocate(maxCount + 1); }
  double Sum(const TrailWeights& weights, double value, std::size_t count);

 private:
  double value_ = -1;
  std::size_t known_ = 0;
  Buffer<double> sums_;
};

// The points of one ray, from the border to the centre, and the source pixels at them.
template <typename Pixel>
class Ray {
 public:
  [[nodiscard]] bool Allocate(std::size_t maxPoints);

  // Rasterises the ray from (x, y) to the centre.
  void Cast(A_long x, A_long y, TrailCenter center);

  std::size_t Count() const { return count_; }
  const PF_FixedPoint& Point(std::size_t k) const { return points_[k]; }

  // Reads the source pixels that the averages of the first pointCount points need and prepares
  // these averages.
  void Read(const PF_LayerDef& src, const TrailWeights& weights, std::size_t pointCount);

  // The weighted average of the opaque pixels from point k towards the centre, with the alpha of
  // point k; black if there are none. Read must have prepared it.
  Pixel Average(std::size_t k, const TrailWeights& weights);

 private:
  static constexpr int kColours = 3;

  // A pixel, or a sum of pixels, with 1 as the last component of each pixel, so that the sum of
  // weights accumulates along with the colours. Transparent and missing pixels are 0 in all
  // components.
  struct Components {
    double of[kColours + 1];  // Red, green, blue, 1.
  };

  void ReadTaps(const PF_LayerDef& src);
  void SumWindows(const TrailWeights& weights);
  void MeasureRuns();
  Components SumInOrder(std::size_t k, const TrailWeights& weights);
  static void Divide(const Components& sums, double (*averages)[kColours]);
  bool AreSure(const double (&averages)[kColours]) const;

  Buffer<PF_FixedPoint> points_;
  Buffer<Components> taps_;
  Buffer<ChannelOf<Pixel>> alphas_;
  Buffer<Components> windows_;  // Per point: exact sums, weights times tapCount^2.
  Buffer<std::uint32_t> runs_;  // Per point: length of the run of equal opaque colour.
  FlatSums flatSums_[kColours];
  std::size_t count_ = 0;
  std::size_t readCount_ = 0;  // Points whose source pixels have been read.
  std::size_t firstOpaque_ = 0;
  std::size_t opaqueEnd_ = 0;
  bool areRunsKnown_ = false;  // Few rays need the runs, so they are measured on first use.
  bool isExact_ = false;
  double errorBound_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_TRAIL_RAY_H_
