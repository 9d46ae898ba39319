// Optical distortion: bends the picture inside the lens as a wide-angle lens would.
#include "blur/optical/optical_distortion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numbers>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "blur/optical/bilinear_samples.h"
#include "blur/optical/distortion_field.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "pass/lazy_strips.h"

namespace vitrell {
namespace {

// A focal length below this bends everything onto the centre pixel.
constexpr double kFocalLengthThreshold = 0.0001;

constexpr std::int32_t kStripRows = 8;

template <typename Pixel>
struct DistortRefcon {
  DistortionField field;
  PF_LayerDef src;
  LensMaskView mask;
  const BilinearEngine<Pixel>* engine;
  LazyStrips<Pixel, kStripRows> strips;
};

// The bilinear sample of GetPointerFromDataDP with the alpha of another pixel.
template <typename Pixel>
void SampleColours(const PF_LayerDef& src, const SamplePoint& point, const Pixel& in, Pixel* out) {
  static_cast<void>(GetPointerFromDataDP<Pixel>(&src, point.row, point.column, out, 1));
  out->alpha = in.alpha;
}

// Works out the pixels of a row from begin to end, at most as many as DistortedPixels holds.
template <typename Pixel>
void FillPixels(const DistortRefcon<Pixel>& refcon, std::int32_t row, std::int32_t begin,
                std::int32_t end, Pixel* out) {
  const Pixel* const in = StoredPixel<Pixel>(&refcon.src, row, 0);
  DistortedPixels pixels;
  for (std::int32_t x = begin; x < end; ++x) {
    pixels.x[pixels.count] = x;
    pixels.count += refcon.mask.At(x, row) > kMaskThreshold ? 1 : 0;
  }
  pixels.FindSources(refcon.field, row);
  if (pixels.count != end - begin) {  // The others stay as they are.
    std::copy(in + begin, in + end, out + begin);
  }
  refcon.engine->sample(refcon.src, pixels, in, out);
}

// One pixel by itself, where no strip holds it. The mask and the distance gate the effect only; its
// strength does not follow the mask.
template <typename Pixel>
void DistortOnePixel(const DistortRefcon<Pixel>& refcon, A_long x, A_long y, const Pixel& in,
                     Pixel* out) {
  const DistortionField& field = refcon.field;
  if (!(refcon.mask.At(x, y) > kMaskThreshold)) {
    *out = in;
    return;
  }
  const double distance = field.DistanceOf(x, y);
  if (!(distance > 0.0)) {
    *out = in;
  } else if (field.focalLengthPx < kFocalLengthThreshold) {
    *out = GetPointerFromData<Pixel>(&refcon.src, field.centerY, field.centerX, 1);
  } else {
    SampleColours(refcon.src, field.SourceOf(x, y, distance), in, out);
  }
}

// A function of its own that the pass ends in, so that the quick way saves no registers.
template <typename Pixel>
[[gnu::noinline]] PF_Err DistortInNewStrip(DistortRefcon<Pixel>* refcon, A_long x, A_long y,
                                           const Pixel& in, Pixel* out) {
  const std::int32_t width = refcon->src.width;
  const Pixel* const distorted = refcon->strips.PixelOrFill(
      x, y, [&](std::int32_t firstRow, std::int32_t endRow, Pixel* strip) {
        for (std::int32_t row = firstRow; row < endRow; ++row) {
          for (std::int32_t begin = 0; begin < width; begin += DistortedPixels::kCapacity) {
            FillPixels(*refcon, row, begin, std::min(begin + DistortedPixels::kCapacity, width),
                       strip);
          }
          strip += width;
        }
      });
  if (distorted != nullptr) {
    *out = *distorted;
  } else {
    DistortOnePixel(*refcon, x, y, in, out);
  }
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err OpticalDistortion(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  auto* const refcon = static_cast<DistortRefcon<Pixel>*>(refconPtr);
  const Pixel* const distorted = refcon->strips.ReadyPixel(x, y);
  if (distorted == nullptr) [[unlikely]] {
    return DistortInNewStrip(refcon, x, y, *in, out);
  }
  *out = *distorted;
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err RunPass(const StageCall& call, const DistortionField& field) {
  const PF_LayerDef& src = *call.io.src;
  const PF_LayerDef& dst = *call.io.dst;
  DistortRefcon<Pixel> refcon = {field, src, LensMaskView(dst), &BestBilinearEngine<Pixel>(), {}};
  // Worlds with another origin and extreme fields of view have no strips.
  const bool hasStrips = src.data != nullptr && IsDeep(src) == IsDeep(dst) &&
                         src.extent_hint.left == 0 && src.extent_hint.top == 0 &&
                         !(field.focalLengthPx < kFocalLengthThreshold);
  if (hasStrips && !refcon.strips.Reset(src.width, src.height)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  return call.Iterate({OpticalDistortion<PF_Pixel>, OpticalDistortion<PF_Pixel16>}, &refcon);
}

}  // namespace

PF_Err RunOpticalDistortion(const StageCall& call) {
  const PF_ANSICallbacks& maths = call.io.in_data->utils->ansi;
  const PF_LayerDef& dst = *call.io.dst;
  const double diagonalPx = maths.sqrt(WrappingAdd(WrappingMultiply(dst.width, dst.width),
                                                   WrappingMultiply(dst.height, dst.height)));
  const double halfFieldOfView = call.info.opticalAmount * std::numbers::pi / 180 * 0.5;
  const PixelPosition center = call.plan.opticalCenter;
  const DistortionField field = {center.x, center.y, diagonalPx / maths.tan(halfFieldOfView),
                                 maths.sqrt};
  return IsDeep(dst) ? RunPass<PF_Pixel16>(call, field) : RunPass<PF_Pixel>(call, field);
}

}  // namespace vitrell
