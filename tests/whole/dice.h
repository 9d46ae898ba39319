// Random numbers that are the same on every platform.
#ifndef VITRELL_WHOLE_DICE_H_
#define VITRELL_WHOLE_DICE_H_

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace vitrell::whole {

// The standard's distributions differ between libraries; the generator itself does not.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed * 0x9E3779B97F4A7C15ULL + 1) {}

  // 0 to n - 1; n must be positive.
  std::int32_t Below(std::int32_t n) {
    return static_cast<std::int32_t>(engine_() % static_cast<std::uint64_t>(n));
  }
  // Both ends included.
  std::int32_t Between(std::int32_t low, std::int32_t high) { return low + Below(high - low + 1); }
  bool Chance(std::int32_t percent) { return Below(100) < percent; }
  double Real(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_() >> 11U) * 0x1p-53);
  }
  template <typename Value>
  Value Pick(const std::vector<Value>& values) {
    return values[static_cast<std::size_t>(Below(static_cast<std::int32_t>(values.size())))];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_DICE_H_
