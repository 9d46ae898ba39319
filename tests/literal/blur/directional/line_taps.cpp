// The taps of the directional blur, from their definition.
#include "literal/blur/directional/line_taps.h"

#include <cstdlib>

#include "literal/base/truncate.h"

namespace vitrell::literal {
namespace {

constexpr double kHalfPi = 1.5707963267948966;

// The root of a sum of squares; the sum is formed in 32-bit integers.
double LengthOf(std::int32_t x, std::int32_t y, double (*root)(double)) {
  return root(WrapAdd(WrapMultiply(x, x), WrapMultiply(y, y)));
}

}  // namespace

std::vector<LineTap> DirectionalTaps(float amount, double angleRad, const Maths& maths) {
  const double length = TruncateToInt(amount);
  const double angle = angleRad + kHalfPi;
  const std::int32_t dx = TruncateToInt(length * maths.cos(angle));
  const std::int32_t dy = TruncateToInt(length * maths.sin(angle));
  const double total = LengthOf(dx, dy, maths.sqrt);

  const std::int32_t sx = dx > 0 ? 1 : -1;
  const std::int32_t sy = dy > 0 ? 1 : -1;
  const std::int32_t ax = std::abs(WrapMultiply(2, dx));
  const std::int32_t ay = std::abs(WrapMultiply(2, dy));
  std::int32_t err = (ay < ax ? ax : -ay) >> 1;
  std::int32_t x = -dx;
  std::int32_t y = -dy;
  std::vector<LineTap> taps;
  while (true) {
    taps.push_back({x, y, 1 - LengthOf(x, y, maths.sqrt) / total});
    if (x == dx && y == dy) break;
    const std::int32_t e = err;
    if (e > -ax) {
      err -= ay;
      x += sx;
    }
    if (e < ay) {
      err += ax;
      y += sy;
    }
  }
  return taps;
}

}  // namespace vitrell::literal
