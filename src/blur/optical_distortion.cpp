// Optical distortion: bends the picture inside the lens as a wide-angle lens would.
#include "blur/optical_distortion.h"

#include <cstdint>
#include <numbers>

#include "host/pixel_pass.h"
#include "host/world.h"
#include "render/depth_traits.h"
#include "render/lens_mask.h"
#include "render/numeric.h"
#include "render/pixel_access.h"

namespace vitrell {
namespace {

// A focal length below this bends everything onto the centre pixel.
constexpr double kFocalLengthThreshold = 0.0001;

struct DistortRefcon {
  std::int32_t centerX;
  std::int32_t centerY;
  double focalLengthPx;
  const IO_Params* io;
  A_FpLong (*squareRoot)(A_FpLong);
  LensMaskView mask;
};

// The mask and the distance gate the effect only; its strength does not follow the mask.
template <typename Pixel>
PF_Err OpticalDistortion(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& refcon = *static_cast<const DistortRefcon*>(refconPtr);
  if (!(refcon.mask.At(x, y) > kMaskThreshold)) {
    *out = *in;
    return PF_Err_NONE;
  }
  const double dx = WrappingSubtract(x, refcon.centerX);
  const double dy = WrappingSubtract(y, refcon.centerY);
  const double distance = refcon.squareRoot(dx * dx + dy * dy);
  if (!(distance > 0.0)) {
    *out = *in;
    return PF_Err_NONE;
  }
  const double f = refcon.focalLengthPx;
  if (f < kFocalLengthThreshold) {
    *out = GetPointerFromData<Pixel>(refcon.io->src, refcon.centerY, refcon.centerX, 1);
    return PF_Err_NONE;
  }
  // f x sin(atan(distance / f)): always nearer to the centre than the pixel itself.
  const double ratio = distance / f;
  const double square = ratio * ratio;
  const double sourceDistance = refcon.squareRoot(square / (square + 1.0)) * f;
  const double row = refcon.centerY + sourceDistance * dy / distance;
  const double column = refcon.centerX + sourceDistance * dx / distance;
  static_cast<void>(GetPointerFromDataDP<Pixel>(refcon.io->src, row, column, out, 1));
  out->alpha = in->alpha;
  return PF_Err_NONE;
}

}  // namespace

PF_Err RunOpticalDistortion(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info) {
  const PF_ANSICallbacks& maths = io->in_data->utils->ansi;
  const PF_LayerDef& dst = *io->dst;
  const double diagonalPx = maths.sqrt(WrappingAdd(WrappingMultiply(dst.width, dst.width),
                                                   WrappingMultiply(dst.height, dst.height)));
  const double halfFieldOfView = info.opticalAmount * std::numbers::pi / 180 * 0.5;
  const bool useLensCenter = info.opticalCenterOfLens != 0;
  DistortRefcon refcon = {useLensCenter ? info.positionX : info.opticalCenterX,
                          useLensCenter ? info.positionY : info.opticalCenterY,
                          diagonalPx / maths.tan(halfFieldOfView),
                          io,
                          maths.sqrt,
                          LensMaskView(dst)};
  return RunPixelPass(suites, io->in_data, io->src, io->dst, ExtentLines(dst),
                      {OpticalDistortion<PF_Pixel>, OpticalDistortion<PF_Pixel16>}, &refcon);
}

}  // namespace vitrell
