// Fast blur: a box blur of the colour channels, repeated three times, uniform or by the lens mask.
#include "blur/fast/fast_blur.h"

#include <algorithm>

#include "base/numeric.h"
#include "base/pixel_access.h"
#include "host/pixel_pass.h"
#include "host/suite_handler.h"
#include "host/world.h"
#include "lens/lens_mask.h"

namespace vitrell {
namespace {

// Unrounded colour means.
struct ColourMeans {
  double red;
  double green;
  double blue;
};

// Means of the taps from -reach to reach around (x, y), each weighted by the lens mask, summed in
// tap order. Taps outside the mask's rectangle weigh 0 and are left out: adding 0 changes no sum.
template <BoxAxis kAxis, typename Pixel>
ColourMeans WeightedMeans(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y,
                          std::int64_t reach) {
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
    const double w = box.mask.At(column, row);
    if (const Pixel* const tap = GetPointerFromDataP<Pixel>(
            box.io->src, row, column, static_cast<unsigned char>(box.mirror))) {
      red += w * tap->red;
      green += w * tap->green;
      blue += w * tap->blue;
    }
    weightSum += w;
  }
  return {red / weightSum, green / weightSum, blue / weightSum};
}

// The pixel's own alpha with the blurred colours. In a world whose extent does not begin at (0, 0)
// the blurred pixel was worked out for another place of the memory, and so was its alpha.
template <typename Pixel>
inline void StoreColours(const Pixel& in, const Pixel& blurred, Pixel* out) {
  *out = {in.alpha, blurred.red, blurred.green, blurred.blue};
}

template <typename Pixel>
void StoreMeans(const Pixel& in, const ColourMeans& means, Pixel* out) {
  using Channel = ChannelOf<Pixel>;
  *out = {in.alpha, TruncateToChannel<Channel>(means.red + 0.5),
          TruncateToChannel<Channel>(means.green + 0.5),
          TruncateToChannel<Channel>(means.blue + 0.5)};
}

// A faint mask leaves the pixel close to its unblurred colour; full blur from m x radius = 5 on.
template <typename Pixel>
ColourMeans BlendWithUnblurred(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y, double m,
                               const ColourMeans& means) {
  const double t = std::min(1.0, std::max(0.0, (m * box.radiusPx - 1.0) * 0.25));
  const Pixel* const stored =
      GetPointerFromDataP<Pixel>(&box.unblurred, y, x, static_cast<unsigned char>(box.mirror));
  const Pixel unblurred = stored != nullptr ? *stored : Pixel{};
  return {unblurred.red * (1 - t) + means.red * t, unblurred.green * (1 - t) + means.green * t,
          unblurred.blue * (1 - t) + means.blue * t};
}

// The plain box around one pixel, for the rare pixel whose row cannot be had: outside the source,
// or while another thread works the row out. The folded line repeats, so that whole periods of a
// long window are added at once; the sums are integers below 2^53 either way.
template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] void StorePlainBox(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y,
                                     const Pixel& in, Pixel* out) {
  constexpr bool kRows = kAxis == BoxAxis::kRows;
  const PF_LayerDef& src = *box.io->src;
  const std::int64_t taps = std::max<std::int64_t>(2 * std::int64_t{box.radiusPx} + 1, 0);
  const std::int64_t period = 2 * std::max<std::int64_t>(kRows ? src.width : src.height, 1) - 1;
  double red = 0, green = 0, blue = 0;
  const auto add = [&](std::int64_t first, std::int64_t count, std::int64_t times) {
    const auto weight = static_cast<double>(times);
    for (std::int64_t i = first; i < first + count; ++i) {
      const auto shift = static_cast<std::int32_t>(i);
      const std::int32_t row = kRows ? y : WrappingAdd(y, shift);
      const std::int32_t column = kRows ? WrappingAdd(x, shift) : x;
      if (const Pixel* const tap = GetPointerFromDataP<Pixel>(
              &src, row, column, static_cast<unsigned char>(box.mirror))) {
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

// The slow ways are functions of their own that the pass ends in, so that the quick way saves no
// registers.
template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] PF_Err PlainBoxOfNewRow(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y,
                                          const Pixel& in, Pixel* out) {
  if (const Pixel* const blurred = static_cast<BoxRows<Pixel>*>(box.boxRows)->At(x, y)) {
    StoreColours(in, *blurred, out);
  } else {
    StorePlainBox<kAxis>(box, x, y, in, out);
  }
  return PF_Err_NONE;
}

template <BoxAxis kAxis, typename Pixel>
inline PF_Err PlainBox(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y, const Pixel& in,
                       Pixel* out) {
  const Pixel* const blurred = static_cast<const BoxRows<Pixel>*>(box.boxRows)->ReadyAt(x, y);
  if (blurred == nullptr) [[unlikely]] {
    return PlainBoxOfNewRow<kAxis>(box, x, y, in, out);
  }
  StoreColours(in, *blurred, out);
  return PF_Err_NONE;
}

// The defining loop of one pixel where the mask m is between 0 and 1.
template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] void StoreWeightedBox(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y,
                                        double m, const Pixel& in, Pixel* out) {
  ColourMeans means = WeightedMeans<kAxis, Pixel>(box, x, y, TruncateToInt32(box.radiusPx * m));
  // Kept: the vertical pass alone blends.
  if (kAxis == BoxAxis::kColumns && m < 1 && box.radiusPx != 0) {
    means = BlendWithUnblurred<Pixel>(box, x, y, m, means);
  }
  StoreMeans(in, means, out);
}

template <BoxAxis kAxis, typename Pixel>
void SumTaps(const void* context, std::int32_t x, std::int32_t y, Pixel* out) {
  const BoxBlurRefcon& box = *static_cast<const BoxBlurRefcon*>(context);
  const double m = box.mask.At(x, y);
  if (m > 0.0 && m < 1.0) {
    StoreWeightedBox<kAxis>(box, x, y, m, Pixel{}, out);
  }
}

template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] const Pixel* WeightedBoxOfNewStrip(const BoxBlurRefcon& box, std::int32_t x,
                                                     std::int32_t y) {
  return static_cast<WeightedStrips<Pixel>*>(box.weightedStrips)
      ->At(x, y, SumTaps<kAxis, Pixel>, &box);
}

template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] PF_Err MappedBox(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y,
                                   const Pixel& in, Pixel* out) {
  const double m = box.mask.At(x, y);
  if (m == 1.0) {
    return PlainBox<kAxis>(box, x, y, in, out);
  }
  if (!(m > 0.0)) {
    *out = in;
    return PF_Err_NONE;
  }
  const Pixel* blurred = nullptr;
  if (m < 1.0) {
    blurred = static_cast<const WeightedStrips<Pixel>*>(box.weightedStrips)->ReadyAt(x, y);
    if (blurred == nullptr) [[unlikely]] {
      blurred = WeightedBoxOfNewStrip<kAxis, Pixel>(box, x, y);
    }
  }
  if (blurred != nullptr) {
    StoreColours(in, *blurred, out);
  } else {
    StoreWeightedBox<kAxis>(box, x, y, m, in, out);
  }
  return PF_Err_NONE;
}

