// Numbers shared by every stage: pi, float to integer conversion, and wrapping integer arithmetic.
#ifndef VITRELL_BASE_NUMERIC_H_
#define VITRELL_BASE_NUMERIC_H_

#include <cstdint>
#include <limits>
#include <numbers>
#include <type_traits>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

// Marks a function whose unsigned arithmetic wraps on purpose, so that clang's sanitizer does not
// report it.
#if defined(__clang__)
#define VITRELL_UNSIGNED_WRAPS __attribute__((no_sanitize("unsigned-integer-overflow")))
#else
#define VITRELL_UNSIGNED_WRAPS
#endif

namespace vitrell {

inline constexpr double kPi = std::numbers::pi;

// Truncates toward zero. NaN and values outside int32 become INT32_MIN on every platform, which is
// what the x86-64 conversion instruction returns. Vector code converts with __builtin_convertvector
// or TruncateLanes instead, which define neither case and are used only on values known to fit.
inline std::int32_t TruncateToInt32(double value) {
#if defined(__x86_64__)
  // With a constant argument the compiler would fold the conversion, and it may fold one that is
  // out of range to something else; constants therefore take the comparison below.
  if (!__builtin_constant_p(value)) {
    return _mm_cvttsd_si32(_mm_set_sd(value));
  }
#endif
  return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                       : std::numeric_limits<std::int32_t>::min();
}

inline std::int32_t TruncateToInt32(float value) {
#if defined(__x86_64__)
  if (!__builtin_constant_p(value)) {
    return _mm_cvttss_si32(_mm_set_ss(value));
  }
#endif
  return TruncateToInt32(static_cast<double>(value));
}

// Truncates and keeps the low 8 or 16 bits, without clamping. NaN becomes 0.
template <typename Channel, typename Float>
inline Channel TruncateToChannel(Float value) {
  static_assert(std::is_floating_point_v<Float>);
  return static_cast<Channel>(static_cast<std::uint32_t>(TruncateToInt32(value)));
}

// 32-bit two's complement arithmetic: the builtins store the wrapped result whether or not they
// report an overflow.
inline std::int32_t WrappingAdd(std::int32_t a, std::int32_t b) {
  std::int32_t sum = 0;
  static_cast<void>(__builtin_add_overflow(a, b, &sum));
  return sum;
}
inline std::int32_t WrappingSubtract(std::int32_t a, std::int32_t b) {
  std::int32_t difference = 0;
  static_cast<void>(__builtin_sub_overflow(a, b, &difference));
  return difference;
}
inline std::int32_t WrappingMultiply(std::int32_t a, std::int32_t b) {
  std::int32_t product = 0;
  static_cast<void>(__builtin_mul_overflow(a, b, &product));
  return product;
}

}  // namespace vitrell

#endif  // VITRELL_BASE_NUMERIC_H_
