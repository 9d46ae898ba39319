// Rows of iris kernels in the form that the lane sums use.
#ifndef VITRELL_BLUR_REALISTIC_KERNEL_ROWS_H_
#define VITRELL_BLUR_REALISTIC_KERNEL_ROWS_H_

#include <cstddef>
#include <cstdint>

#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"

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
  const KernelSpan* ones;  // A copy of the longest span of weight 1; null in an empty row.
};

// The kernel's row at the offset dy; empty where the kernel has none.
inline KernelRow RowOf(const IrisKernel& kernel, std::int64_t dy) {
  const std::int64_t row = dy - kernel.firstDy;
  if (row < 0 || row >= kernel.rowCount) {
    return {nullptr, nullptr, nullptr};
  }
  const std::size_t* const start = kernel.rowStart.data() + row;
  return {kernel.spans.data() + start[0], kernel.spans.data() + start[1], kernel.ones.data() + row};
}

// The range of offsets, from the first of several rows of lanes, at which any of their kernels has
// a row.
struct MixedRows {
  std::int64_t firstDy;
  std::int64_t lastDy;
};

MixedRows RowsOf(const LaneRow* rows, int rowCount);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_KERNEL_ROWS_H_