template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] PF_Err MappedPass(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y,
                                    const Pixel& in, Pixel* out) {
  return box.ones.Contain(x, y) ? PlainBox<kAxis>(box, x, y, in, out)
                                : MappedBox<kAxis>(box, x, y, in, out);
}

template <BoxAxis kAxis, typename Pixel>
PF_Err BoxPass(const BoxBlurRefcon& box, std::int32_t x, std::int32_t y, const Pixel& in,
               Pixel* out) {
  return box.lensMap == 0 ? PlainBox<kAxis>(box, x, y, in, out)
                          : MappedPass<kAxis>(box, x, y, in, out);
}

// Prepares the rows of the world to be read and iterates one pass.
template <BoxAxis kAxis, typename Pixel>
PF_Err RunBoxPass(AEGP_SuiteHandler& suites, const IO_Params& io, std::int32_t radiusPx,
                  A_long lines, BoxBlurRefcon* box, BoxBlurScratch<Pixel>* scratch) {
  // An unrepresentable amount has a negative radius: windows without taps, which have no rows.
  const PF_LayerDef noSource = {};
  if (!scratch->rows.Prepare(kAxis, radiusPx < 0 ? noSource : *io.src, std::max(radiusPx, 0))) {
    scratch->outOfMemory = true;
    return PF_Err_OUT_OF_MEMORY;
  }
  const WeightedPass weighted = {.axis = kAxis,
                                 .radiusPx = radiusPx,
                                 .src = io.src,
                                 .unblurred = &box->unblurred,
                                 .rect = io.dst->extent_hint};
  if (box->lensMap != 0 && !scratch->weightedStrips.Prepare(weighted)) {
    scratch->outOfMemory = true;
    return PF_Err_OUT_OF_MEMORY;
  }
  box->io = &io;
  box->boxRows = &scratch->rows;
  box->weightedStrips = &scratch->weightedStrips;
  box->mask = LensMaskView(*io.dst);
  box->ones = box->mask.Ones();
  box->radiusPx = radiusPx;
  box->span = 2.0 * radiusPx + 1;
  constexpr PixelCallbacks kCallbacks =
      kAxis == BoxAxis::kRows ? PixelCallbacks{FastBlurH<PF_Pixel>, FastBlurH<PF_Pixel16>}
                              : PixelCallbacks{FastBlurV<PF_Pixel>, FastBlurV<PF_Pixel16>};
  return RunPixelPass(suites, io.in_data, io.src, io.dst, lines, kCallbacks, box);
}

