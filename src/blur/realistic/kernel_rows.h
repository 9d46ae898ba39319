// Rows of iris kernels as the lane sums walk them.
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

// The offsets from the first of some rows of lanes at which any group of theirs has a kernel row.
struct MixedRows {
  std::int64_t firstDy;
  std::int64_t lastDy;
};

MixedRows RowsOf(const LaneRow* rows, int rowCount);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_KERNEL_ROWS_H_
