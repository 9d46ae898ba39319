// The lightness curve.
#include "literal/colour/lightness.h"

#include <cstdint>

#include "literal/base/truncate.h"

namespace vitrell::literal {

double LightnessExponent(float amount, const Maths& maths) {
  return maths.pow(10.0, static_cast<double>(-amount));
}

void LightnessPass(double exponent, const Maths& maths, const World& src, World& dst) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      for (int i = 0; i < 4; ++i) {
        const std::uint16_t in = src.At(y, x).channel[i];
        const double bent = dst.deep ? maths.pow(in * 3.0517578125e-05, exponent) * 32768.0
                                     : maths.pow(in / 255.0, exponent) * 255.0;
        dst.At(y, x).channel[i] = ChannelFromReal(bent, dst.deep);
      }
    }
  }
}

}  // namespace vitrell::literal
