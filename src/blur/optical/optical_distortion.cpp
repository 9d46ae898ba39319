// Optical distortion: bends the image inside the lens as a wide-angle lens would.
#include "blur/optical/optical_distortion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "blur/optical/bilinear_samples.h"
#include "blur/optical/distortion_field.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "pass/strip_pass.h"

namespace vitrell {
namespace {

// With a focal length below this, every pixel takes the colour of the centre.
constexpr double kFocalLengthThreshold = 0.0001;

// Stores the bilinear sample of GetPointerFromDataDP with the alpha of another pixel.
template <typename Pixel>
void SampleColors(const PF_LayerDef& src, const SamplePoint& point, const Pixel& in, Pixel* out) {
  static_cast<void>(GetPointerFromDataDP<Pixel>(&src, point.row, point.column, out, 1));
  out->alpha = in.alpha;
}

// The mask only switches the effect on per pixel; its strength does not follow the mask.
template <typename Pixel>
struct DistortionStage : StripsOfRows<Pixel, 8> {
  DistortRefcon refcon;
  DistortionField field;
  LensMaskView mask;
  const BilinearEngine<Pixel>* engine;

  bool FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const {
    const std::int32_t width = refcon.io->src->width;
    for (std::int32_t row = firstRow; row < endRow; ++row) {
      for (std::int32_t begin = 0; begin < width; begin += DistortedPixels::kCapacity) {
        FillPixels(row, begin, std::min(begin + DistortedPixels::kCapacity, width), out);
      }
      out += width;
    }
    return true;
  }

  void StoreOnePixel(std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) const {
    if (!(mask.At(x, y) > kMaskThreshold)) {
      *out = in;
      return;
    }
    const PF_LayerDef& src = *refcon.io->src;
    const double distance = field.DistanceOf(x, y);
    if (!(distance > 0.0)) {
      *out = in;
    } else if (refcon.focalLengthPx < kFocalLengthThreshold) {
      *out = GetPointerFromData<Pixel>(&src, refcon.centerY, refcon.centerX, 1);
    } else {
      SampleColors(src, field.SourceOf(x, y, distance), in, out);
    }
  }

 private:
  // Computes columns [begin, end) of a row, at most DistortedPixels::kCapacity of them.
  void FillPixels(std::int32_t row, std::int32_t begin, std::int32_t end, Pixel* out) const {
    const Pixel* const in = StoredPixel<Pixel>(refcon.io->src, row, 0);
    DistortedPixels pixels;
    for (std::int32_t x = begin; x < end; ++x) {
      pixels.x[pixels.count] = x;
      pixels.count += mask.At(x, row) > kMaskThreshold ? 1 : 0;
    }
    pixels.FindSources(field, row);
    if (pixels.count != end - begin) {  // The other pixels are copied.
      std::copy(in + begin, in + end, out + begin);
    }
    engine->sample(*refcon.io->src, pixels, in, out);
  }
};

template <typename Pixel>
PF_Err OpticalDistortion(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return static_cast<StripPass<DistortionStage<Pixel>>*>(refcon)->Serve(x, y, *in, out);
}

template <typename Pixel>
PF_Err RunPass(const StageCall& call, const DistortRefcon& refcon) {
  const PF_LayerDef& src = *call.io.src;
  const PF_LayerDef& dst = *call.io.dst;
  StripPass<DistortionStage<Pixel>> pass = {{{},
                                             refcon,
                                             DistortionField(refcon),
                                             LensMaskView(dst),
                                             &BestEngine<BilinearEngine<Pixel>>()},
                                            {}};
  // There are no strips for worlds with another origin and for extreme fields of view.
  const bool hasStrips = HasPixelsFromOrigin(src) && IsDeep(src) == IsDeep(dst) &&
                         !(refcon.focalLengthPx < kFocalLengthThreshold);
  if (hasStrips && !pass.strips.Reset(src.width, src.height)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  return call.Iterate(CallbackOfDepth(OpticalDistortion<Pixel>), &pass);
}

}  // namespace

PF_Err RunOpticalDistortion(const StageCall& call) {
  const PF_ANSICallbacks& maths = call.io.in_data->utils->ansi;
  const PF_LayerDef& dst = *call.io.dst;
  const double diagonalPx = maths.sqrt(WrappingAdd(WrappingMultiply(dst.width, dst.width),
                                                   WrappingMultiply(dst.height, dst.height)));
  const double halfFieldOfView = call.info.opticalAmount * kPi / 180 * 0.5;
  const PixelPosition center = call.plan.opticalCenter;
  const DistortRefcon refcon = {center.x, center.y, diagonalPx / maths.tan(halfFieldOfView),
                                &call.io};
  return IsDeep(dst) ? RunPass<PF_Pixel16>(call, refcon) : RunPass<PF_Pixel>(call, refcon);
}

}  // namespace vitrell
