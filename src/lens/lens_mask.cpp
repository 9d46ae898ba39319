// The lens mask: how much each pixel of the output lies inside the lens.
#include "lens/lens_mask.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

#include "lens/mask_drawing.h"

namespace vitrell {

double* g_LensMask = nullptr;
std::size_t g_LensMaskSize = 0;
MaskRows g_LensMaskRows;

namespace {

VITRELL_UNSIGNED_WRAPS std::uint32_t Extent(std::int32_t from, std::int32_t to) {
  return to > from ? static_cast<std::uint32_t>(to) - static_cast<std::uint32_t>(from) : 0;
}

// The number of rows for this many values; the last row may be incomplete.
std::uint64_t RowsOf(std::uint64_t values, std::uint64_t width) {
  return (values + width - 1) / width;
}

// An upper bound for the values that the render's worlds can index: their extent rectangles exceed
// their pixels by a fifth on every side at most.
std::uint64_t MostValues(const LensMaskInput& input) {
  constexpr std::int64_t kTwiceInEachDirection = 4;
  const PF_LayerDef& output = *input.output;
  const std::int64_t outputPixels =
      std::int64_t{std::max(output.width, 0)} * std::max(output.height, 0);
  const std::int64_t pixels = std::max({outputPixels, input.inputPixels, std::int64_t{1}});
  return static_cast<std::uint64_t>(pixels) * kTwiceInEachDirection;
}

// Allocates the values and, behind them, the rows.
[[nodiscard]] PF_Err AllocateMask(const LensMaskInput& input) {
  const PF_LRect& rect = input.output->extent_hint;
  FreeLensMask(false);
  const std::int64_t width = std::int64_t{rect.right} - rect.left;
  const std::int64_t height = std::int64_t{rect.bottom} - rect.top;
  if (width <= 0 || height <= 0) {
    return PF_Err_NONE;
  }
  const std::uint64_t count = std::min(
      static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height), MostValues(input));
  // There are at most as many rows as values.
  constexpr auto kMaxValues =
      static_cast<std::uint64_t>(std::numeric_limits<std::ptrdiff_t>::max()) /
      (sizeof(double) + sizeof(MaskRow));
  if (count > kMaxValues) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const std::uint64_t rows = RowsOf(count, static_cast<std::uint64_t>(width));
  g_LensMask = static_cast<double*>(std::malloc(count * sizeof(double) + rows * sizeof(MaskRow)));
  if (g_LensMask == nullptr) {
    return PF_Err_OUT_OF_MEMORY;
  }
  g_LensMaskSize = count;
  return PF_Err_NONE;
}

}  // namespace

LensMaskView::LensMaskView(const PF_LayerDef& world)
    : rows_(values_.rows().rows),
      left_(static_cast<std::uint32_t>(world.extent_hint.left)),
      top_(static_cast<std::uint32_t>(world.extent_hint.top)),
      width_(Extent(world.extent_hint.left, world.extent_hint.right)),
      height_(Extent(world.extent_hint.top, world.extent_hint.bottom)) {
  if (rows_ != nullptr && width_ > 0 && values_.rows().width == width_) {
    rowCount_ =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(height_, values_.size() / width_));
  }
}

double LensMaskView::AtIndex(std::uint32_t column, std::uint32_t row) const {
  const std::uint64_t index = std::uint64_t{row} * width_ + column;
  return column < width_ && row < height_ ? values_.At(index) : 0.0;
}

MaskOnes LensMaskView::Ones() const {
  const bool isSimple = rowCount_ != 0 && left_ == 0 && top_ == 0 && rows_[0].inner == 1;
  return isSimple ? MaskOnes(rows_, rowCount_) : MaskOnes();
}

const MaskRow* LensMaskView::PlainRows(std::int32_t width, std::int32_t height) const {
  const bool isPlain = rowCount_ != 0 && left_ == 0 && top_ == 0 && rows_[0].inner == 1 &&
                       rows_[0].outer == 0 && width >= 0 && height >= 0 &&
                       static_cast<std::uint32_t>(width) <= width_ &&
                       static_cast<std::uint32_t>(height) <= rowCount_;
  return isPlain ? rows_ : nullptr;
}

PF_Err BuildLensMask(const LensMaskInput& input, const LX_Info& info, const MaskPlan& plan) {
  const PF_LRect& rect = input.output->extent_hint;
  if (const PF_Err err = AllocateMask(input); err != PF_Err_NONE || g_LensMaskSize == 0) {
    return err;
  }
  const std::uint32_t width = Extent(rect.left, rect.right);
  static_assert(sizeof(double) % alignof(MaskRow) == 0);
  auto* const rows = reinterpret_cast<MaskRow*>(g_LensMask + g_LensMaskSize);
  const std::uint64_t rowCount = RowsOf(g_LensMaskSize, width);
  std::uninitialized_default_construct_n(rows, rowCount);
  DrawMask(input, info, plan,
           {.left = rect.left,
            .top = rect.top,
            .width = width,
            .rowCount = rowCount,
            .size = g_LensMaskSize,
            .values = g_LensMask,
            .rows = rows});
  g_LensMaskRows = {rows, width, plan.isWholeNeeded};
  return PF_Err_NONE;
}

void FreeLensMask(bool keepAddress) {
  if (g_LensMaskSize != 0) {
    std::free(g_LensMask);
    g_LensMaskSize = 0;
  }
  g_LensMaskRows = {};
  if (!keepAddress) {
    g_LensMask = nullptr;
  }
}

}  // namespace vitrell
