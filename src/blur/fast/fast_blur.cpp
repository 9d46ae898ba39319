// Fast blur: a box blur of the colour channels, repeated three times, uniform or by the lens mask.
#include "blur/fast/fast_blur.h"

#include <type_traits>

#include "base/numeric.h"
#include "host/pixel_pass.h"
#include "host/suite_handler.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "pass/strip_pass.h"

namespace vitrell {
namespace {

// The plain box blur: rows of the source's pixels, along either axis.
template <BoxAxis kAxis, typename Pixel>
struct PlainBoxStage : StripsOfRows<Pixel, kAxis == BoxAxis::kRows ? 1 : kBoxStripRows> {
  const BoxBlurRefcon& box;
  const BoxRows<Pixel>& rows;
  std::int32_t left;
  std::int32_t top;
  std::ptrdiff_t pitch;  // Of the strips' rows, in pixels.

  // Strips are indexed by memory position. In a world whose extent does not begin at (0, 0) that
  // differs from the layer position, so that a stored pixel's alpha would be another pixel's.
  static void Publish(const Pixel& stored, const Pixel& in, Pixel* out) {
    PublishColors(stored, in, out);
  }
  std::int32_t ColumnOf(std::int32_t x) const { return WrappingSubtract(x, left); }
  std::int32_t RowOf(std::int32_t y) const { return WrappingSubtract(y, top); }

  bool FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const {
    rows.FillRows(firstRow, endRow, out, pitch);
    return true;
  }

  void StoreOnePixel(std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) const {
    StorePlainBox<kAxis>(box, x, y, in, out);
  }
};

// One pass along one axis; the refcon of its callback.
template <BoxAxis kAxis, typename Pixel>
struct BoxPass {
  BoxBlurRefcon box;
  LensMaskView mask;  // The mask indexed by the destination's extent.
  MaskOnes ones;      // Positions where the mask is certainly 1.
  StripPass<PlainBoxStage<kAxis, Pixel>> plain;
  StripPass<WeightedStrips<kAxis, Pixel>> weighted;

  BoxPass(const BoxBlurRefcon& settings, const BoxRows<Pixel>& rows)
      : box(settings),
        mask(*settings.io->dst),
        ones(mask.Ones()),
        plain{{{}, box, rows, 0, 0, 0}, {}},
        weighted{{box, mask}, {}} {}
  BoxPass(const BoxPass&) = delete;
  BoxPass& operator=(const BoxPass&) = delete;

  [[nodiscard]] bool Prepare(BoxBlurScratch<Pixel>* scratch) {
    const PF_LayerDef& source = scratch->rows.source();
    plain.stage.left = source.extent_hint.left;
    plain.stage.top = source.extent_hint.top;
    const StripRows<Pixel> spare = SpareRows(source);
    plain.stage.pitch = spare.first != nullptr ? spare.pitch : source.width;
    StripMemory<Pixel>* const memory = &scratch->blurredRows;
    if (spare.first != nullptr ? !plain.strips.Reset(source.width, source.height, spare, memory)
                               : !plain.strips.Reset(source.width, source.height, memory)) {
      return false;
    }
    return box.lensMap == 0 ||
           (weighted.stage.Prepare(&scratch->weighted) &&
            weighted.strips.Reset(weighted.stage.width(), weighted.stage.height(),
                                  &scratch->weighted.strips));
  }

