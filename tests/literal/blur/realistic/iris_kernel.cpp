// The iris of the realistic blur, evaluated step by step from its definition.
#include "literal/blur/realistic/iris_kernel.h"

#include <cmath>
#include <cstddef>

#include "literal/base/truncate.h"

namespace vitrell::literal {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kEdge = 0.0001;

// The settings and the values that all kernels of one render share.
struct Iris {
  double sideAngle;    // a
  double roundness;    // rho
  double aspectRatio;  // q
  double cosine;       // c
  double sine;         // s
  double halfRound;    // h
  double apothem;      // k
};

Iris MakeIris(const Settings& settings, const Maths& maths) {
  Iris iris;
  iris.sideAngle = 2.0 * kPi / (static_cast<double>(settings.irisSides) + 2.0);
  iris.roundness = settings.irisRoundness;
  iris.aspectRatio = settings.irisAspectRatio;
  const double angle = -settings.irisRotation;
  iris.cosine = maths.cos(angle);
  iris.sine = maths.sin(angle);
  iris.halfRound = iris.roundness / 2;
  iris.apothem = maths.cos(iris.sideAngle * (1 - iris.roundness) / 2);
  return iris;
}

double PolarAngle(double u, double v, const Maths& maths) {
  if (u != 0) {
    double angle = maths.atan(v / u);
    if (u < 0) angle += kPi;
    if (angle < 0) angle += 2.0 * kPi;
    return angle;
  }
  return v > 0 ? kPi / 2 : 3.0 * kPi / 2;
}

float KernelWeight(std::int32_t x, std::int32_t y, std::int32_t radiusPx, const Iris& iris,
                   const Maths& maths) {
  if (x == 0 && y == 0) return 1.0F;
  const double u = (iris.sine * y + iris.cosine * x) / iris.aspectRatio;
  const double v = iris.sine * x - iris.cosine * y;
  double d = maths.sqrt(u * u + v * v);
  if (iris.aspectRatio > 1) d = d * iris.aspectRatio;

  const double sides = (PolarAngle(u, v, maths) + kPi / 2) / iris.sideAngle;
  const double f = sides - TruncateToInt(sides);

  auto boundary = static_cast<float>(radiusPx);
  const bool round = f < iris.halfRound || f > 1 - iris.halfRound;
  if (!round) {
    const auto apothemPx = static_cast<float>(iris.apothem * radiusPx);
    boundary = static_cast<float>(apothemPx / maths.cos((0.5 - f) * iris.sideAngle));
  }

  if (d < boundary + kEdge) return 1.0F;
  if (d >= boundary + kEdge + 1) return 0.0F;
  return static_cast<float>(d - boundary - kEdge);
}

}  // namespace

std::int32_t MaximumRadius(const Settings& settings) {
  const float radius = settings.realisticAmount * 100.0F;
  return TruncateToInt(radius);
}

std::vector<float> KernelGrid(std::int32_t radiusPx, const Settings& settings, const Maths& maths) {
  const Iris iris = MakeIris(settings, maths);
  const std::size_t side = 2 * static_cast<std::size_t>(radiusPx) + 1;
  std::vector<float> grid(side * side);
  for (std::int32_t y = -radiusPx; y <= radiusPx; ++y) {
    for (std::int32_t x = -radiusPx; x <= radiusPx; ++x) {
      const std::int32_t row = y + radiusPx;
      const std::int32_t column = -x + radiusPx;
      grid.at(static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column)) =
          KernelWeight(x, y, radiusPx, iris, maths);
    }
  }
  return grid;
}

std::vector<WeightPoint> DifferencePoints(const std::vector<float>& grid, std::int32_t radiusPx) {
  const std::size_t side = 2 * static_cast<std::size_t>(radiusPx) + 1;
  const auto gridAt = [&](std::int32_t y, std::int32_t x) {
    const std::int32_t row = y + radiusPx;
    const std::int32_t column = x + radiusPx;
    return grid.at(static_cast<std::size_t>(row) * side + static_cast<std::size_t>(column));
  };
  std::vector<WeightPoint> points;
  for (std::int32_t y = -radiusPx; y <= radiusPx; ++y) {
    for (std::int32_t x = -radiusPx - 1; x <= radiusPx; ++x) {
      if (x == -radiusPx - 1) {
        if (gridAt(y, -radiusPx) != 0) points.push_back({x, y, -gridAt(y, -radiusPx)});
      } else if (x == radiusPx) {
        if (gridAt(y, radiusPx) != 0) points.push_back({x, y, gridAt(y, radiusPx)});
      } else {
        const float difference = gridAt(y, x) - gridAt(y, x + 1);
        if (std::fabs(difference) > kEdge) points.push_back({x, y, difference});
      }
    }
  }
  return points;
}

}  // namespace vitrell::literal
