// Draws the lens mask row by row.
#ifndef VITRELL_LENS_MASK_DRAWING_H_
#define VITRELL_LENS_MASK_DRAWING_H_

#include <cstddef>
#include <cstdint>

#include "base/render_records.h"
#include "lens/lens_mask.h"

namespace vitrell {

// Where a mask is drawn. Row r of the mask is row top + r of the layer, starting at column left.
// Value i belongs to row i / width; the last row may be incomplete.
struct MaskCanvas {
  std::int32_t left;
  std::int32_t top;
  std::uint32_t width;
  std::uint64_t rowCount;
  std::uint64_t size;
  double* values;
  MaskRow* rows;

  std::uint32_t ValuesOfRow(std::uint64_t row) const {
    const std::uint64_t rest = size - row * width;
    return rest < width ? static_cast<std::uint32_t>(rest) : width;
  }
};

// Sets every MaskRow, and, where the plan needs the whole mask, every element of values.
void DrawMask(const LensMaskInput& input, const LX_Info& info, const MaskPlan& plan,
              const MaskCanvas& canvas);

}  // namespace vitrell

#endif  // VITRELL_LENS_MASK_DRAWING_H_
