// The iris of the realistic blur: a regular polygon with rounded corners, squeezed and rotated.
#ifndef VITRELL_BLUR_REALISTIC_IRIS_SHAPE_H_
#define VITRELL_BLUR_REALISTIC_IRIS_SHAPE_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Four times the slider's maximum. Larger radii are treated as a lack of memory.
inline constexpr std::int32_t kMaxIrisRadius = 2000;

// Smaller weights and smaller differences of weights are dropped. Also how far outside the boundary
// a pixel may lie and still count as inside, to allow for rounding.
inline constexpr double kIrisEpsilon = 0.0001;

// What kernels of all radii in one render have in common. Angles in radians.
struct IrisShape {
  const PF_ANSICallbacks* maths;
  double sideAngle;  // Central angle of one side of the polygon.
  double halfRound;  // Half of the rounded fraction of each side.
  double apothem;    // Distance of a side's straight part for circumradius 1.
  double aspect;     // Squeeze along the rotated axis; above 1 along the other.
  double cosRotation;
  double sinRotation;
};

IrisShape MakeIrisShape(const LX_Info& info, const PF_ANSICallbacks& maths);

// The kernel radius in pixels for these settings; INT32_MIN if it exceeds 32 bits.
// Kept: the amount was divided by 100 in single precision, so that a few whole amounts (53, 59,
// 105, ...) come out one pixel lower.
std::int32_t MaxIrisRadius(const LX_Info& info);

// A position in the iris, independent of the radius.
struct IrisPoint {
  double distance;  // From the centre, after squeezing.
  double cosine;    // Of the angle from its side's middle; infinite in a rounded part.
};

// The point x columns right of and y rows below the centre.
IrisPoint PointAt(const IrisShape& shape, double x, double y);

// The weight of a point in a kernel of radius >= 0: 1 inside, 0 outside, a ramp between.
float WeightOf(const IrisShape& shape, const IrisPoint& point, std::int32_t radius);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_IRIS_SHAPE_H_
