// The rule by which a floating-point result becomes an integer or a channel.
#ifndef VITRELL_LITERAL_BASE_TRUNCATE_H_
#define VITRELL_LITERAL_BASE_TRUNCATE_H_

#include <cstdint>
#include <limits>

namespace vitrell::literal {

// Toward zero. What does not fit an int32 after truncation, NaN included, becomes INT32_MIN.
inline std::int32_t TruncateToInt(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) {
    return std::numeric_limits<std::int32_t>::min();
  }
  return static_cast<std::int32_t>(value);
}

// A channel keeps the low 8 or 16 bits of an integer.
inline std::uint16_t ChannelFromInt(std::int32_t value, bool deep) {
  return static_cast<std::uint16_t>(static_cast<std::uint32_t>(value) & (deep ? 0xFFFFU : 0xFFU));
}

// What a channel holds after a floating-point result was stored in it.
inline std::uint16_t ChannelFromReal(double value, bool deep) {
  return ChannelFromInt(TruncateToInt(value), deep);
}

// 32-bit arithmetic that wraps in two's complement.
inline std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

inline std::int32_t WrapSubtract(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

inline std::int32_t WrapMultiply(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BASE_TRUNCATE_H_
