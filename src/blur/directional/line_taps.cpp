// The line of the directional blur: its points and their weights.
#include "blur/directional/line_taps.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "base/line_walk.h"
#include "base/numeric.h"

namespace vitrell {
namespace {

// The longest line that is rasterised: a hundred times the panel's maximum, 256 MB of taps.
constexpr std::int64_t kMaxTaps = std::int64_t{1} << 24;

// Squares and sum wrap at 32 bits, so that weights are wrong for half lengths from 46341 on.
std::int32_t SquaredLength(std::int32_t x, std::int32_t y) {
  return WrappingAdd(WrappingMultiply(x, x), WrappingMultiply(y, y));
}

}  // namespace

PF_Err LineTaps::Build(const PF_InData* inData, const LX_Info& info, bool isNeeded) {
  const PF_ANSICallbacks& maths = inData->utils->ansi;
  const double length = TruncateToInt32(info.directionalAmount);
  const double angleRad = info.directionalAngle + kPi / 2;
  const std::int32_t endX = TruncateToInt32(length * maths.cos(angleRad));
  const std::int32_t endY = TruncateToInt32(length * maths.sin(angleRad));
  const double total = maths.sqrt(SquaredLength(endX, endY));
  const std::int64_t points = CountLinePoints(-std::int64_t{endX}, -std::int64_t{endY}, endX, endY);
  weightSum_ = 0;
  count_ = 0;
  if (points > kMaxTaps || !taps_.Allocate(static_cast<std::size_t>(points))) {
    return isNeeded ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
  }
  WalkLine(-std::int64_t{endX}, -std::int64_t{endY}, endX, endY,
           [&](std::int64_t x, std::int64_t y) {
             const auto tapX = static_cast<std::int32_t>(x);
             const auto tapY = static_cast<std::int32_t>(y);
             const double weight = 1 - maths.sqrt(SquaredLength(tapX, tapY)) / total;
             taps_[static_cast<std::size_t>(count_++)] = {tapX, tapY, weight};
             weightSum_ += weight;
           });
  return PF_Err_NONE;
}

}  // namespace vitrell
