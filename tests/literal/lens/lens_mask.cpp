// The lens mask: how much each pixel of the output's rectangle lies inside the lens.
#include "literal/lens/lens_mask.h"

#include <algorithm>
#include <cmath>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"

namespace vitrell::literal {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kHalfPi = 1.5707963267948966;
constexpr double kSixthPi = 0.5235987755982988;
constexpr double kFiveSixthsPi = 2.6179938779914944;
constexpr double kThreeHalvesPi = 4.71238898038469;
constexpr double kElevenSixthsPi = 5.759586531581287;
constexpr double kSevenSixthsPi = 3.665191429188092;

struct Context {
  const Settings& settings;
  const Maths& maths;
  std::int32_t outputWidth;
  std::int32_t outputHeight;
  Rect inputExtent;
};

double LimitToOne(double value) { return value > 1 ? 1 : value; }

// The sum is single precision, its quotient double.
double RelativeBand(float feather, double size) {
  const auto margin = static_cast<float>(1.5 / size);
  return static_cast<double>(feather + margin);
}

double CircleDistance(double u, double v, const Context& context) {
  const Settings& s = context.settings;
  const double radius = 0.35 * context.outputWidth;
  const double band = RelativeBand(s.feather, static_cast<double>(s.scaleWidth) * radius) * radius;
  const double d = context.maths.sqrt(u * u + v * v);
  const double t = d - (radius - 0.5 * band);
  return t < 0 ? 0 : LimitToOne(t / band);
}

double WideRectangleDistance(double u, double v, const Context& context) {
  const Settings& s = context.settings;
  const double k =
      RelativeBand(s.feather, static_cast<double>(s.scaleWidth) * 0.35 * context.outputHeight);
  return GetDistanceKWithRectMode(u, v, k, 0.35 * context.outputHeight, 0.75 * context.outputWidth,
                                  context.maths);
}

double TallRectangleDistance(double u, double v, const Context& context) {
  const Settings& s = context.settings;
  const double k =
      RelativeBand(s.feather, static_cast<double>(s.scaleWidth) * 0.35 * context.outputWidth);
  return GetDistanceKWithRectMode(u, v, k, 0.75 * context.outputHeight, 0.35 * context.outputWidth,
                                  context.maths);
}

double TriangleAngle(double u, double v, const Maths& maths) {
  if (u == 0) {
    return v < 0 ? kHalfPi : kThreeHalvesPi;
  }
  double theta = maths.atan(-v / u);
  if (u < 0) {
    theta += kPi;
  }
  if (theta < 0) {
    theta += kTwoPi;
  }
  return theta;
}

double TriangleDistance(double u, double v, const Context& context) {
  const Settings& s = context.settings;
  const Maths& maths = context.maths;
  const double radius = 0.35 * context.outputWidth;
  const double k = RelativeBand(s.feather, static_cast<double>(s.scaleWidth) * radius);
  const double d = maths.sqrt(u * u + v * v);
  const double theta = TriangleAngle(u, v, maths);
  const bool rightSide = theta < kSixthPi || theta >= kThreeHalvesPi;
  const bool leftSide = !rightSide && theta >= kFiveSixthsPi;
  double offset = 0;
  if (rightSide) {
    offset = (theta < kSixthPi ? theta + kTwoPi : theta) - kElevenSixthsPi;
  } else if (leftSide) {
    offset = theta - kSevenSixthsPi;
  } else {
    offset = theta - kHalfPi;
  }
  if (d / (radius / (2 * maths.cos(offset))) < 1) {
    return 0;
  }
  const double cornerX = maths.sqrt(3) * radius / 2;
  const double cornerY = radius / 2;
  double distance = 0;
  if (rightSide) {
    distance = GetDistanceFromPtToSegLine(u, -v, 0, -radius, cornerX, cornerY, maths);
  } else if (leftSide) {
    distance = GetDistanceFromPtToSegLine(u, -v, -cornerX, cornerY, 0, -radius, maths);
  } else {
    distance = GetDistanceFromPtToSegLine(u, -v, -cornerX, cornerY, cornerX, cornerY, maths);
  }
  return LimitToOne(distance / (radius * k));
}

double CustomDistance(std::int32_t x, std::int32_t y, const Context& context) {
  const Settings& s = context.settings;
  if (s.customLayer == nullptr || !s.customLayer->HasData()) {
    return 1;
  }
  const World& image = *s.customLayer;
  const double ratioX = static_cast<double>(image.width) / context.outputWidth;
  const double ratioY = static_cast<double>(image.height) / context.outputHeight;
  const double outerX = s.placement == 2 ? ratioX : 1;
  const double outerY = s.placement == 2 ? ratioY : 1;
  const double innerX = s.placement == 1 ? ratioX : 1;
  const double innerY = s.placement == 1 ? ratioY : 1;
  const auto scaleWidth = static_cast<double>(s.scaleWidth);
  const auto scaleHeight = static_cast<double>(s.scaleHeight);
  const double p = scaleWidth > 0.0001 ? WrapSubtract(x, s.positionX) / scaleWidth : 0;
  const double q = scaleHeight > 0.0001 ? WrapSubtract(s.positionY, y) / scaleHeight : 0;
  const double cosine = context.maths.cos(-s.rotation);
  const double sine = context.maths.sin(-s.rotation);
  const Rect& rect = context.inputExtent;
  const double column =
      outerX * (innerX * WrapAdd(rect.left, rect.right) * 0.5 + sine * q + cosine * p) - 1.0;
  const double row =
      outerY * (innerY * WrapAdd(rect.top, rect.bottom) * 0.5 + sine * p - cosine * q) - 1.0;
  Pixel sample;
  GetPointerFromDataDP(image, row, column, sample, 0);
  const double weighted =
      (0.299 * sample.channel[1] + 0.587 * sample.channel[2] + 0.114 * sample.channel[3]) *
      sample.channel[0];
  const double luminance = image.deep ? weighted * 9.313225746154785e-10 : weighted / 65025;
  return 1 - luminance;
}

double ShapeDistance(std::int32_t x, std::int32_t y, const Context& context) {
  const Settings& s = context.settings;
  if (s.lensType == 6) {
    return CustomDistance(x, y, context);
  }
  const double dx = WrapSubtract(x, s.positionX);
  const double dy = WrapSubtract(y, s.positionY);
  const double cosine = context.maths.cos(s.rotation);
  const double sine = context.maths.sin(s.rotation);
  const double u = (cosine * dx + sine * dy) / static_cast<double>(s.scaleWidth);
  const double v = (sine * dx - cosine * dy) / static_cast<double>(s.scaleHeight);
  switch (s.lensType) {
    case 2:
      return CircleDistance(u, v, context);
    case 3:
      return WideRectangleDistance(u, v, context);
    case 4:
      return TallRectangleDistance(u, v, context);
    case 5:
      return TriangleDistance(u, v, context);
    default:
      return 0;
  }
}

double MaskValue(std::int32_t x, std::int32_t y, const Context& context) {
  const Settings& s = context.settings;
  double value = 0;
  if (s.scaleWidth > 0 && s.scaleHeight > 0) {
    const double m = ShapeDistance(x, y, context);
    value = s.lensType == 6 ? 1 - m : (context.maths.cos(m * kPi) + 1) * 0.5;
  }
  return s.invertAlpha == 1 ? 1 - value : value;
}

}  // namespace

