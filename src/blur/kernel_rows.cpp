// Rows of iris kernels, of one alone and of several side by side, as the lane sums walk them.
#include "blur/kernel_rows.h"

#include <limits>

namespace vitrell {

MixedRows RowsOf(const LaneGroup* groups, int groupCount) {
  MixedRows rows = {std::numeric_limits<std::int64_t>::max(),
                    std::numeric_limits<std::int64_t>::min()};
  for (int i = 0; i < groupCount; ++i) {
    const IrisKernel& kernel = *groups[i].kernel;
    rows.firstDy = Smaller(rows.firstDy, kernel.firstDy);
    rows.lastDy = Larger(rows.lastDy, kernel.firstDy + kernel.rowCount - 1);
  }
  return rows;
}

void MeasureRow(const LaneGroup* groups, int groupCount, std::int64_t dy, const LaneWindow& window,
                MixedRow* mixed) {
  std::int64_t firstDx = window.lastDx + 1;
  std::int64_t lastDx = window.firstDx - 1;
  std::int64_t firstCommonDx = window.firstDx;
  std::int64_t lastCommonDx = window.lastDx;
  for (int i = 0; i < groupCount; ++i) {
    const LaneGroup& group = groups[i];
    const KernelRow row = RowOf(*group.kernel, dy);
    const KernelSpan ones = row.ones != nullptr ? *row.ones : KernelSpan{};
    const auto lastOne = static_cast<std::int32_t>(LastDx(ones));
    for (int lane = group.firstLane; lane < group.endLane; ++lane) {
      mixed->firstOne[lane] = ones.dx;
      mixed->lastOne[lane] = lastOne;
    }
    if (row.begin != row.end) {
      firstDx = Smaller(firstDx, row.begin->dx);
      lastDx = Larger(lastDx, LastDx(row.end[-1]));
    }
    firstCommonDx = Larger(firstCommonDx, ones.dx);
    lastCommonDx = Smaller(lastCommonDx, lastOne);
  }
  mixed->firstDx = Larger(firstDx, window.firstDx);
  mixed->lastDx = Smaller(lastDx, window.lastDx);
  const bool common = firstCommonDx <= lastCommonDx;
  mixed->firstCommonDx = common ? firstCommonDx : mixed->lastDx + 1;
  mixed->lastCommonDx = common ? lastCommonDx : mixed->lastDx;
}

void OverlayOtherTaps(const LaneGroup* groups, int groupCount, std::int64_t dy,
                      std::int64_t beginDx, std::int64_t endDx, int lanes, float* weights) {
  for (int i = 0; i < groupCount; ++i) {
    const LaneGroup& group = groups[i];
    const KernelRow row = RowOf(*group.kernel, dy);
    for (const KernelSpan* span = row.begin; span != row.end && span->dx < endDx; ++span) {
      if (span->dx == row.ones->dx && span->count == row.ones->count) {
        continue;
      }
      const std::int64_t lastDx = Smaller(LastDx(*span), endDx - 1);
      for (std::int64_t dx = Larger(span->dx, beginDx); dx <= lastDx; ++dx) {
        float* const column = weights + (dx - beginDx) * lanes;
        for (int lane = group.firstLane; lane < group.endLane; ++lane) {
          column[lane] = span->weight;
        }
      }
    }
  }
}

}  // namespace vitrell
