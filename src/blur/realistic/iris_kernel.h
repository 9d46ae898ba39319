// The weights of the iris as compact tap lists.
#ifndef VITRELL_BLUR_REALISTIC_IRIS_KERNEL_H_
#define VITRELL_BLUR_REALISTIC_IRIS_KERNEL_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "blur/realistic/iris_shape.h"
#include "host/host_api.h"

namespace vitrell {

// Offsets from an output pixel at which there can be an input pixel at all. What lies beyond is
// neither computed nor stored.
struct KernelReach {
  std::int64_t firstDx;
  std::int64_t lastDx;
  std::int64_t firstDy;
  std::int64_t lastDy;

  bool IsEmpty() const { return firstDx > lastDx || firstDy > lastDy; }
  std::int64_t Columns() const { return lastDx - firstDx + 1; }
};

KernelReach ReachBetween(const PF_LayerDef& input, const PF_LayerDef& output);

// count neighbouring taps of equal weight, the first one dx columns right of the output pixel.
struct KernelSpan {
  std::int32_t dx;
  std::int32_t count;
  float weight;
};

// One tap of the step from a window to the window one pixel to the right.
struct Weight_Pt {
  std::int32_t x;  // Column offset.
  std::int32_t y;  // Row offset.
  float weight;
};

// The taps of one radius in the order of the weight grid: rows from the top, in them columns from
// the left. Row i holds the offset firstDy + i and the spans rowStart[i] to rowStart[i + 1] - 1.
// ones holds the longest span of weight 1 of each row, an empty one (count 0) where there is none.
struct IrisKernel {
  std::int64_t firstDy = 0;
  std::int64_t rowCount = 0;
  Buffer<std::size_t> rowStart;
  Buffer<KernelSpan> spans;
  Buffer<KernelSpan> ones;
};

// Which weights become taps.
enum class TapChoice { kNonZero, kAboveThreshold };

// Builds kernels of one shape one after another, reusing its scratch memory.
class IrisKernelBuilder {
 public:
  IrisKernelBuilder(const IrisShape& shape, const KernelReach& reach)
      : shape_(shape), reach_(reach) {}

  // Works out once what the kernels up to this radius share; larger ones must not follow. Takes 16
  // bytes for each place of the largest, and does nothing for radii above 512. False when the
  // memory is not to be had.
  [[nodiscard]] bool ShareTo(std::int32_t maxRadius);

  // radius is 0..kMaxIrisRadius. With points not null these are filled with the difference points:
  // their weighted samples at one column added to the window sum of the column before give the
  // window sum. False when the memory is not to be had.
  [[nodiscard]] bool Build(std::int32_t radius, TapChoice choice, IrisKernel* kernel,
                           Buffer<Weight_Pt>* points);

 private:
  struct Row;
  KernelReach ReachOf(std::int64_t radius) const;
  IrisPoint PointOf(std::int64_t dx, std::int64_t dy) const;
  void FillWeights(std::int32_t radius, std::int64_t dy, std::int64_t firstDx, std::int64_t lastDx);
  [[nodiscard]] bool AppendSpans(const Row& row, TapChoice choice);
  [[nodiscard]] bool AppendPoints(const Row& row);

  IrisShape shape_;
  KernelReach reach_;
  Buffer<IrisPoint> shared_;  // Row by row; empty if nothing is shared.
  KernelReach sharedReach_ = {};
  Buffer<float> weights_;
  GrowingBuffer<std::size_t> rowStart_;
  GrowingBuffer<KernelSpan> spans_;
  GrowingBuffer<KernelSpan> ones_;
  GrowingBuffer<Weight_Pt> points_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_IRIS_KERNEL_H_