double GetDistanceFromPtToSegLine(double px, double py, double ax, double ay, double bx, double by,
                                  const Maths& maths) {
  const auto length = [&maths](double x, double y) { return maths.sqrt(x * x + y * y); };
  const double ex = bx - ax;
  const double ey = by - ay;
  if (ex > 0 || ey > 0) {
    const double t = ((px - ax) * ex + (py - ay) * ey) / (ex * ex + ey * ey);
    if (t >= 1) {
      return length(px - bx, py - by);
    }
    if (t > 0 && t < 1) {
      return length(px - (ax + t * ex), py - (ay + t * ey));
    }
  }
  return length(px - ax, py - ay);
}

double GetDistanceKWithRectMode(double u, double v, double k, double a, double b,
                                const Maths& maths) {
  const double band = std::min(a, b) * k;
  const double absU = std::fabs(u);
  const double absV = std::fabs(v);
  const double halfX = k > 2.0 ? b - band / k : std::max(b - band / 2, 0.0);
  const double halfY = k > 2.0 ? a - band / k : std::max(a - band / 2, 0.0);
  if (absU <= halfX && absV <= halfY) {
    return 0;
  }
  double distance = absV - halfY;
  if (absU != 0) {
    distance = halfY / halfX < absV / absU
                   ? GetDistanceFromPtToSegLine(absU, absV, 0, halfY, halfX, halfY, maths)
                   : GetDistanceFromPtToSegLine(absU, absV, halfX, 0, halfX, halfY, maths);
  }
  return LimitToOne(distance / band);
}

Mask BuildLensMask(const Settings& settings, const Maths& maths, const Rect& outputExtent,
                   std::int32_t outputWidth, std::int32_t outputHeight, const Rect& inputExtent) {
  Mask mask;
  mask.rect = outputExtent;
  const Context context{settings, maths, outputWidth, outputHeight, inputExtent};
  for (std::int32_t y = outputExtent.top; y < outputExtent.bottom; ++y) {
    for (std::int32_t x = outputExtent.left; x < outputExtent.right; ++x) {
      mask.values.push_back(MaskValue(x, y, context));
    }
  }
  return mask;
}

double GetLensMask(const Mask& mask, std::int32_t x, std::int32_t y, const World& world) {
  const Rect& rect = world.extent;
  if (x < rect.left || x >= rect.right || y < rect.top || y >= rect.bottom) {
    return 0.0;
  }
  const std::int64_t width = std::int64_t{rect.right} - rect.left;
  const std::int64_t index = (std::int64_t{x} - rect.left) + width * (std::int64_t{y} - rect.top);
  if (index >= static_cast<std::int64_t>(mask.values.size())) {
    return 0.0;
  }
  return mask.values[static_cast<std::size_t>(index)];
}

}  // namespace vitrell::literal
