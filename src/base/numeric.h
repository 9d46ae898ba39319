// Number conversions that every stage shares: float to integer, and integers that wrap.
#ifndef VITRELL_BASE_NUMERIC_H_
#define VITRELL_BASE_NUMERIC_H_

#include <cstdint>
#include <limits>
#include <type_traits>

#if defined(__x86_64__)
#include <emmintrin.h>
#endif

// Marks a function whose unsigned arithmetic is meant to wrap, for the sanitizer that reports it.
#if defined(__clang__)
#define VITRELL_UNSIGNED_WRAPS __attribute__((no_sanitize("unsigned-integer-overflow")))
#else
#define VITRELL_UNSIGNED_WRAPS
#endif

namespace vitrell {

// Truncates toward zero. NaN and values outside int32 become INT32_MIN on every platform, which is
// what the x86-64 conversion instruction answers. No other conversion of a float to an integer
// stands anywhere in the effect.
inline std::int32_t TruncateToInt32(double value) {
#if defined(__x86_64__)
  // A compiler that knows the value would fold the instruction to its own idea of the result.
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

// Truncates and keeps the low 8 or 16 bits: no clamping anywhere. NaN becomes 0.
template <typename Channel, typename Float>
inline Channel TruncateToChannel(Float value) {
  static_assert(std::is_floating_point_v<Float>);
  return static_cast<Channel>(static_cast<std::uint32_t>(TruncateToInt32(value)));
}

// 32-bit arithmetic that wraps in two's complement, which is what these builtins store whether it
// overflows or not.
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
