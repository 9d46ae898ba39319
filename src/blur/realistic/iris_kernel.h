// The weights of the iris as compact lists of taps.
#ifndef VITRELL_BLUR_REALISTIC_IRIS_KERNEL_H_
#define VITRELL_BLUR_REALISTIC_IRIS_KERNEL_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"
#include "blur/realistic/iris_shape.h"
#include "host/host_api.h"

namespace vitrell {

// The offsets at which some output pixel can have an input pixel. Taps beyond are neither computed
// nor stored.
struct KernelReach {
  std::int64_t firstDx;
  std::int64_t lastDx;
  std::int64_t firstDy;
  std::int64_t lastDy;

  bool IsEmpty() const { return firstDx > lastDx || firstDy > lastDy; }
  std::int64_t Columns() const { return lastDx - firstDx + 1; }
};

KernelReach ReachBetween(const PF_LayerDef& input, const PF_LayerDef& output);

// A run of `count` taps of equal weight in a row; the first is dx columns right of the output
// pixel.
struct KernelSpan {
  std::int32_t dx;
  std::int32_t count;
  float weight;
};

// One tap of the difference between the windows of two horizontally neighbouring pixels.
struct Weight_Pt {
  std::int32_t x;  // Column offset.
  std::int32_t y;  // Row offset.
  float weight;
};

// The taps of one radius in grid order: rows from the top, columns from the left. Row i lies at the
// offset firstDy + i and consists of the spans [rowStart[i], rowStart[i + 1]). ones[i] is that
// row's longest span of weight 1, with count 0 if there is none.
struct IrisKernel {
  std::int64_t firstDy = 0;
  std::int64_t rowCount = 0;
  Buffer<std::size_t> rowStart;
  Buffer<KernelSpan> spans;
  Buffer<KernelSpan> ones;
};

// Which weights become taps.
enum class TapChoice { kNonZero, kAboveThreshold };

// Builds kernels of one shape, one after another, reusing its scratch memory.
class IrisKernelBuilder {
 public:
  IrisKernelBuilder(const IrisShape& shape, const KernelReach& reach)
      : shape_(shape), reach_(reach) {}

  // Computes in advance what kernels of all radii up to this one have in common; larger ones must
  // not follow. Takes 16 bytes per tap of the largest kernel, and does nothing for radii above 512.
  // False if memory is short.
  [[nodiscard]] bool ShareTo(std::int32_t maxRadius);

  // radius must be in [0, kMaxIrisRadius]. points may be null; otherwise it receives the difference
  // points, whose weighted samples turn a pixel's window sum into that of its right neighbour.
  // False if memory is short.
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
  Buffer<IrisPoint> shared_;  // Row-major; empty if nothing is shared.
  KernelReach sharedReach_ = {};
  Buffer<float> weights_;
  GrowingBuffer<std::size_t> rowStart_;
  GrowingBuffer<KernelSpan> spans_;
  GrowingBuffer<KernelSpan> ones_;
  GrowingBuffer<Weight_Pt> points_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_IRIS_KERNEL_H_
