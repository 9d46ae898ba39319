// Rows of box-blurred pixels, at a cost independent of the radius.
#include "blur/fast/box_rows.h"

#include <algorithm>
#include <type_traits>

#include "base/pixel_access.h"

namespace vitrell {
namespace {

// Distance in rows between stored prefix sums of the columns.
constexpr std::int64_t kSumSpacing = 8;

// The sum of the window around column 0. A reflected pixel counts twice, but for column 0; of a
// window beyond both edges whole mirror periods are added at once, the remaining taps one by one.
template <typename Sums, typename Pixel>
Sums FirstWindow(const BoxEngine<Pixel, Sums>& engine, const Pixel* row, std::int32_t width,
                 std::int32_t radiusPx) {
  Sums sums = {};
  if (radiusPx < width) {
    Sums parts[kBoxBlock];
    const std::int32_t partCount = std::min(radiusPx, kBoxBlock);
    std::fill_n(parts, partCount, Sums{});
    for (std::int32_t done = 0; done < radiusPx; done += partCount) {
      engine.add(row + 1 + done, std::min(partCount, radiusPx - done), parts);
    }
    for (std::int32_t i = 0; i < partCount; ++i) {
      sums = sums + parts[i];
    }
    return sums + sums + ChannelSums<Sums>(row[0]);
  }
  const std::int64_t taps = 2 * std::int64_t{radiusPx} + 1;
  const std::int64_t period = MirrorPeriod(width);
  const std::int64_t wholePeriods = taps / period;
  if (wholePeriods > 0) {
    for (std::int64_t column = 0; column < width; ++column) {
      sums = sums + ChannelSums<Sums>(row[column]);
    }
    sums = Times(sums + sums - ChannelSums<Sums>(row[0]), static_cast<std::uint64_t>(wholePeriods));
  }
  for (std::int64_t tap = wholePeriods * period; tap < taps; ++tap) {
    sums = sums + ChannelSums<Sums>(row[FoldCoordinate(tap - radiusPx, width)]);
  }
  return sums;
}

// A prefix sum of the columns: a stored one, and the rows between.
struct PrefixSum {
  std::int64_t stored;  // Index of the stored sum.
  std::int64_t first;   // Rows that are added to it,
  std::int64_t last;
  bool isBeyond;  // or subtracted, since the stored sum has them already.
};

// The sum of the first `end` of so many rows.
PrefixSum NearestPrefixSum(std::int64_t end, std::int64_t height) {
  const std::int64_t above = end / kSumSpacing;
  const std::int64_t next = std::min((above + 1) * kSumSpacing, height);
  if (next - end < end - above * kSumSpacing) {
    return {above + 1, end, next, true};
  }
  return {above, above * kSumSpacing, end, false};
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
  scale_ = BoxScale(radiusPx);
  if (axis == BoxAxis::kRows) {
    return PrepareRowSteps();
  }
  return radiusPx <= kMaxRadiusOf32BitSums ? PrepareColumnSums(&sums_)
                                           : PrepareColumnSums(&wideSums_);
}

template <typename Pixel>
const Pixel* BoxRows<Pixel>::SourceRow(std::int64_t row) const {
  return StoredPixel<Pixel>(&src_, row, 0);
}

template <typename Pixel>
template <typename Sums>
const BoxEngine<Pixel, Sums>& BoxRows<Pixel>::Engine() const {
  if constexpr (std::is_same_v<Sums, WideSums>) {
    return WideBoxEngine<Pixel>();
  } else {
    return *engine_;
  }
}

template <typename Pixel>
void BoxRows<Pixel>::FillRows(std::int32_t firstRow, std::int32_t endRow, Pixel* out,
                              std::ptrdiff_t pitch) const {
  if (radiusPx_ <= kMaxRadiusOf32BitSums) {
    Fill(sums_.data(), firstRow, endRow, out, pitch);
  } else {
    Fill(wideSums_.data(), firstRow, endRow, out, pitch);
  }
}

template <typename Pixel>
template <typename Sums>
void BoxRows<Pixel>::Fill(const Sums* stored, std::int32_t firstRow, std::int32_t endRow,
                          Pixel* out, std::ptrdiff_t pitch) const {
  if (axis_ == BoxAxis::kColumns) {
    FillDownColumns(stored, firstRow, endRow, out, pitch);
    return;
  }
  for (std::int32_t row = firstRow; row < endRow; ++row) {
    FillAlongRow<Sums>(row, out + (row - firstRow) * pitch);
  }
}

template <typename Pixel>
bool BoxRows<Pixel>::PrepareRowSteps() {
  const auto width = static_cast<std::size_t>(src_.width);
  if ((entering_.size() < width && !entering_.Allocate(width)) ||
      (leaving_.size() < width && !leaving_.Allocate(width))) {
    return false;
  }
  for (std::int64_t column = 0; column < src_.width; ++column) {
    const auto fold = [&](std::int64_t position) {
      return static_cast<std::uint32_t>(FoldCoordinate(position, src_.width));
    };
    entering_[static_cast<std::size_t>(column)] = fold(column + radiusPx_);
    leaving_[static_cast<std::size_t>(column)] = fold(column - 1 - radiusPx_);
  }
  return true;
}

template <typename Pixel>
template <typename Sums>
void BoxRows<Pixel>::FillAlongRow(std::int32_t row, Pixel* out) const {
  const BoxEngine<Pixel, Sums>& engine = Engine<Sums>();
  const Pixel* const source = SourceRow(row);
  const auto entering = [&](std::int32_t column) {
    return source + entering_[static_cast<std::size_t>(column)];
  };
  const auto leaving = [&](std::int32_t column) {
    return source + leaving_[static_cast<std::size_t>(column)];
  };
  // Where no pixel that enters or leaves is reflected, both move on with the window.
  const std::int64_t plainBegin = std::int64_t{radiusPx_} + 1;
  const std::int64_t plainEnd = std::int64_t{src_.width} - radiusPx_;
  // Before the step to column 0.
  Sums window = FirstWindow(engine, source, src_.width, radiusPx_) -
                ChannelSums<Sums>(*entering(0)) + ChannelSums<Sums>(*leaving(0));
  for (std::int32_t first = 0; first < src_.width; first += kBoxBlock) {
    const std::int32_t end = std::min(src_.width, first + kBoxBlock);
    Sums sums[kBoxBlock];
    for (std::int32_t column = first; column < end;) {
      if (column >= plainBegin && column < plainEnd) {
        const auto count =
            static_cast<std::int32_t>(std::min<std::int64_t>(end, plainEnd) - column);
        engine.slide(entering(column), leaving(column), count, &window, sums + (column - first));
        column += count;
      } else {
        window =
            window + ChannelSums<Sums>(*entering(column)) - ChannelSums<Sums>(*leaving(column));
        sums[column - first] = window;
        ++column;
      }
    }
    engine.means(sums, end - first, scale_, out + first);
  }
}

template <typename Pixel>
template <typename Sums>
bool BoxRows<Pixel>::PrepareColumnSums(Buffer<Sums>* buffer) {
  const BoxEngine<Pixel, Sums>& engine = Engine<Sums>();
  const std::int64_t width = src_.width;
  const std::int64_t stored = (src_.height + kSumSpacing - 1) / kSumSpacing + 1;
  const auto count = static_cast<std::size_t>(stored * width);
  if (buffer->size() < count && !buffer->Allocate(count)) {
    return false;
  }
  Sums* above = buffer->data();
  std::fill_n(above, width, Sums{});
  for (std::int64_t row = 0; row < src_.height; row += kSumSpacing) {
    Sums* const below = above + width;
    const std::int64_t endRow = std::min(row + kSumSpacing, std::int64_t{src_.height});
    for (std::int32_t first = 0; first < src_.width; first += kBoxBlock) {
      const std::int32_t pixels = std::min(src_.width - first, kBoxBlock);
      std::copy_n(above + first, pixels, below + first);
      for (std::int64_t i = row; i < endRow; ++i) {
        engine.add(SourceRow(i) + first, pixels, below + first);
      }
    }
    above = below;
  }
  return true;
}

// Sums of the windows around neighbouring pixels of one row.
template <typename Pixel>
template <typename Sums>
void BoxRows<Pixel>::SumWindows(const Sums* stored, const BoxWindow& window, std::int32_t column,
                                std::int32_t count, Sums* sums) const {
  const BoxEngine<Pixel, Sums>& engine = Engine<Sums>();
  const std::int64_t width = src_.width;
  const std::int64_t height = src_.height;
  std::fill_n(sums, count, Sums{});
  const auto addPrefixSum = [&](std::int64_t end, bool isAdded) {
    const PrefixSum prefix = NearestPrefixSum(end, height);
    const Sums* const nearest = stored + prefix.stored * width + column;
    for (std::int32_t i = 0; i < count; ++i) {
      sums[i] = isAdded ? sums[i] + nearest[i] : sums[i] - nearest[i];
    }
    const auto move = isAdded != prefix.isBeyond ? engine.add : engine.subtract;
    for (std::int64_t row = prefix.first; row < prefix.last; ++row) {
      move(SourceRow(row) + column, count, sums);
    }
  };
  addPrefixSum(window.high, window.highSign == 1);
  addPrefixSum(window.low, window.lowSign == 1);
  if (window.inside) {
    return;
  }
  const Sums* const whole = stored + (height + kSumSpacing - 1) / kSumSpacing * width + column;
  const Pixel* const top = SourceRow(0) + column;
  for (std::int32_t i = 0; i < count; ++i) {
    sums[i] = sums[i] + Times(whole[i], window.wholeFactor) +
              Times(ChannelSums<Sums>(top[i]), window.firstFactor);
  }
}

template <typename Pixel>
template <typename Sums>
void BoxRows<Pixel>::FillDownColumns(const Sums* stored, std::int32_t firstRow, std::int32_t endRow,
                                     Pixel* out, std::ptrdiff_t pitch) const {
  const BoxEngine<Pixel, Sums>& engine = Engine<Sums>();
  const BoxWindow window = MakeBoxWindow(src_.height, firstRow, radiusPx_);
  const Pixel* entering[kBoxStripRows];
  const Pixel* leaving[kBoxStripRows];
  for (std::int64_t row = firstRow; row < endRow; ++row) {
    entering[row - firstRow] = SourceRow(FoldCoordinate(row + radiusPx_, src_.height));
    leaving[row - firstRow] = SourceRow(FoldCoordinate(row - 1 - radiusPx_, src_.height));
  }
  for (std::int32_t column = 0; column < src_.width; column += kBoxBlock) {
    const std::int32_t count = std::min(src_.width - column, kBoxBlock);
    Sums sums[kBoxBlock];
    SumWindows(stored, window, column, count, sums);
    engine.means(sums, count, scale_, out + column);
    for (std::int32_t i = 1; i < endRow - firstRow; ++i) {
      engine.advance(entering[i] + column, leaving[i] + column, count, scale_, sums,
                     out + i * pitch + column);
    }
  }
}

template class BoxRows<PF_Pixel>;
template class BoxRows<PF_Pixel16>;

}  // namespace vitrell
