// Box means weighted by the lens mask, at a cost that hardly depends on the radius.
#include "blur/fast/weighted_strips.h"

#include <algorithm>
#include <cstddef>

#include "base/pixel_access.h"

namespace vitrell {
namespace {

// Whether the world has a pixel at every position of the rectangle.
bool Covers(const PF_LayerDef& world, const PF_LRect& rect) {
  const std::int64_t left = std::int64_t{rect.left} - world.extent_hint.left;
  const std::int64_t top = std::int64_t{rect.top} - world.extent_hint.top;
  return world.data != nullptr && left >= 0 && top >= 0 &&
         left + rect.right - rect.left <= world.width &&
         top + rect.bottom - rect.top <= world.height;
}

template <typename Pixel>
const char* AddressOf(const PF_LayerDef& world, std::int32_t x, std::int32_t y) {
  return reinterpret_cast<const char*>(GetPointerFromDataP<Pixel>(&world, y, x, 0));
}

// The first position, from the given one on, with a weight that is neither 0 nor 1; length if there
// is none.
std::int32_t NextSoftPosition(const WeightedLines& lines, std::int32_t position) {
  for (; position < lines.length; ++position) {
    const double* const weights = lines.weights + position * lines.step;
    for (std::int32_t line = 0; line < lines.count; ++line) {
      if (weights[line] > 0.0 && weights[line] < 1.0) {
        return position;
      }
    }
  }
  return position;
}

}  // namespace

template <BoxAxis kAxis, typename PixelType>
bool WeightedStrips<kAxis, PixelType>::Prepare(WeightedMemory<Pixel>* memory) {
  rect_ = box_.io->dst->extent_hint;
  engine_ = &BestEngine<WeightedEngine<Pixel>>();
  sums_ = &memory->sums;
  weights_ = mask_.ValuesInMemory();
  const std::int64_t width = std::int64_t{rect_.right} - rect_.left;
  const std::int64_t height = std::int64_t{rect_.bottom} - rect_.top;
  const bool fits = box_.radiusPx >= 0 && width > 0 && height > 0 &&
                    std::max(width, height) <= kMaxWeightedTaps && weights_ != nullptr &&
                    Covers(*box_.io->src, rect_) && Covers(box_.unblurred, rect_);
  if (!fits) {
    return true;
  }
  width_ = static_cast<std::int32_t>(width);
  height_ = static_cast<std::int32_t>(height);
  const auto positions = static_cast<std::size_t>(kIsRows ? width_ : height_) + 1;
  return sums_->Reset(positions * static_cast<std::size_t>(kLinesAtOnce));
}

template <BoxAxis kAxis, typename PixelType>
bool WeightedStrips<kAxis, PixelType>::FillStrip(std::int32_t firstLine, std::int32_t endLine,
                                                 Pixel* out) {
  const Workspaces<WeightedSums>::Loan loan(sums_);
  if (loan.values() == nullptr) {
    return false;
  }
  for (std::int32_t line = firstLine; line < endLine; line += kLinesAtOnce) {
    FillLines(line, std::min(line + kLinesAtOnce, endLine), loan.values(), out);
    out += width_;
  }
  return true;
}

template <BoxAxis kAxis, typename PixelType>
WeightedLines WeightedStrips<kAxis, PixelType>::LinesOf(const Stretch& stretch) const {
  const std::int32_t column = kIsRows ? stretch.begin : stretch.firstLine;
  const std::int32_t row = kIsRows ? stretch.firstLine : stretch.begin;
  const std::int32_t x = rect_.left + column;
  const std::int32_t y = rect_.top + row;
  constexpr std::ptrdiff_t kPixelBytes = sizeof(Pixel);
  return {.count = stretch.endLine - stretch.firstLine,
          .length = stretch.end - stretch.begin,
          .radiusPx = box_.radiusPx,
          .weights = weights_ + std::ptrdiff_t{row} * width_ + column,
          .pixels = AddressOf<Pixel>(*box_.io->src, x, y),
          .unblurred = kIsRows ? nullptr : AddressOf<Pixel>(box_.unblurred, x, y),
          .step = kIsRows ? 1 : width_,
          .pixelStep = kIsRows ? kPixelBytes : box_.io->src->rowbytes,
          .unblurredStep = box_.unblurred.rowbytes};
}

template <BoxAxis kAxis, typename PixelType>
void WeightedStrips<kAxis, PixelType>::FillLines(std::int32_t firstLine, std::int32_t endLine,
                                                 WeightedSums* sums, Pixel* out) const {
  const std::int64_t radiusPx = box_.radiusPx;
  const WeightedLines lines = LinesOf({firstLine, endLine, 0, kIsRows ? width_ : height_});
  std::int32_t soft = NextSoftPosition(lines, 0);
  while (soft < lines.length) {
    // A stretch extends radiusPx beyond its soft positions. The positions between two stretches are
    // not read.
    const auto begin = static_cast<std::int32_t>(std::max<std::int64_t>(soft - radiusPx, 0));
    std::int64_t end = soft;
    while (soft < lines.length && soft - end <= 2 * radiusPx) {
      end = soft + 1;
      soft = NextSoftPosition(lines, soft + 1);
    }
    end = std::min<std::int64_t>(end + radiusPx, lines.length);
    FillStretch({firstLine, endLine, begin, static_cast<std::int32_t>(end)}, sums,
                out + begin * lines.step);
  }
}

template <BoxAxis kAxis, typename PixelType>
void WeightedStrips<kAxis, PixelType>::FillStretch(const Stretch& stretch, WeightedSums* sums,
                                                   Pixel* out) const {
  const WeightedLines lines = LinesOf(stretch);
  const std::int64_t count = std::int64_t{lines.length} * lines.count;
  const bool isSummed = engine_->sumLines(lines, sums);
  for (std::int64_t index = 0; index < count; ++index) {
    index = isSummed ? engine_->storeMeans(lines, sums, index, out) : index;
    if (index < count) {
      const auto position = static_cast<std::int32_t>(index / lines.count);
      const auto line = static_cast<std::int32_t>(index % lines.count);
      StoreByDefinition(stretch.firstLine + line, stretch.begin + position,
                        out + position * lines.step + line);
    }
  }
}

template <BoxAxis kAxis, typename PixelType>
void WeightedStrips<kAxis, PixelType>::StoreByDefinition(std::int32_t line, std::int32_t position,
                                                         Pixel* out) const {
  const std::int32_t x = rect_.left + (kIsRows ? position : line);
  const std::int32_t y = rect_.top + (kIsRows ? line : position);
  const double m = mask_.At(x, y);
  if (m > 0.0 && m < 1.0) {
    StoreOnePixel(x, y, Pixel{}, out);
  }
}

template class WeightedStrips<BoxAxis::kRows, PF_Pixel>;
template class WeightedStrips<BoxAxis::kRows, PF_Pixel16>;
template class WeightedStrips<BoxAxis::kColumns, PF_Pixel>;
template class WeightedStrips<BoxAxis::kColumns, PF_Pixel16>;

}  // namespace vitrell
