// The iris of the realistic blur: its shape, and its weights as compact tap lists.
#ifndef VITRELL_BLUR_IRIS_KERNEL_H_
#define VITRELL_BLUR_IRIS_KERNEL_H_

#include <cstddef>
#include <cstdint>

#include "host/buffer.h"
#include "host/host_api.h"
#include "render/settings.h"

namespace vitrell {

// Radii beyond this count as memory that is not to be had: four times what the slider offers.
inline constexpr std::int32_t kMaxIrisRadius = 2000;

// What all radii of one render have in common. Angles in radians.
struct IrisShape {
  const PF_ANSICallbacks* maths;
  double sideAngle;  // Angle that one side of the polygon spans.
  double halfRound;  // Half of the share of each side that is round.
  double apothem;    // Of the polygon inside the unit circle, where its straight part begins.
  double aspect;     // Squeeze along the rotated axis; above 1 it shrinks the other axis too.
  double cosRotation;
  double sinRotation;
};

IrisShape MakeIrisShape(const LX_Info& info, const PF_ANSICallbacks& maths);

// The kernel radius in pixels that the settings ask for. INT32_MIN when it is not representable.
// Kept: the amount is a single-precision hundredth, so that a few whole amounts (53, 59, 105, ...)
// come out one pixel lower.
std::int32_t MaxIrisRadius(const LX_Info& info);

// Offsets from an output pixel at which there can be an input pixel at all. What lies beyond is
// neither computed nor stored.
struct KernelReach {
  std::int64_t firstDx;
  std::int64_t lastDx;
  std::int64_t firstDy;
  std::int64_t lastDy;
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

  // radius is 0..kMaxIrisRadius. With points not null these are filled with the difference points:
  // their weighted samples at one column added to the window sum of the column before give the
  // window sum. False when the memory is not to be had.
  [[nodiscard]] bool Build(std::int32_t radius, TapChoice choice, IrisKernel* kernel,
                           Buffer<Weight_Pt>* points);

 private:
  struct Row;
  [[nodiscard]] bool AppendSpans(const Row& row, TapChoice choice);
  [[nodiscard]] bool AppendPoints(const Row& row);

  IrisShape shape_;
  KernelReach reach_;
  Buffer<float> weights_;
  GrowingBuffer<std::size_t> rowStart_;
  GrowingBuffer<KernelSpan> spans_;
  GrowingBuffer<KernelSpan> ones_;
  GrowingBuffer<Weight_Pt> points_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_IRIS_KERNEL_H_
