// Rows of iris kernels as the lane sums walk them.
#include "blur/kernel_rows.h"

#include <limits>

namespace vitrell {

MixedRows RowsOf(const LaneRow* lanes, int rowCount) {
  MixedRows rows = {std::numeric_limits<std::int64_t>::max(),
                    std::numeric_limits<std::int64_t>::min()};
  for (int row = 0; row < rowCount; ++row) {
    for (int i = 0; i < lanes[row].groupCount; ++i) {
      const IrisKernel& kernel = *lanes[row].groups[i].kernel;
      rows.firstDy = Smaller(rows.firstDy, row + kernel.firstDy);
      rows.lastDy = Larger(rows.lastDy, row + kernel.firstDy + kernel.rowCount - 1);
    }
  }
  return rows;
}

}  // namespace vitrell
