// Window sums of a mirrored line in constant time: the arithmetic behind the box blur.
#include "blur/box_window.h"

namespace vitrell {
namespace {

// The sum of the sequence's elements before position end, as a combination of stored sums.
struct RunningSum {
  std::int64_t wholeFactor;
  std::int64_t firstFactor;
  std::int64_t sign;
  std::int64_t index;
};

RunningSum SumBefore(std::int64_t end, std::int64_t n) {
  const std::int64_t period = 2 * n - 1;
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
  return {.wholeFactor = static_cast<std::uint64_t>(high.wholeFactor - low.wholeFactor),
          .firstFactor = static_cast<std::uint64_t>(high.firstFactor - low.firstFactor),
          .highSign = static_cast<std::uint64_t>(high.sign),
          .lowSign = static_cast<std::uint64_t>(-low.sign),
          .high = static_cast<std::uint32_t>(high.index),
          .low = static_cast<std::uint32_t>(low.index),
          .inside = center - radius >= 0 && center + radius < n};
}

bool BoxWindows::Build(std::int64_t n, std::int64_t origin, std::int64_t radius,
                       std::int32_t count) {
  n_ = n;
  origin_ = origin;
  radius_ = radius;
  count_ = count > 0 ? count : 0;
  if (!windows_.Allocate(static_cast<std::size_t>(count_))) {
    return false;
  }
  for (std::int32_t position = 0; position < count_; ++position) {
    windows_[static_cast<std::size_t>(position)] = MakeBoxWindow(n, position - origin, radius);
  }
  return true;
}

}  // namespace vitrell