  // The rows of the copy of the source, whose pixels nobody reads unless the lens map is on: a
  // frame of memory less. None where it is on, and where the copy cannot hold the strips.
  StripRows<Pixel> SpareRows(const PF_LayerDef& source) const {
    const PF_LayerDef& copy = box.unblurred;
    const bool fits = copy.data != nullptr && copy.width >= source.width &&
                      copy.height >= source.height &&
                      IsDeep(copy) == std::is_same_v<Pixel, PF_Pixel16> &&
                      copy.rowbytes % A_long{sizeof(Pixel)} == 0;
    return box.lensMap == 0 && fits ? StripRows<Pixel>{static_cast<Pixel*>(copy.data),
                                                       copy.rowbytes / A_long{sizeof(Pixel)}}
                                    : StripRows<Pixel>{};
  }
};

template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] PF_Err MappedBox(BoxPass<kAxis, Pixel>* pass, std::int32_t x, std::int32_t y,
                                   const Pixel& in, Pixel* out) {
  const double m = pass->mask.At(x, y);
  if (m == 1.0) {
    return pass->plain.Serve(x, y, in, out);
  }
  if (!(m > 0.0)) {
    *out = in;
    return PF_Err_NONE;
  }
  if (m < 1.0) {
    return pass->weighted.Serve(x, y, in, out);
  }
  pass->weighted.stage.StoreOnePixel(x, y, in, out);
  return PF_Err_NONE;
}

template <BoxAxis kAxis, typename Pixel>
[[gnu::noinline]] PF_Err MappedPass(BoxPass<kAxis, Pixel>* pass, std::int32_t x, std::int32_t y,
                                    const Pixel& in, Pixel* out) {
  return pass->ones.Contain(x, y) ? pass->plain.Serve(x, y, in, out)
                                  : MappedBox(pass, x, y, in, out);
}

template <BoxAxis kAxis, typename Pixel>
PF_Err BoxPixel(void* refcon, std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) {
  auto* const pass = static_cast<BoxPass<kAxis, Pixel>*>(refcon);
  return pass->box.lensMap == 0 ? pass->plain.Serve(x, y, in, out)
                                : MappedPass(pass, x, y, in, out);
}

// Prepares the tables of a pass and iterates it.
template <BoxAxis kAxis, typename Pixel>
PF_Err RunBoxPass(AEGP_SuiteHandler& suites, const IO_Params& io, std::int32_t radiusPx,
                  A_long lines, BoxBlurRefcon* box, BoxBlurScratch<Pixel>* scratch) {
  box->io = &io;
  box->radiusPx = radiusPx;
  BoxPass<kAxis, Pixel> pass(*box, scratch->rows);
  if (!scratch->rows.Prepare(kAxis, *io.src, radiusPx) || !pass.Prepare(scratch)) {
    scratch->outOfMemory = true;
    return PF_Err_OUT_OF_MEMORY;
  }
  const PixelCallbacks callback =
      CallbackOfDepth(kAxis == BoxAxis::kRows ? FastBlurH<Pixel> : FastBlurV<Pixel>);
  return RunPixelPass(suites, io.in_data, io.src, io.dst, lines, callback, &pass);
}

// The same worlds with source and destination exchanged.
IO_Params Swapped(const IO_Params& io) { return {io.in_data, io.out_data, io.dst, io.src}; }

}  // namespace

template <typename Pixel>
PF_Err FastBlurH(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return BoxPixel<BoxAxis::kRows>(refcon, x, y, *in, out);
}

template <typename Pixel>
PF_Err FastBlurV(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return BoxPixel<BoxAxis::kColumns>(refcon, x, y, *in, out);
}

template <typename Pixel>
PF_Err FastBlurA(const IO_Params& io, std::int32_t horizontalRadiusPx,
                 std::int32_t verticalRadiusPx, std::uint8_t lensMap,
                 BoxBlurScratch<Pixel>* scratch) {
  AEGP_SuiteHandler suites(io.in_data->pica_basicP);
  const A_long lines = ExtentLines(*io.dst);
  OwnedWorld unblurred(io.in_data);
  // Only the lens map reads this world pixel by pixel; otherwise its depth does not matter.
  if (const PF_Err err = lensMap != 0
                             ? unblurred.CreateLike(*io.src)
                             : unblurred.Create(io.src->width, io.src->height, io.src->world_flags);
      err != 0) {
    return err;
  }
  // Kept: the blur goes on if this copy or the horizontal pass fails.
  static_cast<void>(CopyWorld(io.in_data, io.src, unblurred.get()));
  BoxBlurRefcon box = {
      .io = nullptr, .radiusPx = 0, .lensMap = lensMap, .unblurred = *unblurred.get()};
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

template <typename Pixel>
PF_Err FastBlur(const IO_Params& io, std::int32_t radiusPx, std::uint8_t lensMap) {
  BoxBlurScratch<Pixel> scratch;
  const auto round = [&](const IO_Params& worlds) {
    return FastBlurA<Pixel>(worlds, radiusPx, radiusPx, lensMap, &scratch);
  };
  // Kept: failures of the first two rounds are ignored, except the effect's own lack of memory.
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
                                    BoxBlurScratch<PF_Pixel>*);
template PF_Err FastBlurA<PF_Pixel16>(const IO_Params&, std::int32_t, std::int32_t, std::uint8_t,
                                      BoxBlurScratch<PF_Pixel16>*);
template PF_Err FastBlur<PF_Pixel>(const IO_Params&, std::int32_t, std::uint8_t);
template PF_Err FastBlur<PF_Pixel16>(const IO_Params&, std::int32_t, std::uint8_t);

}  // namespace vitrell
