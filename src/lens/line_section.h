// Finds the columns of a row that lie within a region given in the lens's coordinates.
#ifndef VITRELL_LENS_LINE_SECTION_H_
#define VITRELL_LENS_LINE_SECTION_H_

#include <cstdint>

namespace vitrell {

// Relative margin that the regions keep from a shape's limits; rounding errors are about 1e-16.
inline constexpr double kMargin = 1e-9;

// The half-open range [begin, end) of a row's columns.
struct ColumnSpan {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// A row of the mask in the lens's coordinates. Column i lies at d = first + i, where u = startU +
// stepU x d and v = startV + stepV x d.
struct MaskLine {
  double first;
  std::uint32_t count;
  double stepU, startU;
  double stepV, startV;
};

// The part of a row that is left after clipping it to one region after another. Callers have
// already moved the limits by kMargin. Where that margin does not far exceed the rounding errors of
// the row's coordinates, or something is NaN, the result is unknown.
class LineSection {
 public:
  explicit LineSection(const MaskLine& line);

  // Keeps the points with normalU x u + normalV x v <= limit. An infinite limit keeps everything.
  void ClipToHalfPlane(double normalU, double normalV, double limit);
  // Keeps the points within the given radius of the origin.
  void ClipToDisc(double radius);

  // The columns that are left; if the result is unknown, all of them or none.
  ColumnSpan Columns(bool allIfUnknown) const;

 private:
  // Whether the rounding error of a sum of terms of this size is within the margin of the limit.
  static bool IsExact(double terms, double limit);

  MaskLine line_;
  double farthest_;  // The largest |d| of the row.
  double low_;       // [low_, high_] is the range of d that is left.
  double high_;
  bool known_ = true;
};

}  // namespace vitrell

#endif  // VITRELL_LENS_LINE_SECTION_H_
