// The definition of the fast blur: one pass along one axis computes one pixel, tap by tap.
#include "blur/fast/box_pixel.h"

#include <algorithm>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"

namespace vitrell {
namespace {

// Unrounded colour means.
struct ColorMeans {
  double red;
  double green;
  double blue;
};

// Means of the taps from -reach to reach around (x, y), weighted by the lens mask and summed in tap
// order. Taps outside the mask's rectangle are skipped: their weight is 0, and adding 0 changes no
// sum.
template <BoxAxis kAxis, typename Pixel>
ColorMeans WeightedMeans(const BoxBlurRefcon& box, const LensMaskView& mask, std::int32_t x,
                         std::int32_t y, std::int64_t reach) {
  constexpr bool kRows = kAxis == BoxAxis::kRows;
  const PF_LRect& rect = box.io->dst->extent_hint;
  const std::int64_t center = kRows ? x : y;
  const std::int64_t begin = std::max(center - reach, std::int64_t{kRows ? rect.left : rect.top});
  const std::int64_t end =
      std::min(center + reach + 1, std::int64_t{kRows ? rect.right : rect.bottom});
  double red = 0, green = 0, blue = 0, weightSum = 0;
  for (std::int64_t position = begin; position < end; ++position) {
    const std::int32_t column = kRows ? static_cast<std::int32_t>(position) : x;
    const std::int32_t row = kRows ? y : static_cast<std::int32_t>(position);
    const double w = mask.At(column, row);
    if (const Pixel* const tap = GetPointerFromDataP<Pixel>(box.io->src, row, column, 1)) {
      red += w * tap->red;
      green += w * tap->green;
      blue += w * tap->blue;
    }
    weightSum += w;
  }
  return {red / weightSum, green / weightSum, blue / weightSum};
}

template <typename Pixel>
void StoreMeans(const Pixel& in, const ColorMeans& means, Pixel* out) {
  using Channel = ChannelOf<Pixel>;
  *out = {in.alpha, TruncateToChannel<Channel>(means.red + 0.5),
          TruncateToChannel<Channel>(means.green + 0.5),
          TruncateToChannel<Channel>(means.blue + 0.5)};
}

// Blends towards the unblurred colour where the mask is faint: unblurred up to m x radius = 1,
// fully blurred from 5 on.
template <typename Pixel>
ColorMeans BlendWithUnblurred(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y, double m,
                              const ColorMeans& means) {
  const double t = std::min(1.0, std::max(0.0, (m * box.radiusPx - 1.0) * 0.25));
  const Pixel* const stored = GetPointerFromDataP<Pixel>(&box.unblurred, y, x, 1);
  const Pixel unblurred = stored != nullptr ? *stored : Pixel{};
  return {unblurred.red * (1 - t) + means.red * t, unblurred.green * (1 - t) + means.green * t,
          unblurred.blue * (1 - t) + means.blue * t};
}

}  // namespace

// A mirrored line is periodic, so that whole periods of a long window are added at once. The sums
// are integers below 2^53 either way.
template <BoxAxis kAxis, typename Pixel>
void StorePlainBox(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y, const Pixel& in,
                   Pixel* out) {
  constexpr bool kRows = kAxis == BoxAxis::kRows;
  const PF_LayerDef& src = *box.io->src;
  const std::int64_t taps = std::max<std::int64_t>(2 * std::int64_t{box.radiusPx} + 1, 0);
  const std::int64_t period =
      MirrorPeriod(std::max<std::int64_t>(kRows ? src.width : src.height, 1));
  double red = 0, green = 0, blue = 0;
  const auto add = [&](std::int64_t first, std::int64_t count, std::int64_t times) {
    const auto weight = static_cast<double>(times);
    for (std::int64_t i = first; i < first + count; ++i) {
      const auto shift = static_cast<std::int32_t>(i);
      const std::int32_t row = kRows ? y : WrappingAdd(y, shift);
      const std::int32_t column = kRows ? WrappingAdd(x, shift) : x;
      if (const Pixel* const tap = GetPointerFromDataP<Pixel>(&src, row, column, 1)) {
        red += weight * tap->red;
        green += weight * tap->green;
        blue += weight * tap->blue;
      }
    }
  };
  add(-std::int64_t{box.radiusPx}, taps % period, 1);
  if (taps >= period) {
    add(0, period, taps / period);
  }
  const auto count = static_cast<double>(taps);
  StoreMeans(in, {red / count, green / count, blue / count}, out);
}

template <BoxAxis kAxis, typename Pixel>
void StoreWeightedBox(const BoxBlurRefcon& box, const LensMaskView& mask, std::int32_t x,
                      std::int32_t y, const Pixel& in, Pixel* out) {
  const double m = mask.At(x, y);
  ColorMeans means =
      WeightedMeans<kAxis, Pixel>(box, mask, x, y, TruncateToInt32(box.radiusPx * m));
  // Kept: only the vertical pass blends.
  if (kAxis == BoxAxis::kColumns && m < 1 && box.radiusPx != 0) {
    means = BlendWithUnblurred<Pixel>(box, x, y, m, means);
  }
  StoreMeans(in, means, out);
}

template void StorePlainBox<BoxAxis::kRows>(const BoxBlurRefcon&, std::int32_t, std::int32_t,
                                            const PF_Pixel&, PF_Pixel*);
template void StorePlainBox<BoxAxis::kRows>(const BoxBlurRefcon&, std::int32_t, std::int32_t,
                                            const PF_Pixel16&, PF_Pixel16*);
template void StorePlainBox<BoxAxis::kColumns>(const BoxBlurRefcon&, std::int32_t, std::int32_t,
                                               const PF_Pixel&, PF_Pixel*);
template void StorePlainBox<BoxAxis::kColumns>(const BoxBlurRefcon&, std::int32_t, std::int32_t,
                                               const PF_Pixel16&, PF_Pixel16*);
template void StoreWeightedBox<BoxAxis::kRows>(const BoxBlurRefcon&, const LensMaskView&,
                                               std::int32_t, std::int32_t, const PF_Pixel&,
                                               PF_Pixel*);
template void StoreWeightedBox<BoxAxis::kRows>(const BoxBlurRefcon&, const LensMaskView&,
                                               std::int32_t, std::int32_t, const PF_Pixel16&,
                                               PF_Pixel16*);
template void StoreWeightedBox<BoxAxis::kColumns>(const BoxBlurRefcon&, const LensMaskView&,
                                                  std::int32_t, std::int32_t, const PF_Pixel&,
                                                  PF_Pixel*);
template void StoreWeightedBox<BoxAxis::kColumns>(const BoxBlurRefcon&, const LensMaskView&,
                                                  std::int32_t, std::int32_t, const PF_Pixel16&,
                                                  PF_Pixel16*);

}  // namespace vitrell
