// The distance functions of the drawn lens shapes.
#ifndef VITRELL_LENS_LENS_SHAPES_H_
#define VITRELL_LENS_LENS_SHAPES_H_

#include <cstddef>
#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/line_section.h"

namespace vitrell {

inline double LimitToOne(double distance) { return distance > 1 ? 1 : distance; }

// Normalised distance of (u, v) from a rectangle of half-width b and half-height a: 0 inside, 1
// beyond the soft band, which is k times min(a, b) wide. NaN only if an argument is NaN.
double GetDistanceKWithRectMode(double u, double v, double k, double a, double b,
                                const PF_InData* inData);

// Distance from the point P to the segment AB, where E is B - A.
// Kept: a segment with neither ex > 0 nor ey > 0 counts as the point A alone.
double GetDistanceFromPtToSegLine(double px, double py, double ax, double ay, double bx, double by,
                                  const PF_InData* inData);

// What is certain about one row of a shape.
struct ShapeSpans {
  ColumnSpan outer;
  ColumnSpan inner;  // Within outer.
};

// One of the drawn lens shapes (types 2 to 5) at the size of the output. Everything that does not
// depend on the pixel is computed by the constructor. Const use is safe on any number of threads.
class LensShape {
 public:
  // width and height are those of the output world.
  LensShape(const PF_InData* inData, const LX_Info& info, double width, double height);

  // Raw distance at layer position (x, y): 0 inside, 1 outside, in between across the soft band.
  double RawDistance(std::int32_t x, std::int32_t y) const;

  // The same for `count` neighbouring columns of row y, the first of which is x.
  void RawDistances(std::int32_t x, std::int32_t y, std::uint32_t count, double* distances) const;

  // The columns of row y, counted from column left, whose raw distance is certain: 1 outside
  // `outer`, 0 within `inner`. The columns between may have any distance; the spans keep a margin
  // from the shape's limits that is far larger than any rounding error.
  ShapeSpans SpansOf(std::int32_t y, std::int32_t left, std::uint32_t count) const;

  // Whether the shape's distances are point-symmetric about its position, to the bit.
  bool IsSymmetric() const { return info_.lensType != kLensTriangle; }
  // Whether the shape is not rotated. A symmetric shape then also mirrors about both axes.
  bool IsUpright() const { return sinRotation_ == 0; }

 private:
  MaskLine LineOf(std::int32_t y, std::int32_t left, std::uint32_t count) const;
  enum class Side { kUnknown, kRight, kLeft, kBase };
  // The points A and B of a side.
  struct Segment {
    double ax, ay, bx, by;
  };
  Side FacingSide(double u, double v) const;
  Side FacingSideFromOutside(double u, double v) const;
  Segment SegmentOf(Side side) const;
  double Circle(double u, double v) const;
  double Triangle(double u, double v) const;
  void Circles(const double* u, const double* v, std::uint32_t count, double* distances) const;
  void Triangles(const double* u, const double* v, std::uint32_t count, double* distances) const;
  void DistancesFromSegment(const Segment& segment, const double* u, const double* v,
                            std::uint32_t count, double* distances) const;

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
