// The directional blur in strips of rows, summed in vector lanes.
#include "blur/directional/line_strips.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "base/depth_traits.h"
#include "base/pixel_access.h"

namespace vitrell {
namespace {

// The offsets of the line's outermost taps.
struct LineReach {
  std::int64_t minX = 0;
  std::int64_t maxX = 0;
  std::int64_t minY = 0;
  std::int64_t maxY = 0;
};

LineReach ReachOf(const LineTaps& line) {
  LineReach reach;
  for (const LineTap& tap : line) {
    reach.minX = std::min<std::int64_t>(reach.minX, tap.x);
    reach.maxX = std::max<std::int64_t>(reach.maxX, tap.x);
    reach.minY = std::min<std::int64_t>(reach.minY, tap.y);
    reach.maxY = std::max<std::int64_t>(reach.maxY, tap.y);
  }
  return reach;
}

// Whether skipping a tap equals adding 0 for it, and all averages fit the channel.
bool AreOrdinaryWeights(const LineTaps& line) {
  return std::all_of(line.begin(), line.end(), [](const LineTap& tap) {
    return std::isfinite(tap.weight) && tap.weight >= 0.0;
  });
}

}  // namespace

template <typename Pixel>
PF_Err LineStrips<Pixel>::Prepare(const PF_LayerDef& src, const LensMaskView& mask,
                                  const LineTaps& line) {
  if (!HasPixelsFromOrigin(src) || !AreOrdinaryWeights(line)) {
    return PF_Err_NONE;
  }
  src_ = src;
  mask_ = mask;
  engine_ = &BestEngine<LineEngine>();
  weightSum_ = line.weightSum();
  const LineReach reach = ReachOf(line);
  const bool isReady = planes_.Build(src, reach.minX, reach.maxX, engine_->lanes) &&
                       PrepareTaps(line, reach.minY) &&
                       PrepareRows(reach.minY, reach.maxY + src.height);
  return isReady ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
}

// Taps of weight 0 are left out: they would add +0, and no sum is ever -0.
template <typename Pixel>
bool LineStrips<Pixel>::PrepareTaps(const LineTaps& line, std::int64_t firstTapRow) {
  if (!taps_.Allocate(static_cast<std::size_t>(line.count()))) {
    return false;
  }
  isSplit_ = std::is_same_v<Pixel, PF_Pixel>;
  for (const LineTap& tap : line) {
    if (tap.weight != 0.0) {
      LineSumTap& entry = taps_[tapCount_++];
      entry = {tap.y - firstTapRow, planes_.IndexOf(tap.x), tap.weight, 0.0f, 0.0f};
      isSplit_ = isSplit_ && SplitWeight(&entry);
    }
  }
  return true;
}

template <typename Pixel>
bool LineStrips<Pixel>::PrepareRows(std::int64_t firstTapRow, std::int64_t endTapRow) {
  if (!rows_.Allocate(static_cast<std::size_t>(endTapRow - firstTapRow))) {
    return false;
  }
  for (std::int64_t row = firstTapRow; row < endTapRow; ++row) {
    rows_[static_cast<std::size_t>(row - firstTapRow)] =
        static_cast<std::ptrdiff_t>(FoldCoordinate(row, src_.height)) * planes_.rowStride();
  }
  return true;
}

template <typename Pixel>
void LineStrips<Pixel>::FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const {
  for (std::int32_t row = firstRow; row < endRow; row += kBlockRows) {
    FillBlocks(row, std::min(row + kBlockRows, endRow),
               out + std::ptrdiff_t{row - firstRow} * src_.width);
  }
}

template <typename Pixel>
void LineStrips<Pixel>::FillBlocks(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const {
  Block block;
  for (std::int32_t column = 0; column < src_.width; column += engine_->lanes) {
    SumBlock(firstRow, endRow, column, &block);
    for (std::int32_t row = firstRow; row < endRow; ++row) {
      StoreRow(row, column, block, row - firstRow,
               out + std::ptrdiff_t{row - firstRow} * src_.width + column);
    }
  }
}

template <typename Pixel>
bool LineStrips<Pixel>::IsAnyInLens(std::int32_t row, std::int32_t column) const {
  const std::int32_t end = std::min(column + engine_->lanes, src_.width);
  for (std::int32_t x = column; x < end; ++x) {
    if (mask_.At(x, row) > kMaskThreshold) {
      return true;
    }
  }
  return false;
}

template <typename Pixel>
void LineStrips<Pixel>::SumBlock(std::int32_t firstRow, std::int32_t endRow, std::int32_t column,
                                 Block* block) const {
  for (std::int32_t row = firstRow; row < endRow; ++row) {
    block->isInLens[row - firstRow] = IsAnyInLens(row, column);
  }
  for (int color = 0; color < kColorCount; ++color) {
    const LineView view = {planes_.Color(color), rows_.data() + firstRow, column, planes_.count()};
    SumRows(isSplit_ ? engine_->sumSplit : engine_->sum, view, endRow - firstRow, 0.0f, *block,
            block->colors[color]);
  }
  if (planes_.HasHoles()) {
    const LineView view = {planes_.Opacity(), rows_.data() + firstRow, column, planes_.count()};
    SumRows(engine_->sumWide, view, endRow - firstRow, 0.0, *block, block->weights);
  } else {
    std::fill_n(&block->weights[0][0], kBlockRows * kMaxLineLanes, weightSum_);
  }
}

// Sums one plane for the rows of a block. A few taps at a time are applied to all rows, since the
// values they read are then still in the first-level cache for the next row.
template <typename Pixel>
template <typename SumFunction, typename Value>
void LineStrips<Pixel>::SumRows(SumFunction sum, const LineView& firstView, std::int32_t rowCount,
                                Value zero, const Block& block,
                                Value (*sums)[kMaxLineLanes]) const {
  constexpr std::size_t kTapsAtOnce = 96;
  std::fill_n(&sums[0][0], kBlockRows * kMaxLineLanes, zero);
  for (std::size_t first = 0; first < tapCount_; first += kTapsAtOnce) {
    const LineSumTap* const begin = taps_.data() + first;
    const LineSumTap* const end = begin + std::min(kTapsAtOnce, tapCount_ - first);
    LineView view = firstView;
    for (std::int32_t row = 0; row < rowCount; ++row) {
      if (block.isInLens[row]) {
        sum(view, begin, end, sums[row]);
      }
      ++view.rows;
    }
  }
}

// Pixels outside the lens, and those whose whole line is transparent, keep their input.
template <typename Pixel>
void LineStrips<Pixel>::StoreRow(std::int32_t row, std::int32_t column, const Block& block,
                                 std::int32_t blockRow, Pixel* out) const {
  using Channel = ChannelOf<Pixel>;
  const std::int32_t columns = std::min(engine_->lanes, src_.width - column);
  const Pixel* const in = StoredPixel<Pixel>(&src_, row, column);
  if (!block.isInLens[blockRow]) {
    std::copy_n(in, columns, out);
    return;
  }
  const double* const weights = block.weights[blockRow];
  double divisors[kMaxLineLanes];
  std::transform(weights, weights + engine_->lanes, divisors,
                 [](double weight) { return weight == 0.0 ? 1.0 : weight; });
  std::int32_t colors[kColorCount][kMaxLineLanes];
  for (int color = 0; color < kColorCount; ++color) {
    engine_->divide(block.colors[color][blockRow], divisors, colors[color]);
  }
  for (std::int32_t i = 0; i < columns; ++i) {
    const bool isBlurred = weights[i] != 0.0 && mask_.At(column + i, row) > kMaskThreshold;
    out[i] = isBlurred
                 ? Pixel{in[i].alpha, static_cast<Channel>(colors[0][i]),
                         static_cast<Channel>(colors[1][i]), static_cast<Channel>(colors[2][i])}
                 : in[i];
  }
}

template class LineStrips<PF_Pixel>;
template class LineStrips<PF_Pixel16>;

}  // namespace vitrell
