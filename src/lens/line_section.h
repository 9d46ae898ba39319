// Which columns of a row lie within a region of the lens's coordinates.
#ifndef VITRELL_LENS_LINE_SECTION_H_
#define VITRELL_LENS_LINE_SECTION_H_

#include <cstdint>

namespace vitrell {

// Relative margin that the regions keep from the limits of a shape. Rounding errors are some 1e-16.
inline constexpr double kMargin = 1e-9;

// Columns begin to end - 1 of a row; none when they are equal.
struct ColumnSpan {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

// A row of the mask in the lens's coordinates: column i lies at d = first + i,
// u = startU + stepU x d and v = startV + stepV x d.
struct MaskLine {
  double first;
  std::uint32_t count;
  double stepU, startU;
  double stepV, startV;
};

// A row, clipped to one region after the other. The limits that are given here have been moved by
// kMargin already; where that is not far beyond the rounding errors of the row's coordinates, or
// something is NaN, nothing is known.
class LineSection {
 public:
  explicit LineSection(const MaskLine& line);

  // Keeps what has normalU x u + normalV x v <= limit. A limit of infinity keeps everything.
  void ClipToHalfPlane(double normalU, double normalV, double limit);
  // Keeps what is no farther than the radius from the origin.
  void ClipToDisc(double radius);

  // The columns that are left: all of them, or none, when nothing is known.
  ColumnSpan Columns(bool allIfUnknown) const;

 private:
  // Whether sums of terms of this size differ from the limit by less than the margin allows.
  static bool IsExact(double terms, double limit);

  MaskLine line_;
  double farthest_;  // Of the row's positions, from 0.
  double low_;       // What is left of the positions.
  double high_;
  bool known_ = true;
};

}  // namespace vitrell

#endif  // VITRELL_LENS_LINE_SECTION_H_
