// Chromatic aberration: each colour channel is fetched from its own distance to the lens centre.
#include "literal/colour/chromatic_aberration.h"

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

std::int32_t ScaledPosition(std::int32_t position, std::int32_t centre, float scale) {
  const float offset = static_cast<float>(WrapSubtract(position, centre)) * scale;
  return WrapAdd(TruncateToInt(static_cast<double>(offset)), centre);
}

}  // namespace

void ChromaticPass(const float (&scales)[3], std::int32_t cx, std::int32_t cy, const Mask& mask,
                   const World& src, World& dst) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const Pixel& in = src.At(y, x);
      Pixel& out = dst.At(y, x);
      out.channel[0] = in.channel[0];
      const bool outside = GetLensMask(mask, x, y, dst) <= 0.0001;
      for (int i = 0; i < 3; ++i) {
        if (outside) {
          out.channel[i + 1] = in.channel[i + 1];
        } else if (static_cast<double>(scales[i]) > 0.0001) {
          const Pixel fetched = GetPointerFromData(src, ScaledPosition(y, cy, scales[i]),
                                                   ScaledPosition(x, cx, scales[i]), 1);
          out.channel[i + 1] = fetched.channel[i + 1];
        }
      }
    }
  }
}

}  // namespace vitrell::literal
