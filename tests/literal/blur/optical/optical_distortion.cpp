// The optical distortion, evaluated step by step from its definition.
#include "literal/blur/optical/optical_distortion.h"

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

constexpr double kMaskThreshold = 0.0001;
constexpr double kShortestFocalLength = 0.0001;

}  // namespace

void OpticalPass(const World& src, World& dst, const Mask& mask, const Maths& maths,
                 std::int32_t cx, std::int32_t cy, double focalLength) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const Pixel& in = src.At(y, x);
      Pixel& out = dst.At(y, x);
      const double m = GetLensMask(mask, x, y, dst);
      const double dx = WrapSubtract(x, cx);
      const double dy = WrapSubtract(y, cy);
      const double rho = maths.sqrt(dx * dx + dy * dy);
      if (!(m > kMaskThreshold) || !(rho > 0.0)) {
        out = in;
        continue;
      }
      if (focalLength < kShortestFocalLength) {
        out = GetPointerFromData(src, cy, cx, 1);
        continue;
      }
      const double tangent = rho / focalLength;
      const double q = tangent * tangent;
      const double s = maths.sqrt(q / (q + 1.0));
      const double bentRho = s * focalLength;
      const double row = cy + bentRho * dy / rho;
      const double column = cx + bentRho * dx / rho;
      GetPointerFromDataDP(src, row, column, out, 1);
      out.channel[0] = in.channel[0];
    }
  }
}

}  // namespace vitrell::literal
