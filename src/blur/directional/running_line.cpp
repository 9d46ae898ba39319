// Lines of taps whose averages follow from whole-number sums.
#include "blur/directional/running_line.h"

#include <cmath>
#include <cstdlib>

namespace vitrell {
namespace {

// Roundings leave the weights, which come from the host's roots, nearer than this to the exact
// ones.
constexpr double kWeightTolerance = 0x1p-44;

// Whether the tap is the one at this distance along the line.
bool IsTapAt(const LineTap& tap, std::int32_t distance, const LineTap& step, std::int32_t length) {
  const double weight = static_cast<double>(length - std::abs(distance)) / length;
  const bool isWeight =
      weight == 0.0 ? tap.weight == 0.0 : std::abs(tap.weight - weight) <= kWeightTolerance;
  return tap.x == distance * step.x && tap.y == distance * step.y && isWeight;
}

bool AreTapsOf(const LineTaps& line, const LineTap& step, std::int32_t length) {
  for (std::int32_t i = 0; i < line.count(); ++i) {
    if (!IsTapAt(line.begin()[i], i - length, step, length)) {
      return false;
    }
  }
  return true;
}

}  // namespace

AverageLimits RunningLine::Limits() const {
  const double squared = static_cast<double>(length) * length;
  return {static_cast<float>(42.5 * squared), static_cast<float>(1.001 * 0x1p-24 * (length + 5))};
}

RunningLine FindRunningLine(const LineTaps& line) {
  const std::int32_t length = (line.count() - 1) / 2;
  if (line.count() % 2 == 0 || length < kFirstRunningLength || length >= kEndRunningLength) {
    return {};
  }
  const LineTap& step = line.begin()[length + 1];
  if (std::abs(step.x) > 1 || std::abs(step.y) > 1 || !AreTapsOf(line, step, length)) {
    return {};
  }
  const bool isReversed = step.y < 0 || (step.y == 0 && step.x < 0);
  return {length, isReversed ? -step.x : step.x, isReversed ? -step.y : step.y};
}

}  // namespace vitrell
