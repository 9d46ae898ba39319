// The iris of the realistic blur: a regular polygon with rounded corners, squeezed and rotated.
#include "blur/realistic/iris_shape.h"

#include <limits>

#include "base/numeric.h"
#include "base/polar_angle.h"

namespace vitrell {
namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kHalfPi = 1.5707963267948966;

constexpr double kRound = std::numeric_limits<double>::infinity();

// The cosine that IrisPoint holds for (u, v).
double CosineAt(const IrisShape& shape, double u, double v) {
  const double sides = (PolarAngle(*shape.maths, u, v) + kHalfPi) / shape.sideAngle;
  const double fraction = sides - TruncateToInt32(sides);
  if (fraction < shape.halfRound || fraction > 1.0 - shape.halfRound) {
    return kRound;
  }
  return shape.maths->cos((0.5 - fraction) * shape.sideAngle);
}

}  // namespace

IrisShape MakeIrisShape(const LX_Info& info, const PF_ANSICallbacks& maths) {
  const double roundness = info.irisRoundness;
  IrisShape shape = {};
  shape.maths = &maths;
  shape.sideAngle = kTwoPi / (static_cast<double>(info.irisSides) + 2.0);
  shape.halfRound = roundness / 2.0;
  shape.apothem = maths.cos(shape.sideAngle * (1.0 - roundness) / 2.0);
  shape.aspect = info.irisAspectRatio;
  shape.cosRotation = maths.cos(-info.irisRotation);
  shape.sinRotation = maths.sin(-info.irisRotation);
  return shape;
}

std::int32_t MaxIrisRadius(const LX_Info& info) {
  return TruncateToInt32(info.realisticAmount * 100.0f);
}

IrisPoint PointAt(const IrisShape& shape, double x, double y) {
  if (x == 0.0 && y == 0.0) {
    return {-1.0, kRound};  // The centre is inside even if its squeezed position is NaN.
  }
  const double u = (shape.sinRotation * y + shape.cosRotation * x) / shape.aspect;
  const double v = shape.sinRotation * x - shape.cosRotation * y;
  double distance = shape.maths->sqrt(u * u + v * v);
  if (shape.aspect > 1.0) {
    distance *= shape.aspect;
  }
  return {distance, CosineAt(shape, u, v)};
}

float WeightOf(const IrisShape& shape, const IrisPoint& point, std::int32_t radius) {
  double boundary = radius;
  if (point.cosine != kRound) {
    const auto apothem = static_cast<float>(shape.apothem * radius);
    boundary = static_cast<float>(apothem / point.cosine);
  }
  if (point.distance < boundary + kIrisEpsilon) {
    return 1.0f;
  }
  if (point.distance >= boundary + kIrisEpsilon + 1.0) {
    return 0.0f;
  }
  // Kept: in the one-pixel band outside the boundary the weight rises outwards from 0 to 1 and then
  // drops to 0.
  return static_cast<float>(point.distance - boundary - kIrisEpsilon);
}

}  // namespace vitrell
