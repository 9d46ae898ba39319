// Finds the columns of a highlight map that have any weight within a band of rows.
#ifndef VITRELL_BLUR_REALISTIC_BRIGHT_COLUMNS_H_
#define VITRELL_BLUR_REALISTIC_BRIGHT_COLUMNS_H_

#include <cstdint>

#include "base/buffer.h"
#include "blur/realistic/highlight_map.h"

namespace vitrell {

// Tracks a band of rows as it moves down a column-major map; a step costs only the rows that enter
// and leave. Columns and rows outside the map have no weight.
class BrightColumns {
 public:
  // Starts with an empty band above the map, which must outlive this object. False if memory is
  // short.
  [[nodiscard]] bool Prepare(const HighlightMap& map);

  // Moves the band to rows [firstRow, endRow). Neither may decrease.
  void MoveTo(std::int64_t firstRow, std::int64_t endRow);

  // The first column with weight, from this one rightwards; the map's width if there is none.
  std::int64_t FirstFrom(std::int64_t column) const;

  // The first column with weight, from this one leftwards; -1 if there is none.
  std::int64_t LastUpTo(std::int64_t column) const;

 private:
  const HighlightMap* map_ = nullptr;
  std::int64_t firstRow_ = 0;
  std::int64_t endRow_ = 0;
  Buffer<std::int32_t> weightsInBand_;  // Per column: pixels with weight.
  Buffer<std::int32_t> first_;
  Buffer<std::int32_t> last_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_BRIGHT_COLUMNS_H_
