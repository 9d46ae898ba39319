// Computes the source position of each pixel of the optical distortion.
#include "blur/optical/distortion_field.h"

#include "base/numeric.h"

namespace vitrell {
namespace {

// The square of the source's distance from the centre, in focal lengths.
double SquaredSine(double distance, double focalLengthPx) {
  const double ratio = distance / focalLengthPx;
  const double square = ratio * ratio;
  return square / (square + 1.0);
}

// One coordinate of the source: the offset, scaled from distance to sourceDistance.
double Shorten(std::int32_t center, double offset, double distance, double sourceDistance) {
  return center + sourceDistance * offset / distance;
}

}  // namespace

double DistortionField::DistanceOf(std::int32_t x, std::int32_t y) const {
  const double dx = WrappingSubtract(x, centerX);
  const double dy = WrappingSubtract(y, centerY);
  return squareRoot(dx * dx + dy * dy);
}

SamplePoint DistortionField::SourceOf(std::int32_t x, std::int32_t y, double distance) const {
  const double dx = WrappingSubtract(x, centerX);
  const double dy = WrappingSubtract(y, centerY);
  const double sourceDistance = squareRoot(SquaredSine(distance, focalLengthPx)) * focalLengthPx;
  return {Shorten(centerY, dy, distance, sourceDistance),
          Shorten(centerX, dx, distance, sourceDistance)};
}

void DistortedPixels::FindSources(const DistortionField& field, std::int32_t y) {
  double offsets[kCapacity];
  double distances[kCapacity];
  double sines[kCapacity];
  const double dy = WrappingSubtract(y, field.centerY);
  const int all = count;
  count = 0;
  for (int i = 0; i < all; ++i) {
    const double dx = WrappingSubtract(x[i], field.centerX);
    const double distance = field.squareRoot(dx * dx + dy * dy);
    if (distance > 0.0) {
      x[count] = x[i];
      offsets[count] = dx;
      distances[count++] = distance;
    }
  }
  for (int i = 0; i < count; ++i) {
    sines[i] = SquaredSine(distances[i], field.focalLengthPx);
  }
  for (int i = 0; i < count; ++i) {
    sines[i] = field.squareRoot(sines[i]);
  }
  for (int i = 0; i < count; ++i) {
    const double sourceDistance = sines[i] * field.focalLengthPx;
    sources[i] = {Shorten(field.centerY, dy, distances[i], sourceDistance),
                  Shorten(field.centerX, offsets[i], distances[i], sourceDistance)};
  }
}

}  // namespace vitrell
