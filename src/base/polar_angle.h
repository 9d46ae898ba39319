// The polar angle of a point, by the host's arctangent.
#ifndef VITRELL_BASE_POLAR_ANGLE_H_
#define VITRELL_BASE_POLAR_ANGLE_H_

#include "base/numeric.h"
#include "host/host_api.h"

namespace vitrell {

// In [0, 2 pi). The origin, like every point of the lower half of the vertical axis, has the angle
// 3 pi / 2.
inline double PolarAngle(const PF_ANSICallbacks& maths, double u, double v) {
  constexpr double kTwoPi = 6.283185307179586;
  constexpr double kHalfPi = 1.5707963267948966;
  constexpr double kThreeHalvesPi = 4.71238898038469;
  if (u == 0.0) {
    return v > 0.0 ? kHalfPi : kThreeHalvesPi;
  }
  double angle = maths.atan(v / u);
  if (u < 0.0) {
    angle += kPi;
  }
  return angle < 0.0 ? angle + kTwoPi : angle;
}

}  // namespace vitrell

#endif  // VITRELL_BASE_POLAR_ANGLE_H_
