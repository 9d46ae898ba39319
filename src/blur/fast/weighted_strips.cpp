// Box means weighted by the lens mask, at a cost that hardly depends on the radius.
#include "blur/fast/weighted_strips.h"

#include <algorithm>

#include "base/pixel_access.h"
#include "lens/lens_mask.h"

namespace vitrell {
namespace {

// True when the world has a pixel at every position of the rectangle.
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

// The first position from which on a weight is neither 0 nor 1, or the length.
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

// The positions from begin to end.
WeightedLines Stretch(const WeightedLines& lines, std::int32_t begin, std::int32_t end) {
  WeightedLines stretch = lines;
  stretch.length = end - begin;
  stretch.weights += begin * lines.step;
  stretch.pixels += begin * lines.pixelStep;
  stretch.unblurred += lines.unblurred != nullptr ? begin * lines.unblurredStep : 0;
  return stretch;
}

}  // namespace

template <typename Pixel>
bool WeightedStrips<Pixel>::Prepare(const WeightedPass& pass) {
  pass_ = pass;
  engine_ = &BestWeightedEngine<Pixel>();
  const std::int64_t width = std::int64_t{pass.rect.right} - pass.rect.left;
  const std::int64_t height = std::int64_t{pass.rect.bottom} - pass.rect.top;
  const bool fits = pass.radiusPx >= 0 && width > 0 && height > 0 &&
                    std::max(width, height) <= kMaxWeightedTaps &&
                    static_cast<std::uint64_t>(width * height) <= g_LensMaskSize &&
                    Covers(*pass.src, pass.rect) && Covers(*pass.unblurred, pass.rect);
  width_ = fits ? static_cast<std::int32_t>(width) : 0;
  height_ = fits ? static_cast<std::int32_t>(height) : 0;
  if (!fits) {
    return strips_.Reset(0, 0);
  }
  const auto positions = static_cast<std::size_t>(IsRows() ? width_ : height_) + 1;
  workspaceSize_ = positions * static_cast<std::size_t>(LinesAtOnce());
  const std::size_t sums = kWorkspaces * workspaceSize_ + 1;  // One more, to align the first.
  return strips_.Reset(width_, height_, IsRows() ? StripLines::kRows : StripLines::kColumns) &&
         (workspaces_.size() >= sums || workspaces_.Allocate(sums));
}

template <typename Pixel>
const Pixel* WeightedStrips<Pixel>::At(std::int32_t x, std::int32_t y,
                                       SumTapsFunction<Pixel> sumTaps, const void* context) {
  const std::uint32_t workspace = width_ > 0 ? TakeWorkspace() : kWorkspaces;
  if (workspace == kWorkspaces) {
    return ReadyAt(x, y);
  }
  WeightedSums* const sums = SumsOf(workspace);
  const Pixel* const pixel =
      strips_.PixelOrFill(WrappingSubtract(x, pass_.rect.left), WrappingSubtract(y, pass_.rect.top),
                          [&](std::int32_t first, std::int32_t end, Pixel* out) {
                            for (; first < end; first += LinesAtOnce()) {
                              FillLines(MakeLines(first, std::min(first + LinesAtOnce(), end)),
                                        sums, sumTaps, context, out);
                              out += width_;
                            }
                          });
  ReturnWorkspace(workspace);
  return pixel;
}

template <typename Pixel>
WeightedLines WeightedStrips<Pixel>::MakeLines(std::int32_t first, std::int32_t end) const {
  const bool isRows = IsRows();
  const std::int32_t x = pass_.rect.left + (isRows ? 0 : first);
  const std::int32_t y = pass_.rect.top + (isRows ? first : 0);
  constexpr std::ptrdiff_t kPixelBytes = sizeof(Pixel);
  return {.count = end - first,
          .length = isRows ? width_ : height_,
          .radiusPx = pass_.radiusPx,
          .weights = g_LensMask + (isRows ? std::ptrdiff_t{first} * width_ : first),
          .pixels = AddressOf<Pixel>(*pass_.src, x, y),
          .unblurred = isRows ? nullptr : AddressOf<Pixel>(*pass_.unblurred, x, y),
          .step = isRows ? 1 : width_,
          .pixelStep = isRows ? kPixelBytes : pass_.src->rowbytes,
          .unblurredStep = pass_.unblurred->rowbytes};
}

template <typename Pixel>
void WeightedStrips<Pixel>::FillLines(const WeightedLines& lines, WeightedSums* sums,
                                      SumTapsFunction<Pixel> sumTaps, const void* context,
                                      Pixel* out) const {
  const std::int64_t radiusPx = pass_.radiusPx;
  std::int32_t soft = NextSoftPosition(lines, 0);
  while (soft < lines.length) {
    // Windows reach radiusPx beyond the soft positions; from one stretch to the next nothing is
    // looked at.
    const auto begin = static_cast<std::int32_t>(std::max<std::int64_t>(soft - radiusPx, 0));
    std::int64_t end = soft;
    while (soft < lines.length && soft - end <= 2 * radiusPx) {
      end = soft + 1;
      soft = NextSoftPosition(lines, soft + 1);
    }
    end = std::min<std::int64_t>(end + radiusPx, lines.length);
    FillStretch(Stretch(lines, begin, static_cast<std::int32_t>(end)), sums, sumTaps, context,
                out + begin * lines.step);
  }
}

template <typename Pixel>
void WeightedStrips<Pixel>::FillStretch(const WeightedLines& lines, WeightedSums* sums,
                                        SumTapsFunction<Pixel> sumTaps, const void* context,
                                        Pixel* out) const {
  const std::int64_t count = std::int64_t{lines.length} * lines.count;
  const bool isSummed = engine_->sumLines(lines, sums);
  for (std::int64_t index = 0; index < count; ++index) {
    index = isSummed ? engine_->storeMeans(lines, sums, index, out) : index;
    if (index < count) {
      const std::ptrdiff_t offset = index / lines.count * lines.step + index % lines.count;
      const std::ptrdiff_t pixel = lines.weights - g_LensMask + offset;
      sumTaps(context, pass_.rect.left + static_cast<std::int32_t>(pixel % width_),
              pass_.rect.top + static_cast<std::int32_t>(pixel / width_), out + offset);
    }
  }
}

template <typename Pixel>
WeightedSums* WeightedStrips<Pixel>::SumsOf(std::uint32_t workspace) {
  const auto address = reinterpret_cast<std::uintptr_t>(workspaces_.data());
  const std::uintptr_t aligned =
      (address + sizeof(WeightedSums) - 1) / sizeof(WeightedSums) * sizeof(WeightedSums);
  return reinterpret_cast<WeightedSums*>(aligned) + workspace * workspaceSize_;
}

template <typename Pixel>
std::uint32_t WeightedStrips<Pixel>::TakeWorkspace() {
  std::uint32_t taken = __atomic_load_n(&taken_, __ATOMIC_RELAXED);
  for (std::uint32_t workspace = 0; workspace < kWorkspaces;) {
    const std::uint32_t bit = 1U << workspace;
    if ((taken & bit) != 0) {
      ++workspace;
    } else if (__atomic_compare_exchange_n(&taken_, &taken, taken | bit, false, __ATOMIC_ACQUIRE,
                                           __ATOMIC_RELAXED)) {
      return workspace;
    }
  }
  return kWorkspaces;
}

template <typename Pixel>
void WeightedStrips<Pixel>::ReturnWorkspace(std::uint32_t workspace) {
  __atomic_fetch_and(&taken_, ~(1U << workspace), __ATOMIC_RELEASE);
}

template class WeightedStrips<PF_Pixel>;
template class WeightedStrips<PF_Pixel16>;

}  // namespace vitrell
