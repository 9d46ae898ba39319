// The colour wash.
#include "literal/colour/color_effect.h"

#include "literal/base/truncate.h"

namespace vitrell::literal {

void ColorPass(float opacity, const std::uint8_t (&color)[4], const World& src, World& dst) {
  // Kept: in 16 bits the target is widened by 256, so that 255 aims at 65280, above white.
  const float widening = dst.deep ? 256.0F : 1.0F;
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      for (int i = 0; i < 4; ++i) {
        const auto in = static_cast<float>(src.At(y, x).channel[i]);
        const float target = static_cast<float>(color[i]) * widening;
        const float step = (target - in) * opacity;
        dst.At(y, x).channel[i] = ChannelFromReal(static_cast<double>(step + in), dst.deep);
      }
    }
  }
}

}  // namespace vitrell::literal