// From the destination back into the source.
IO_Params Swapped(const IO_Params& io) { return {io.in_data, io.out_data, io.dst, io.src}; }

}  // namespace

template <typename Pixel, typename Channel>
PF_Err FastBlurH(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return BoxPass<BoxAxis::kRows>(*static_cast<const BoxBlurRefcon*>(refcon), x, y, *in, out);
}

template <typename Pixel, typename Channel>
PF_Err FastBlurV(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return BoxPass<BoxAxis::kColumns>(*static_cast<const BoxBlurRefcon*>(refcon), x, y, *in, out);
}

template <typename Pixel, typename Channel>
PF_Err FastBlurA(const IO_Params& io, std::int32_t horizontalRadiusPx,
                 std::int32_t verticalRadiusPx, std::uint8_t lensMap, std::uint8_t /*unused*/,
                 BoxBlurScratch<Pixel>* scratch) {
  AEGP_SuiteHandler suites(io.in_data->pica_basicP);
  const A_long lines = ExtentLines(*io.dst);
  OwnedWorld unblurred(io.in_data);
  if (const PF_Err err = unblurred.CreateLike(*io.src); err != 0) {
    return err;
  }
  // Kept: neither this copy's nor the horizontal pass's failure stops the blur.
  static_cast<void>(CopyWorld(io.in_data, io.src, unblurred.get()));
  BoxBlurRefcon box = {.io = nullptr,
                       .mirror = 1,
                       .radiusPx = 0,
                       .span = 0,
                       .lensMap = lensMap,
                       .unblurred = *unblurred.get(),
                       .boxRows = nullptr,
                       .weightedStrips = nullptr,
                       .mask = LensMaskView(*io.dst),
                       .ones = {}};
  static_cast<void>(
      RunBoxPass<BoxAxis::kRows, Pixel>(suites, io, horizontalRadiusPx, lines, &box, scratch));
  if (scratch->outOfMemory) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const IO_Params back = Swapped(io);
  PF_Err err =
      RunBoxPass<BoxAxis::kColumns, Pixel>(suites, back, verticalRadiusPx, lines, &box, scratch);
  if (err == 0) {
    err = CopyWorld(io.in_data, io.src, io.dst);
  }
  return err;
}

template <typename Pixel, typename Channel>
PF_Err FastBlur(const IO_Params& io, std::int32_t radiusPx, std::uint8_t lensMap) {
  BoxBlurScratch<Pixel> scratch;
  const auto round = [&](const IO_Params& worlds) {
    return FastBlurA<Pixel>(worlds, radiusPx, radiusPx, lensMap, 0, &scratch);
  };
  // Kept: the first two rounds' failures are ignored; only shortage of own memory ends the blur.
  static_cast<void>(round(io));
  if (scratch.outOfMemory) {
    return PF_Err_OUT_OF_MEMORY;
  }
  static_cast<void>(round(Swapped(io)));
  return scratch.outOfMemory ? PF_Err_OUT_OF_MEMORY : round(io);
}

PF_Err RenderFastBlurEffect(const StageCall& call) {
  const FastBlurPlan& plan = call.plan.fastBlur;
  if (plan.isCopy) {
    return call.Copy();
  }
  const std::uint8_t lensMap = plan.isByMask ? 1 : 0;
  return IsDeep(*call.io.dst) ? FastBlur<PF_Pixel16>(call.io, plan.radiusPx, lensMap)
                              : FastBlur<PF_Pixel>(call.io, plan.radiusPx, lensMap);
}

template PF_Err FastBlurH<PF_Pixel>(void*, A_long, A_long, PF_Pixel*, PF_Pixel*);
template PF_Err FastBlurH<PF_Pixel16>(void*, A_long, A_long, PF_Pixel16*, PF_Pixel16*);
template PF_Err FastBlurV<PF_Pixel>(void*, A_long, A_long, PF_Pixel*, PF_Pixel*);
template PF_Err FastBlurV<PF_Pixel16>(void*, A_long, A_long, PF_Pixel16*, PF_Pixel16*);
template PF_Err FastBlurA<PF_Pixel>(const IO_Params&, std::int32_t, std::int32_t, std::uint8_t,
                                    std::uint8_t, BoxBlurScratch<PF_Pixel>*);
template PF_Err FastBlurA<PF_Pixel16>(const IO_Params&, std::int32_t, std::int32_t, std::uint8_t,
                                      std::uint8_t, BoxBlurScratch<PF_Pixel16>*);
template PF_Err FastBlur<PF_Pixel>(const IO_Params&, std::int32_t, std::uint8_t);
template PF_Err FastBlur<PF_Pixel16>(const IO_Params&, std::int32_t, std::uint8_t);

}  // namespace vitrell
