// Window sums of a mirrored line in constant time: the arithmetic of the box blur.
#include "blur/fast/box_window.h"

#include "base/pixel_access.h"

namespace vitrell {
namespace {

// The sum of the periodic sequence up to position end, expressed by stored prefix sums.
struct RunningSum {
  std::int64_t wholeFactor;
  std::int64_t firstFactor;
  std::int64_t sign;
  std::int64_t index;
};

RunningSum SumBefore(std::int64_t end, std::int64_t n) {
  const std::int64_t period = MirrorPeriod(n);
  std::int64_t periods = end / period;
  std::int64_t rest = end % period;
  if (rest < 0) {
    rest += period;
    --periods;
  }
  // A whole period sums to 2 S[n] - S[1].
  if (rest <= n) {
    return {2 * periods, -periods, 1, rest};
  }
  return {2 * periods + 2, -periods, -1, 2 * n - rest};
}

}  // namespace

BoxWindow MakeBoxWindow(std::int64_t n, std::int64_t center, std::int64_t radius) {
  const RunningSum high = SumBefore(center + radius + 1, n);
  const RunningSum low = SumBefore(center - radius, n);
  const std::int64_t wholeFactor = high.wholeFactor - low.wholeFactor;
  const std::int64_t firstFactor = high.firstFactor - low.firstFactor;
  return {.wholeFactor = static_cast<std::uint64_t>(wholeFactor),
          .firstFactor = static_cast<std::uint64_t>(firstFactor),
          .highSign = static_cast<std::uint64_t>(high.sign),
          .lowSign = static_cast<std::uint64_t>(-low.sign),
          .high = static_cast<std::uint32_t>(high.index),
          .low = static_cast<std::uint32_t>(low.index),
          .inside = wholeFactor == 0 && firstFactor == 0 && high.sign == 1 && low.sign == 1};
}

}  // namespace vitrell
