// Rows of box-blurred pixels, at a cost independent of the radius.
#include "blur/fast/box_rows.h"

#include <algorithm>
#include <type_traits>

#include "base/pixel_access.h"

namespace vitrell {
namespace {

// Distance in rows between stored prefix sums of the columns.
constexpr std::int64_t kSumSpacing = 8;

// The sum of the window around column 0: whole mirror periods at once, the remaining taps one by
// one.
template <typename Sums, typename Pixel>
Sums FirstWindow(const Pixel* row, std::int64_t width, std::int64_t radiusPx) {
  const std::int64_t taps = 2 * radiusPx + 1;
  const std::int64_t period = MirrorPeriod(width);
  const std::int64_t wholePeriods = taps / period;
  Sums sums = {};
  if (wholePeriods > 0) {
    for (std::int64_t column = 0; column < width; ++column) {
      sums = sums + LoadSums<Sums>(row + column);
    }
    sums = ScaleSums(sums + sums - LoadSums<Sums>(row), static_cast<std::uint64_t>(wholePeriods));
  }
  for (std::int64_t tap = wholePeriods * period; tap < taps; ++tap) {
    sums = sums + LoadSums<Sums>(row + FoldCoordinate(tap - radiusPx, width));
  }
  return sums;
}

}  // namespace

template <typename Pixel>
bool BoxRows<Pixel>::Prepare(BoxAxis axis, const PF_LayerDef& src, std::int32_t radiusPx) {
  axis_ = axis;
  radiusPx_ = radiusPx;
  const bool empty = src.width <= 0 || src.height <= 0 || src.data == nullptr || radiusPx < 0;
  src_ = empty ? PF_LayerDef{} : src;
  if (empty) {
    return true;
  }
  if (axis == BoxAxis::kColumns) {
    return radiusPx <= kMaxRadiusOf32BitSums ? PrepareColumnSums<DoubleMeans>()
                                             : PrepareColumnSums<WideMeans>();
  }
  const auto width = static_cast<std::size_t>(src.width);
  if ((entering_.size() < width && !entering_.Allocate(width)) ||
      (leaving_.size() < width && !leaving_.Allocate(width))) {
    return false;
  }
  for (std::int64_t column = 0; column < src.width; ++column) {
    const auto fold = [&](std::int64_t position) {
      return static_cast<std::uint32_t>(FoldCoordinate(position, src.width));
    };
    entering_[static_cast<std::size_t>(column)] = fold(column + radiusPx);
    leaving_[static_cast<std::size_t>(column)] = fold(column - 1 - radiusPx);
  }
  return true;
}

template <typename Pixel>
const Pixel* BoxRows<Pixel>::SourceRow(std::int64_t row) const {
  return StoredPixel<Pixel>(&src_, row, 0);
}

template <typename Pixel>
void BoxRows<Pixel>::FillRow(std::int32_t row, Pixel* out) const {
  const auto fill = [&]<typename Means>(Means*) {
    return axis_ == BoxAxis::kRows ? FillAlongRow<Means>(row, out)
                                   : FillDownColumns<Means>(row, out);
  };
  if (std::is_same_v<Pixel, PF_Pixel> && radiusPx_ <= kMaxRadiusOfSingleMeans) {
    fill(static_cast<SingleMeans*>(nullptr));
  } else if (radiusPx_ <= kMaxRadiusOf32BitSums) {
    fill(static_cast<DoubleMeans*>(nullptr));
  } else {
    fill(static_cast<WideMeans*>(nullptr));
  }
}

template <typename Pixel>
template <typename Means>
void BoxRows<Pixel>::FillAlongRow(std::int32_t row, Pixel* out) const {
  using Sums = typename Means::Sums;
  const Means means(radiusPx_);
  const Pixel* const source = SourceRow(row);
  Sums sums = FirstWindow<Sums>(source, src_.width, radiusPx_);
  means.Store(sums, source[0], out);
  for (std::int32_t column = 1; column < src_.width; ++column) {
    sums = sums + LoadSums<Sums>(source + entering_[static_cast<std::size_t>(column)]) -
           LoadSums<Sums>(source + leaving_[static_cast<std::size_t>(column)]);
    means.Store(sums, source[column], out + column);
  }
}

template <typename Pixel>
template <typename Means>
bool BoxRows<Pixel>::PrepareColumnSums() {
  using Sums = typename Means::Sums;
  const std::int64_t width = src_.width;
  const std::int64_t stored = (src_.height + kSumSpacing - 1) / kSumSpacing + 1;
  auto& buffer = [this]() -> Buffer<Sums>& {
    if constexpr (std::is_same_v<Sums, WideSums>) {
      return wideSums_;
    } else {
      return sums_;
    }
  }();
  const auto count = static_cast<std::size_t>(stored * width);
  if (buffer.size() < count && !buffer.Allocate(count)) {
    return false;
  }
  Sums* above = buffer.data();
  for (std::int64_t column = 0; column < width; ++column) {
    above[column] = Sums{};
  }
  for (std::int64_t row = 0; row < src_.height; row += kSumSpacing) {
    Sums* const below = above + width;
    const std::int64_t rows = std::min(kSumSpacing, src_.height - row);
    for (std::int64_t column = 0; column < width; ++column) {
      Sums sums = above[column];
      for (std::int64_t i = 0; i < rows; ++i) {
        sums = sums + LoadSums<Sums>(SourceRow(row + i) + column);
      }
      below[column] = sums;
    }
    above = below;
  }
  return true;
}

// The sum of a window down the columns, expressed by stored prefix sums and single rows.
template <typename Pixel, typename Sums>
struct ColumnWindow {
  const Sums* high;
  const Sums* low;
  std::uint64_t highFactor;
  std::uint64_t lowFactor;
  const Pixel* added[kSumSpacing];
  const Pixel* taken[kSumSpacing];
  int addedCount = 0;
  int takenCount = 0;
};

template <typename Pixel>
template <typename Means>
void BoxRows<Pixel>::FillDownColumns(std::int32_t row, Pixel* out) const {
  using Sums = typename Means::Sums;
  const Means means(radiusPx_);
  const BoxWindow window = MakeBoxWindow(src_.height, row, radiusPx_);
  ColumnWindow<Pixel, Sums> terms;
  const auto locate = [&](std::int64_t end, std::uint64_t factor) {
    const bool plus = factor == 1;
    const auto use = [&](std::int64_t first, std::int64_t last, bool add) {
      for (std::int64_t i = first; i < last; ++i) {
        (add ? terms.added[terms.addedCount++] : terms.taken[terms.takenCount++]) = SourceRow(i);
      }
    };
    const std::int64_t above = end / kSumSpacing;
    const std::int64_t next = std::min<std::int64_t>((above + 1) * kSumSpacing, src_.height);
    const bool fromBelow = next - end < end - above * kSumSpacing;
    use(above * kSumSpacing, fromBelow ? above * kSumSpacing : end, plus);
    use(end, fromBelow ? next : end, !plus);
    return StoredSums<Sums>() + (fromBelow ? above + 1 : above) * src_.width;
  };
  terms.high = locate(window.high, window.highSign);
  terms.low = locate(window.low, window.lowSign);
  terms.highFactor = window.highSign;
  terms.lowFactor = window.lowSign;
  const Sums* const whole =
      StoredSums<Sums>() + (src_.height + kSumSpacing - 1) / kSumSpacing * src_.width;
  const Pixel* const firstRow = SourceRow(0);
  const Pixel* const source = SourceRow(row);
  // A window that extends beyond each edge by less than one reflection needs no multiplication.
  const bool isFoldedBelow = window.wholeFactor == 2;
  const bool isFoldedAbove = window.firstFactor == static_cast<std::uint64_t>(-1);
  const bool isFoldedOnce = !window.inside && (isFoldedBelow || window.wholeFactor == 0) &&
                            (isFoldedAbove || window.firstFactor == 0);
  const auto store = [&](std::int64_t column, Sums sums) {
    sums = sums + SignSums(terms.high[column], terms.highFactor) +
           SignSums(terms.low[column], terms.lowFactor);
    if (isFoldedOnce) {
      const Sums twice = whole[column] + whole[column];
      sums = isFoldedBelow ? sums + twice : sums;
      sums = isFoldedAbove ? sums - LoadSums<Sums>(firstRow + column) : sums;
    } else if (!window.inside) {
      sums = sums + ScaleSums(whole[column], window.wholeFactor) +
             ScaleSums(LoadSums<Sums>(firstRow + column), window.firstFactor);
    }
    means.Store(sums, source[column], out + column);
  };
  std::int64_t column = 0;
  if constexpr (std::is_same_v<Sums, U32Lanes>) {
    for (; column + PixelGroup::kPixels <= src_.width; column += PixelGroup::kPixels) {
      const PixelGroup group =
          SumRowGroups(terms.added, terms.addedCount, terms.taken, terms.takenCount, column);
      for (int i = 0; i < PixelGroup::kPixels; ++i) {
        store(column + i, group.lanes[i]);
      }
    }
  }
  for (; column < src_.width; ++column) {
    Sums sums = {};
    for (int i = 0; i < terms.addedCount; ++i) {
      sums = sums + LoadSums<Sums>(terms.added[i] + column);
    }
    for (int i = 0; i < terms.takenCount; ++i) {
      sums = sums - LoadSums<Sums>(terms.taken[i] + column);
    }
    store(column, sums);
  }
}

template <typename Pixel>
template <typename Sums>
const Sums* BoxRows<Pixel>::StoredSums() const {
  if constexpr (std::is_same_v<Sums, WideSums>) {
    return wideSums_.data();
  } else {
    return sums_.data();
  }
}

template class BoxRows<PF_Pixel>;
template class BoxRows<PF_Pixel16>;

}  // namespace vitrell
