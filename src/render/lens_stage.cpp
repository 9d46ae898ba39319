// The lens stage: the processed picture inside the lens, the untouched picture outside it.
#include "render/lens_stage.h"

#include "host/pixel_pass.h"
#include "host/result.h"
#include "host/world.h"
#include "render/depth_traits.h"
#include "render/lens_mask.h"
#include "render/numeric.h"
#include "render/pixel_access.h"

namespace vitrell {
namespace {

// Kept: between depths 16-bit full scale counts as 32767 here, not as 32768.
constexpr float kDeepFullScale = 32767.0F;
constexpr float kShallowFullScale = 255.0F;

template <typename Pixel>
Pixel ReadUnprocessed(const LensRefcon& lens, int x, int y);

template <>
PF_Pixel ReadUnprocessed<PF_Pixel>(const LensRefcon& lens, int x, int y) {
  if (lens.deep == 0) {
    return GetPointerFromData<PF_Pixel>(lens.inputLayer, y, x, 1);
  }
  const auto deep = GetPointerFromData<PF_Pixel16>(lens.inputLayer, y, x, 1);
  const auto convert = [](std::uint16_t channel) {
    return TruncateToChannel<std::uint8_t>(static_cast<float>(channel) / kDeepFullScale *
                                           kShallowFullScale);
  };
  return {convert(deep.alpha), convert(deep.red), convert(deep.green), convert(deep.blue)};
}

template <>
PF_Pixel16 ReadUnprocessed<PF_Pixel16>(const LensRefcon& lens, int x, int y) {
  if (lens.deep != 0) {
    return GetPointerFromData<PF_Pixel16>(lens.inputLayer, y, x, 1);
  }
  const auto shallow = GetPointerFromData<PF_Pixel>(lens.inputLayer, y, x, 1);
  const auto convert = [](std::uint8_t channel) {
    return TruncateToChannel<std::uint16_t>(static_cast<float>(channel) / kShallowFullScale *
                                            kDeepFullScale);
  };
  return {convert(shallow.alpha), convert(shallow.red), convert(shallow.green),
          convert(shallow.blue)};
}

template <typename Pixel>
PF_Err Lens(const LensRefcon& lens, int x, int y, const Pixel& in, Pixel* out) {
  double m = lens.mask.At(x, y);
  if (lens.useBlurMap != 0) {
    m = m + m * lens.blurMapAmount;
    if (m > 1) {
      m = 1;
    }
  }
  if (m == 1) {  // The mix below would give exactly this.
    *out = in;
    return PF_Err_NONE;
  }
  const Pixel unprocessed = ReadUnprocessed<Pixel>(lens, x, y);
  if (m <= kMaskThreshold) {
    *out = unprocessed;
    return PF_Err_NONE;
  }
  const auto mix = [m](ChannelOf<Pixel> outside, ChannelOf<Pixel> inside) {
    return TruncateToChannel<ChannelOf<Pixel>>((1 - m) * outside + m * inside + 0.5);
  };
  *out = {mix(unprocessed.alpha, in.alpha), mix(unprocessed.red, in.red),
          mix(unprocessed.green, in.green), mix(unprocessed.blue, in.blue)};
  return PF_Err_NONE;
}

// The narrow-feather cases, in which the lens stage stands in for a lens-mapped blur pass.
void SetBlurMap(const LX_Info& info, LensRefcon* lens) {
  const float fastFraction = info.fastBlurAmount / 100.0F;
  if (info.fastBlurVisible == 1 && info.fastBlurUseLensAsBlurMap == 1 &&
      2.0F * info.feather <= fastFraction) {
    lens->useBlurMap = 1;
    lens->blurMapAmount = fastFraction;
  }
  // Kept: the realistic amount is a fraction already and is divided by 100 a second time.
  const float realisticFraction = info.realisticAmount / 100.0F;
  if (info.realisticVisible == 1 && info.realisticUseLensAsBlurMap == 1 &&
      2.0F * info.feather <= realisticFraction) {
    lens->useBlurMap = 1;
    lens->blurMapAmount = realisticFraction;
  }
}

}  // namespace

PF_Err Lens8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
  return Lens(*static_cast<const LensRefcon*>(refcon), x, y, *in, out);
}

PF_Err Lens16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out) {
  return Lens(*static_cast<const LensRefcon*>(refcon), x, y, *in, out);
}

PF_Err RunLensStage(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info,
                    PF_LayerDef* inputLayer) {
  LensRefcon lens = {.inputLayer = inputLayer,
                     .io = io,
                     .useBlurMap = 0,
                     .blurMapAmount = 0,
                     .deep = 0,
                     .mask = LensMaskView(*io->dst)};
  SetBlurMap(info, &lens);
  PF_PixelFormat format = PF_PixelFormat_ARGB32;
  RETURN_IF_ERROR(suites.WorldSuite2()->PF_GetPixelFormat(inputLayer, &format));
  lens.deep = format == PF_PixelFormat_ARGB64 ? 1 : 0;
  if (info.lensType == kLensNone || info.scaleWidth <= 0 || info.scaleHeight <= 0) {
    return CopyWorld(io->in_data, io->src, io->dst);
  }
  if (!HoldsPixels(*inputLayer, lens.deep != 0)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  return RunPixelPass(suites, io->in_data, io->src, io->dst, ExtentLines(*io->dst), {Lens8, Lens16},
                      &lens);
}

}  // namespace vitrell
