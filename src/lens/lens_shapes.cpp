// The distance functions of the drawn lens shapes.
#include "lens/lens_shapes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/numeric.h"
#include "base/polar_angle.h"

namespace vitrell {
namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kPiOver6 = 0.5235987755982988;
constexpr double kFivePiOver6 = 2.6179938779914944;
constexpr double kThreePiOver2 = 4.71238898038469;
constexpr double kElevenPiOver6 = 5.759586531581287;
constexpr double kSevenPiOver6 = 3.665191429188092;

constexpr double kShortSide = 0.35;  // Fraction of the output's width or height.
constexpr double kLongSide = 0.75;
constexpr double kEdgePixels = 1.5;  // Minimum width of the soft band, for anti-aliasing.

// Width of the soft band relative to the shape: the feather plus about 1.5 output pixels. The
// quotient is computed in double precision, the sum in single.
double RelativeBand(float feather, double scaledSize) {
  return feather + static_cast<float>(kEdgePixels / scaledSize);
}

}  // namespace

double GetDistanceFromPtToSegLine(double px, double py, double ax, double ay, double bx, double by,
                                  const PF_InData* inData) {
  const auto length = [inData](double x, double y) {
    return inData->utils->ansi.sqrt(x * x + y * y);
  };
  const double ex = bx - ax;
  const double ey = by - ay;
  if (ex > 0 || ey > 0) {
    const double t = ((px - ax) * ex + (py - ay) * ey) / (ex * ex + ey * ey);
    if (t >= 1) {
      return length(px - bx, py - by);
    }
    if (t > 0) {
      return length(px - (ax + t * ex), py - (ay + t * ey));
    }
  }
  return length(px - ax, py - ay);
}

double GetDistanceKWithRectMode(double u, double v, double k, double a, double b,
                                const PF_InData* inData) {
  const double band = std::min(a, b) * k;
  const double absU = std::fabs(u);
  const double absV = std::fabs(v);
  const bool wide = k > 2.0;
  const double hx = wide ? b - band / k : std::max(b - band / 2, 0.0);
  const double hy = wide ? a - band / k : std::max(a - band / 2, 0.0);
  if (absU <= hx && absV <= hy) {
    return 0;
  }
  double distance = absV - hy;
  if (absU != 0) {
    const bool aboveCornerDiagonal = hy / hx < absV / absU;
    distance = aboveCornerDiagonal ? GetDistanceFromPtToSegLine(absU, absV, 0, hy, hx, hy, inData)
                                   : GetDistanceFromPtToSegLine(absU, absV, hx, 0, hx, hy, inData);
  }
  return LimitToOne(distance / band);
}

LensShape::LensShape(const PF_InData* inData, const LX_Info& info, double width, double height)
    : inData_(inData),
      maths_(inData->utils->ansi),
      info_(info),
      sinRotation_(maths_.sin(info.rotation)),
      cosRotation_(maths_.cos(info.rotation)) {
  const double scaleWidth = info.scaleWidth;
  switch (info.lensType) {
    case kLensWideRectangle:
      halfHeight_ = kShortSide * height;
      halfWidth_ = kLongSide * width;
      relativeBand_ = RelativeBand(info.feather, scaleWidth * kShortSide * height);
      break;
    case kLensTallRectangle:
      halfHeight_ = kLongSide * height;
      halfWidth_ = kShortSide * width;
      relativeBand_ = RelativeBand(info.feather, scaleWidth * kShortSide * width);
      break;
    default:
      radius_ = kShortSide * width;
      relativeBand_ = RelativeBand(info.feather, scaleWidth * radius_);
      rootOf3_ = maths_.sqrt(3);
      break;
  }
}

double LensShape::RawDistance(std::int32_t x, std::int32_t y) const {
  const auto dx = static_cast<double>(std::int64_t{x} - info_.positionX);
  const auto dy = static_cast<double>(std::int64_t{y} - info_.positionY);
  const double u = (cosRotation_ * dx + sinRotation_ * dy) / info_.scaleWidth;
  const double v = (sinRotation_ * dx - cosRotation_ * dy) / info_.scaleHeight;
  switch (info_.lensType) {
    case kLensCircle:
      return Circle(u, v);
    case kLensWideRectangle:
    case kLensTallRectangle:
      return GetDistanceKWithRectMode(u, v, relativeBand_, halfHeight_, halfWidth_, inData_);
    case kLensTriangle:
      return Triangle(u, v);
    default:
      return 0;
  }
}

