// Distances from which the lens shapes are drawn.
#ifndef VITRELL_LENS_LENS_SHAPES_H_
#define VITRELL_LENS_LENS_SHAPES_H_

#include <cstddef>
#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/line_section.h"

namespace vitrell {

// Normalised distance of (u, v) from a rectangle of half-width b and half-height a whose soft band
// is k times the smaller of the two wide: 0 inside, 1 beyond the band, NaN only from a NaN.
double GetDistanceKWithRectMode(double u, double v, double k, double a, double b,
                                const PF_InData* inData);

// Distance from P to the segment AB.
// Kept: a segment with neither ex > 0 nor ey > 0 counts as the point A alone.
double GetDistanceFromPtToSegLine(double px, double py, double ax, double ay, double bx, double by,
                                  const PF_InData* inData);

// What is known of a row of a shape.
struct ShapeSpans {
  ColumnSpan outer;
  ColumnSpan inner;  // Within outer.
};

// Draws one drawn lens shape (type 2 to 5) at the size of the output. Everything that does not
// depend on the pixel is worked out once; const use is safe on any number of threads.
class LensShape {
 public:
  // width and height are the output world's own.
  LensShape(const PF_InData* inData, const LX_Info& info, double width, double height);

  // Raw distance at layer position (x, y): 0 inside, 1 outside, in between in the soft band.
  double RawDistance(std::int32_t x, std::int32_t y) const;

  // What is certain of row y, from column left on: outside of `outer` the raw distance is 1, within
  // `inner` it is 0. Nothing is said of what is nearer to a limit than a margin far beyond any
  // rounding error.
  ShapeSpans SpansOf(std::int32_t y, std::int32_t left, std::uint32_t count) const;

  // Mirrored through its position the shape has the same distances, to the bit.
  bool IsSymmetric() const { return info_.lensType != kLensTriangle; }
  // It is not turned: a symmetric shape is then the same above as below, and left as right.
  bool IsUpright() const { return sinRotation_ == 0; }

 private:
  MaskLine LineOf(std::int32_t y, std::int32_t left, std::uint32_t count) const;
  enum class Side { kUnknown, kRight, kLeft, kBase };
  Side FacingSide(double u, double v) const;
  double Circle(double u, double v) const;
  double Triangle(double u, double v) const;

  const PF_InData* inData_;
  const PF_ANSICallbacks& maths_;
  const LX_Info& info_;
  double sinRotation_;
  double cosRotation_;
  double halfWidth_ = 0;   // Rectangles.
  double halfHeight_ = 0;  // Rectangles.
  double radius_ = 0;      // Circle and triangle.
  double relativeBand_ = 0;
  double rootOf3_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_LENS_LENS_SHAPES_H_
