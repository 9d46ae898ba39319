// Finds the columns of a row that lie within a region given in the lens's coordinates.
#include "lens/line_section.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/numeric.h"

namespace vitrell {

LineSection::LineSection(const MaskLine& line)
    : line_(line), low_(line.first), high_(line.first + line.count - 1) {
  farthest_ = std::max(std::fabs(low_), std::fabs(high_));
  known_ = line.count <= static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max());
}

bool LineSection::IsExact(double terms, double limit) {
  // About ten operations lead to a comparison, each with a relative error near 1e-16.
  constexpr double kRounding = 1e-14;
  return limit > 0 && terms * kRounding <= kMargin * limit;
}

void LineSection::ClipToHalfPlane(double normalU, double normalV, double limit) {
  if (limit == std::numeric_limits<double>::infinity()) {
    return;
  }
  const double step = normalU * line_.stepU + normalV * line_.stepV;
  const double start = normalU * line_.startU + normalV * line_.startV;
  const double terms =
      std::fabs(normalU) * (std::fabs(line_.stepU) * farthest_ + std::fabs(line_.startU)) +
      std::fabs(normalV) * (std::fabs(line_.stepV) * farthest_ + std::fabs(line_.startV));
  if (!IsExact(terms, limit)) {
    known_ = false;
  } else if (step > 0) {
    high_ = std::min(high_, (limit - start) / step);
  } else if (step < 0) {
    low_ = std::max(low_, (limit - start) / step);
  } else if (start > limit) {
    high_ = -std::numeric_limits<double>::infinity();
  }
}

void LineSection::ClipToDisc(double radius) {
  if (radius == std::numeric_limits<double>::infinity()) {
    return;
  }
  // The quadratic inequality a d^2 + 2 b d + c <= 0.
  const double a = line_.stepU * line_.stepU + line_.stepV * line_.stepV;
  const double b = line_.stepU * line_.startU + line_.stepV * line_.startV;
  const double c = line_.startU * line_.startU + line_.startV * line_.startV - radius * radius;
  const double farU = std::fabs(line_.stepU) * farthest_ + std::fabs(line_.startU);
  const double farV = std::fabs(line_.stepV) * farthest_ + std::fabs(line_.startV);
  if (!IsExact(farU * farU + farV * farV + radius * radius, radius * radius) || !(a > 0)) {
    known_ = false;
    return;
  }
  const double discriminant = b * b - a * c;
  if (discriminant < 0) {
    high_ = -std::numeric_limits<double>::infinity();
    return;
  }
  const double root = std::sqrt(discriminant);
  low_ = std::max(low_, (-b - root) / a);
  high_ = std::min(high_, (-b + root) / a);
}

ColumnSpan LineSection::Columns(bool allIfUnknown) const {
  if (!known_) {
    return {0, allIfUnknown ? line_.count : 0};
  }
  const double begin = std::ceil(low_) - line_.first;
  const double end = std::floor(high_) - line_.first + 1;
  if (!(begin < end)) {
    return {};
  }
  return {static_cast<std::uint32_t>(TruncateToInt32(begin)),
          static_cast<std::uint32_t>(TruncateToInt32(end))};
}

}  // namespace vitrell
