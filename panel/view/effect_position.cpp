// The effect's rounding of positions.
#include "panel/view/effect_position.h"

#include <algorithm>
#include <cmath>

#include "headless/parameters.h"

namespace vitrell::panel {
namespace {

// What the effect divides the host's 16.16 numbers by, in single precision.
constexpr float kPositionDivisor = 65566.0F;
constexpr double kFixedOne = 65536;
constexpr int kMostDecimals = 7;

}  // namespace

int EffectPixel(const look::Coordinate& coordinate, int side) {
  const double pixels = coordinate.percent ? coordinate.value / 100.0 * side : coordinate.value;
  return static_cast<int>(static_cast<float>(headless::ToFixed(pixels)) / kPositionDivisor);
}

look::Coordinate CoordinateFor(int pixel, bool percent, int side) {
  const double least = std::abs(pixel) * (static_cast<double>(kPositionDivisor) / kFixedOne);
  const double exact = percent ? least * 100 / std::max(side, 1) : least;
  const double sign = pixel < 0 ? -1 : 1;
  look::Coordinate coordinate{0, percent};
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals) {
    const double grid = std::pow(10.0, decimals);
    coordinate.value = sign * std::min(std::ceil(exact * grid) / grid, look::kFixedLimit);
    if (EffectPixel(coordinate, side) == pixel) break;
  }
  return coordinate;
}

}  // namespace vitrell::panel
