// Rows of iris kernels in the form that the lane sums use.
#include "blur/realistic/kernel_rows.h"

#include <limits>

namespace vitrell {

MixedRows RowsOf(const LaneRow* rows, int rowCount) {
  MixedRows reach = {std::numeric_limits<std::int64_t>::max(),
                     std::numeric_limits<std::int64_t>::min()};
  for (int row = 0; row < rowCount; ++row) {
    for (int i = 0; i < rows[row].groupCount; ++i) {
      const IrisKernel& kernel = *rows[row].groups[i].kernel;
      reach.firstDy = Smaller(reach.firstDy, row + kernel.firstDy);
      reach.lastDy = Larger(reach.lastDy, row + kernel.firstDy + kernel.rowCount - 1);
    }
  }
  return reach;
}

}  // namespace vitrell
