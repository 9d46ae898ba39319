// The iris of the realistic blur: a regular polygon with round corners, squeezed and turned.
#ifndef VITRELL_BLUR_REALISTIC_IRIS_SHAPE_H_
#define VITRELL_BLUR_REALISTIC_IRIS_SHAPE_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"

namespace vitrell {

// Radii beyond this count as memory that is not to be had: four times what the slider offers.
inline constexpr std::int32_t kMaxIrisRadius = 2000;

// The smallest weight and the smallest difference of weights that matter; also how far outside the
// boundary a pixel may lie and still count as inside, in spite of rounding.
inline constexpr double kIrisEpsilon = 0.0001;

// What all radii of one render have in common. Angles in radians.
struct IrisShape {
  const PF_ANSICallbacks* maths;
  double sideAngle;  // Angle that one side of the polygon spans.
  double halfRound;  // Half of the share of each side that is round.
  double apothem;    // Of the polygon inside the unit circle, where its straight part begins.
  double aspect;     // Squeeze along the rotated axis; above 1 it shrinks the other axis too.
  double cosRotation;
  double sinRotation;
};

IrisShape MakeIrisShape(const LX_Info& info, const PF_ANSICallbacks& maths);

// The kernel radius in pixels that the settings ask for. INT32_MIN when it is not representable.
// Kept: the amount is a single-precision hundredth, so that a few whole amounts (53, 59, 105, ...)
// come out one pixel lower.
std::int32_t MaxIrisRadius(const LX_Info& info);

// Where a pixel lies in the iris, whatever the radius.
struct IrisPoint {
  double distance;  // From the centre, squeezed.
  double cosine;    // Of the angle from the middle of its side; infinite in a round part.
};

// The point x columns right of and y rows below the centre.
IrisPoint PointAt(const IrisShape& shape, double x, double y);

// The weight of a point for a radius of 0 or more: 1 inside, 0 outside, a ramp in between.
float WeightOf(const IrisShape& shape, const IrisPoint& point, std::int32_t radius);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_IRIS_SHAPE_H_