ShapeSpans LensShape::SpansOf(std::int32_t y, std::int32_t left, std::uint32_t count) const {
  const MaskLine line = LineOf(y, left, count);
  const double band = relativeBand_ * radius_;
  const double beyond = std::numeric_limits<double>::infinity();
  LineSection inner(line);
  LineSection outer(line);
  if (info_.lensType == kLensCircle) {
    inner.ClipToDisc(std::max(radius_ - 0.5 * band, 0.0) * (1 - kMargin));
    outer.ClipToDisc(band > 0 ? (radius_ + 0.5 * band) * (1 + kMargin) : beyond);
  } else if (info_.lensType == kLensTriangle) {
    // At the point (u, -v) the outward normals of the triangle's sides are (0, 1) and (+-sqrt(3) /
    // 2, -1 / 2); its inradius is half its circumradius, radius_.
    const auto clip = [sideX = rootOf3_ / 2](LineSection* section, double limit) {
      section->ClipToHalfPlane(sideX, 0.5, limit);
      section->ClipToHalfPlane(-sideX, 0.5, limit);
      section->ClipToHalfPlane(0, -1, limit);
    };
    clip(&inner, radius_ / 2 * (1 - kMargin));
    clip(&outer, band > 0 ? (radius_ / 2 + band) * (1 + kMargin) : beyond);
  } else {
    const double rectBand = std::min(halfHeight_, halfWidth_) * relativeBand_;
    const double inset = relativeBand_ > 2.0 ? rectBand / relativeBand_ : rectBand / 2;
    const double hx = std::max(halfWidth_ - inset, 0.0);
    const double hy = std::max(halfHeight_ - inset, 0.0);
    const double reach = rectBand > 0 ? rectBand : beyond;
    const auto clip = [](LineSection* section, double limitU, double limitV) {
      section->ClipToHalfPlane(1, 0, limitU);
      section->ClipToHalfPlane(-1, 0, limitU);
      section->ClipToHalfPlane(0, 1, limitV);
      section->ClipToHalfPlane(0, -1, limitV);
    };
    clip(&inner, hx * (1 - kMargin), hy * (1 - kMargin));
    clip(&outer, (hx + reach) * (1 + kMargin), (hy + reach) * (1 + kMargin));
  }
  ShapeSpans spans = {.outer = outer.Columns(true), .inner = inner.Columns(false)};
  // Keeps outer.begin <= inner.begin <= inner.end <= outer.end, also where the inner span is empty.
  spans.inner.begin = std::clamp(spans.inner.begin, spans.outer.begin, spans.outer.end);
  spans.inner.end = std::clamp(spans.inner.end, spans.inner.begin, spans.outer.end);
  return spans;
}

// The coordinates u and v of RawDistance, with a multiplication by the reciprocal instead of its
// division; kMargin covers the difference.
MaskLine LensShape::LineOf(std::int32_t y, std::int32_t left, std::uint32_t count) const {
  const double inverseWidth = 1 / double{info_.scaleWidth};
  const double inverseHeight = 1 / double{info_.scaleHeight};
  const auto dy = static_cast<double>(std::int64_t{y} - info_.positionY);
  return {.first = static_cast<double>(std::int64_t{left} - info_.positionX),
          .count = count,
          .stepU = cosRotation_ * inverseWidth,
          .startU = sinRotation_ * dy * inverseWidth,
          .stepV = sinRotation_ * inverseHeight,
          .startV = -cosRotation_ * dy * inverseHeight};
}

// The soft band is centred on the radius.
double LensShape::Circle(double u, double v) const {
  const double band = relativeBand_ * radius_;
  const double distance = maths_.sqrt(u * u + v * v);
  const double t = distance - (radius_ - 0.5 * band);
  return t < 0 ? 0 : LimitToOne(t / band);
}

// Which side of the triangle the point (u, -v) faces, if a comparison can decide. It then lies much
// farther from the border between two sides' sectors than any error of the host's arctangent.
LensShape::Side LensShape::FacingSide(double u, double v) const {
  const double across = std::fabs(u) * 0.5;
  const double down = -v * (rootOf3_ / 2);
  const double margin = kMargin * (std::fabs(u) + std::fabs(v));
  if (down - across > margin) {
    return Side::kBase;
  }
  if (across - down > margin && std::fabs(u) > margin) {
    return u > 0 ? Side::kRight : Side::kLeft;
  }
  return Side::kUnknown;
}

// The side that a point faces which is certainly beyond the triangle's edge; otherwise unknown.
LensShape::Side LensShape::FacingSideFromOutside(double u, double v) const {
  const double toSide = std::max(std::fabs(u) * (rootOf3_ / 2) + 0.5 * v, -v);
  return toSide > radius_ / 2 * (1 + kMargin) ? FacingSide(u, v) : Side::kUnknown;
}

LensShape::Segment LensShape::SegmentOf(Side side) const {
  const double cornerX = rootOf3_ * radius_ / 2;
  const double baseY = radius_ / 2;
  return {.ax = side == Side::kRight ? 0 : -cornerX,
          .ay = side == Side::kRight ? -radius_ : baseY,
          .bx = side == Side::kLeft ? 0 : cornerX,
          .by = side == Side::kLeft ? -radius_ : baseY};
}

// Kept: the triangle's soft band lies wholly outside its edge; the circle's is centred on it.
double LensShape::Triangle(double u, double v) const {
  Side side = FacingSideFromOutside(u, v);
  if (side == Side::kUnknown) {
    const double angle = PolarAngle(maths_, u, -v);
    double sectorOffset = angle - kHalfPi;
    side = Side::kBase;
    if (angle < kPiOver6 || angle >= kThreePiOver2) {
      sectorOffset = (angle < kPiOver6 ? angle + kTwoPi : angle) - kElevenPiOver6;
      side = Side::kRight;
    } else if (angle >= kFivePiOver6) {
      sectorOffset = angle - kSevenPiOver6;
      side = Side::kLeft;
    }
    const double distance = maths_.sqrt(u * u + v * v);
    if (distance / (radius_ / (2 * maths_.cos(sectorOffset))) < 1) {
      return 0;
    }
  }
  const Segment s = SegmentOf(side);
  return LimitToOne(GetDistanceFromPtToSegLine(u, -v, s.ax, s.ay, s.bx, s.by, inData_) /
                    (radius_ * relativeBand_));
}

}  // namespace vitrell
