// Finds the columns of a highlight map that have any weight within a band of rows.
#include "blur/realistic/bright_columns.h"

#include <algorithm>
#include <cstddef>

namespace vitrell {
namespace {

std::int32_t CountWeights(const float* weights, std::int64_t count) {
  std::int32_t found = 0;
  for (std::int64_t i = 0; i < count; ++i) {
    found += weights[i] != 0.0f ? 1 : 0;
  }
  return found;
}

}  // namespace

bool BrightColumns::Prepare(const HighlightMap& map) {
  const auto columns = static_cast<std::size_t>(map.width());
  map_ = &map;
  firstRow_ = 0;
  endRow_ = 0;
  return weightsInBand_.AllocateZeroed(columns) && first_.Allocate(columns) &&
         last_.Allocate(columns);
}

void BrightColumns::MoveTo(std::int64_t firstRow, std::int64_t endRow) {
  firstRow = std::clamp<std::int64_t>(firstRow, 0, map_->height());
  endRow = std::clamp<std::int64_t>(endRow, firstRow, map_->height());
  std::int32_t last = -1;
  for (std::int64_t column = 0; column < map_->width(); ++column) {
    const auto i = static_cast<std::size_t>(column);
    const float* const weights = map_->origin() + column * map_->columnStride();
    weightsInBand_[i] += CountWeights(weights + endRow_, endRow - endRow_) -
                         CountWeights(weights + firstRow_, firstRow - firstRow_);
    if (weightsInBand_[i] != 0) {
      last = static_cast<std::int32_t>(column);
    }
    last_[i] = last;
  }
  auto first = static_cast<std::int32_t>(map_->width());
  for (std::int64_t column = map_->width() - 1; column >= 0; --column) {
    const auto i = static_cast<std::size_t>(column);
    if (weightsInBand_[i] != 0) {
      first = static_cast<std::int32_t>(column);
    }
    first_[i] = first;
  }
  firstRow_ = firstRow;
  endRow_ = endRow;
}

std::int64_t BrightColumns::FirstFrom(std::int64_t column) const {
  column = std::max<std::int64_t>(column, 0);
  return column < map_->width() ? first_[static_cast<std::size_t>(column)] : map_->width();
}

std::int64_t BrightColumns::LastUpTo(std::int64_t column) const {
  column = std::min(column, map_->width() - 1);
  return column >= 0 ? last_[static_cast<std::size_t>(column)] : -1;
}

}  // namespace vitrell
