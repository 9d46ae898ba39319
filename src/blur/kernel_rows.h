// Rows of iris kernels, of one alone and of several side by side, as the lane sums walk them.
#ifndef VITRELL_BLUR_KERNEL_ROWS_H_
#define VITRELL_BLUR_KERNEL_ROWS_H_

#include <cstddef>
#include <cstdint>

#include "blur/iris_kernel.h"
#include "blur/lane_sums.h"

namespace vitrell {

constexpr std::int64_t Larger(std::int64_t a, std::int64_t b) { return a > b ? a : b; }
constexpr std::int64_t Smaller(std::int64_t a, std::int64_t b) { return a < b ? a : b; }

constexpr std::int64_t LastDx(const KernelSpan& span) {
  return std::int64_t{span.dx} + span.count - 1;
}

// The spans of one row.
struct KernelRow {
  const KernelSpan* begin;
  const KernelSpan* end;
  const KernelSpan* ones;  // Copy of the longest one of weight 1; null in a missing row.
};

// Rows that the kernel does not have are empty.
inline KernelRow RowOf(const IrisKernel& kernel, std::int64_t dy) {
  const std::int64_t row = dy - kernel.firstDy;
  if (row < 0 || row >= kernel.rowCount) {
    return {nullptr, nullptr, nullptr};
  }
  const std::size_t* const start = kernel.rowStart.data() + row;
  return {kernel.spans.data() + start[0], kernel.spans.data() + start[1], kernel.ones.data() + row};
}

// The rows of which some group has any. There must be a group.
struct MixedRows {
  std::int64_t firstDy;
  std::int64_t lastDy;
};

MixedRows RowsOf(const LaneGroup* groups, int groupCount);

// One row of several kernels. Each lane has the weight 1 from firstOne to lastOne (none when these
// are the wrong way round) and may have other taps on either side. From firstCommonDx to
// lastCommonDx all lanes have the weight 1; without such columns firstCommonDx is lastDx + 1 and
// lastCommonDx is lastDx. firstDx to lastDx holds all taps within the window.
struct MixedRow {
  std::int64_t firstDx;
  std::int64_t lastDx;
  std::int64_t firstCommonDx;
  std::int64_t lastCommonDx;
  alignas(64) std::int32_t firstOne[kMaxLanes];
  alignas(64) std::int32_t lastOne[kMaxLanes];
};

// Lanes without a group are left alone.
void MeasureRow(const LaneGroup* groups, int groupCount, std::int64_t dy, const LaneWindow& window,
                MixedRow* mixed);

// Overwrites the weights of the taps that are not among a lane's ones, in the columns from beginDx
// up to endDx; lanes floats make a column.
void OverlayOtherTaps(const LaneGroup* groups, int groupCount, std::int64_t dy,
                      std::int64_t beginDx, std::int64_t endDx, int lanes, float* weights);

}  // namespace vitrell

#endif  // VITRELL_BLUR_KERNEL_ROWS_H_
