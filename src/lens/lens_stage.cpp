// The lens stage: the processed image inside the lens, the unprocessed one outside it.
#include "lens/lens_stage.h"

#include <cstddef>
#include <cstdint>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "host/result.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "simd/channel_lanes.h"

namespace vitrell {
namespace {

// Kept: conversions between depths take 16-bit white as 32767 here, not as 32768.
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

// The mask value to use, strengthened if the plan says so and limited to 1.
double Strengthened(const LensRefcon& lens, double m) {
  if (lens.useBlurMap == 0) {
    return m;
  }
  const double strengthened = m + m * lens.blurMapAmount;
  return strengthened > 1 ? 1 : strengthened;
}

// The refcon of the callbacks: the record and the tables prepared for the pass.
struct LensPass {
  LensRefcon lens;
  LensMaskView mask;    // Indexed by the extent of lens.io->dst.
  MaskOnes ones;        // Positions where the processed pixel is copied.
  const MaskRow* rows;  // Not null: the mask and the layer hold every position of the pass.
  const char* layer;
  std::ptrdiff_t rowBytes;
  std::uint32_t width;
  std::uint32_t height;
};

template <typename Pixel>
PF_Err Lens(const LensPass& pass, int x, int y, const Pixel& in, Pixel* out) {
  const LensRefcon& lens = pass.lens;
  const double m = Strengthened(lens, pass.mask.At(x, y));
  if (m == 1) {  // The formula below gives exactly this too.
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

// Out of line for a tail call, so that the fast path need not save registers.
template <typename Pixel>
[[gnu::noinline]] PF_Err LensPlainly(const LensPass& pass, int x, int y, const Pixel& in,
                                     Pixel* out) {
  return Lens(pass, x, y, in, out);
}

// (1 - m) x outside + m x inside, rounded, with the four channels in vector lanes.
template <typename Pixel>
inline void StoreMix(double m, const Pixel& outside, const Pixel& inside, Pixel* out) {
  const F64Lanes from = Widen(ToLanes(outside));
  const F64Lanes to = Widen(ToLanes(inside));
  StoreLowBits(
      Truncate({(1 - m) * from.low + m * to.low + 0.5, (1 - m) * from.high + m * to.high + 0.5}),
      out);
}

// The same as Lens for a layer of the destination's depth, where pass.rows is not null.
template <typename Pixel>
VITRELL_UNSIGNED_WRAPS PF_Err LensInRows(void* refconPtr, A_long x, A_long y, Pixel* in,
                                         Pixel* out) {
  const auto& pass = *static_cast<const LensPass*>(refconPtr);
  const MaskRow& row = pass.rows[y];
  const auto column = static_cast<std::uint32_t>(x);
  if (column - row.innerBegin < row.innerLength) {
    *out = *in;
    return PF_Err_NONE;
  }
  const Pixel& outside = reinterpret_cast<const Pixel*>(pass.layer + y * pass.rowBytes)[x];
  if (column - row.begin >= row.length) {
    *out = outside;
    return PF_Err_NONE;
  }
  const double m = row.values[column];
  if (!(m < 1)) [[unlikely]] {
    return LensPlainly(pass, x, y, *in, out);
  }
  if (m <= kMaskThreshold) {
    *out = outside;
    return PF_Err_NONE;
  }
  StoreMix(m, outside, *in, out);
  return PF_Err_NONE;
}

// The same for any mask of any rectangle.
template <typename Pixel>
PF_Err LensByLanes(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& pass = *static_cast<const LensPass*>(refconPtr);
  if (pass.ones.Contain(x, y)) {
    *out = *in;
    return PF_Err_NONE;
  }
  double m = 0;
  const bool isKnown = pass.mask.QuickAt(x, y, &m);
  m = Strengthened(pass.lens, m);
  if (!isKnown || !(m < 1) || static_cast<std::uint32_t>(x) >= pass.width ||
      static_cast<std::uint32_t>(y) >= pass.height) [[unlikely]] {
    return LensPlainly(pass, x, y, *in, out);
  }
  const Pixel& outside = reinterpret_cast<const Pixel*>(pass.layer + y * pass.rowBytes)[x];
  if (m <= kMaskThreshold) {
    *out = outside;
    return PF_Err_NONE;
  }
  StoreMix(m, outside, *in, out);
  return PF_Err_NONE;
}

// What LensInRows needs, or null.
const MaskRow* RowsFor(const LensRefcon& lens, const LensMaskView& mask) {
  const PF_LayerDef& dst = *lens.io->dst;
  const bool isCovered =
      lens.inputLayer->width >= dst.width && lens.inputLayer->height >= dst.height;
  return isCovered && lens.useBlurMap == 0 ? mask.PlainRows(dst.width, dst.height) : nullptr;
}

bool FitsLanes(const LensRefcon& lens) {
  return (lens.deep != 0) == IsDeep(*lens.io->dst) && HasPixelsFromOrigin(*lens.inputLayer);
}

}  // namespace

PF_Err Lens8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
  return Lens(*static_cast<const LensPass*>(refcon), x, y, *in, out);
}

PF_Err Lens16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out) {
  return Lens(*static_cast<const LensPass*>(refcon), x, y, *in, out);
}

PF_Err RunLensStage(const StageCall& call) {
  PF_LayerDef* const layer = call.inputLayer;
  const LensPlan& plan = call.plan.lens;
  PF_PixelFormat format = PF_PixelFormat_ARGB32;
  RETURN_IF_ERROR(call.suites.WorldSuite2()->PF_GetPixelFormat(layer, &format));
  const LensRefcon lens = {.inputLayer = layer,
                           .io = &call.io,
                           .useBlurMap = static_cast<std::uint8_t>(plan.isStrengthened ? 1 : 0),
                           .blurMapAmount = plan.strength,
                           .deep = static_cast<std::uint8_t>(format == PF_PixelFormat_ARGB64)};
  if (!plan.isOn) {
    return call.Copy();
  }
  if (!HoldsPixels(*layer, lens.deep != 0)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  const LensMaskView mask(*call.io.dst);
  LensPass pass = {.lens = lens,
                   .mask = mask,
                   .ones = Strengthened(lens, 1) == 1 ? mask.Ones() : MaskOnes(),
                   .rows = RowsFor(lens, mask),
                   .layer = static_cast<const char*>(layer->data),
                   .rowBytes = layer->rowbytes,
                   .width = static_cast<std::uint32_t>(layer->width),
                   .height = static_cast<std::uint32_t>(layer->height)};
  if (!FitsLanes(lens)) {
    return call.Iterate({Lens8, Lens16}, &pass);
  }
  return pass.rows != nullptr
             ? call.Iterate({LensInRows<PF_Pixel>, LensInRows<PF_Pixel16>}, &pass)
             : call.Iterate({LensByLanes<PF_Pixel>, LensByLanes<PF_Pixel16>}, &pass);
}

}  // namespace vitrell
