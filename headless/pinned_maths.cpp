// Exponential, logarithms, powers and the hypotenuse, with the same bits everywhere.
#include "headless/pinned_maths.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "headless/double_double.h"

namespace vitrell::headless::pinned {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

constexpr DoubleDouble kLn2 = {0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};
constexpr DoubleDouble kInverseLn10 = {0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57};

// ln 2 in two parts; the upper one times any exponent is exact.
constexpr double kLn2Upper = 0x1.62e42fefa3000p-1;
constexpr double kLn2Lower = 0x1.3de6af278ece6p-42;

// --- Exponential ---

constexpr int kExpSteps = 64;
// ln 2 / 64 in two parts; the upper one times any step number is exact.
constexpr double kStepUpper = 0x1.62e42fef80000p-7;
constexpr double kStepLower = 0x1.1cf79abc9e3b4p-42;
constexpr double kStepsPerUnit = 0x1.71547652b82fep+6;

// Taylor series of exp; 28 terms are enough for 0 <= x <= ln 2.
constexpr DoubleDouble ExpSeries(DoubleDouble x) {
  DoubleDouble sum = {1, 0};
  DoubleDouble term = {1, 0};
  for (int n = 1; n <= 28; ++n) {
    term = Divide(Multiply(term, x), {static_cast<double>(n), 0});
    sum = Add(sum, term);
  }
  return sum;
}

// 2^(i / 64).
constexpr auto kExpTable = [] {
  std::array<DoubleDouble, kExpSteps> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = ExpSeries(Multiply(kLn2, {static_cast<double>(i) / kExpSteps, 0}));
  }
  return table;
}();

// 2^exponent, for exponents of normal numbers.
double PowerOfTwo(std::int32_t exponent) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52U);
}

// exp(x) = 2^k 2^(i / 64) exp(r) with |r| <= ln 2 / 128, and the Taylor series of exp(r) - 1 (table
// method after Tang, ACM Transactions on Mathematical Software 15, 1989).
double ExpOf(DoubleDouble x) {
  if (x.hi > 710) return kInfinity;
  if (x.hi < -746) return 0;
  const double step = std::floor(x.hi * kStepsPerUnit + 0.5);
  const double r = ((x.hi - step * kStepUpper) - step * kStepLower) + x.lo;
  const double tail = 1.0 / 6 + r * (1.0 / 24 + r * (1.0 / 120 + r * (1.0 / 720)));
  const double gain = r + r * r * (0.5 + r * tail);
  const auto number = static_cast<std::int32_t>(step);
  const std::int32_t index = number & (kExpSteps - 1);
  const std::int32_t exponent = (number - index) / kExpSteps;
  const DoubleDouble base = kExpTable[static_cast<std::size_t>(index)];
  const double value = base.hi + (base.lo + base.hi * gain);
  // Scaled in two steps, so that each power of two is a normal number.
  const std::int32_t half = exponent / 2;
  return value * PowerOfTwo(half) * PowerOfTwo(exponent - half);
}

// --- Logarithm ---

// ln c for 0.7 < c < 1.5, as 2 artanh((c - 1) / (c + 1)); c has few significant bits.
constexpr DoubleDouble LogSeries(double c) {
  const DoubleDouble z = Divide({c - 1, 0}, {c + 1, 0});
  const DoubleDouble square = Multiply(z, z);
  DoubleDouble sum = {};
  for (int n = 47; n >= 1; n -= 2) {
    sum = Add(Divide({1, 0}, {static_cast<double>(n), 0}), Multiply(sum, square));
  }
  const DoubleDouble half = Multiply(z, sum);
  return {2 * half.hi, 2 * half.lo};
}

constexpr int kLogBits = 7;
constexpr int kLogSteps = 1 << kLogBits;
// Mantissas from this step on (11/8) are halved and the exponent raised, so that numbers just below
// and just above 1 both have exponent 0.
constexpr int kFirstHalved = 3 * kLogSteps / 8;

struct LogEntry {
  double inverse;         // About 1 / m at the step's centre, at most 10 bits.
  DoubleDouble minusLog;  // -ln(inverse).
};

constexpr auto kLogTable = [] {
  std::array<LogEntry, kLogSteps> table{};
  for (int i = 0; i < kLogSteps; ++i) {
    const double middle = (1 + (i + 0.5) / kLogSteps) * (i < kFirstHalved ? 1 : 0.5);
    const double unit = i < kFirstHalved ? 512 : 256;
    double inverse = static_cast<double>(static_cast<int>(unit / middle + 0.5)) / unit;
    // Exactly 1 for the steps next to 1, where the logarithm is small and would lose bits to
    // cancellation with -ln(inverse).
    if (i == 0 || i == kLogSteps - 1) inverse = 1;
    table[static_cast<std::size_t>(i)] = {inverse, Negate(LogSeries(inverse))};
  }
  return table;
}();

// ln(1 + r) - r + r^2 / 2 for |r| <= 2^-7, by Mercator's series.
double LogTail(double r) {
  double sum = 1.0 / 11;
  sum = -1.0 / 10 + r * sum;
  sum = 1.0 / 9 + r * sum;
  sum = -1.0 / 8 + r * sum;
  sum = 1.0 / 7 + r * sum;
  sum = -1.0 / 6 + r * sum;
  sum = 1.0 / 5 + r * sum;
  sum = -1.0 / 4 + r * sum;
  sum = 1.0 / 3 + r * sum;
  return r * r * r * sum;
}

// ln x = k ln 2 - ln c + ln(1 + r) with x = 2^k m and r = m c - 1 (table method after Tang, ACM
// Transactions on Mathematical Software 16, 1990), to about 67 bits, for 0 < x < infinity.
DoubleDouble LogOf(double x) {
  std::int32_t exponent = 0;
  if (x < std::numeric_limits<double>::min()) {
    x *= 0x1p54;
    exponent = -54;
  }
  auto bits = std::bit_cast<std::uint64_t>(x);
  exponent += static_cast<std::int32_t>(bits >> 52U) - 1023;
  const std::uint64_t mantissa = bits & 0xFFFFFFFFFFFFFULL;
  const std::uint64_t index = mantissa >> (52U - kLogBits);
  const bool halved = index >= kFirstHalved;
  exponent += halved ? 1 : 0;
  bits = mantissa | (halved ? 1022ULL : 1023ULL) << 52U;
  const auto m = std::bit_cast<double>(bits);
  const auto upper = std::bit_cast<double>(bits & 0xFFFFFFFFFF000000ULL);

  const LogEntry& entry = kLogTable[index];
  // Both products are exact: 29 and 24 bits times 10.
  const DoubleDouble r = TwoSum(upper * entry.inverse - 1, (m - upper) * entry.inverse);
  const DoubleDouble square = TwoProduct(r.hi, r.hi);
  DoubleDouble sum = TwoSum(exponent * kLn2Upper, entry.minusLog.hi);
  double low = exponent * kLn2Lower + entry.minusLog.lo + sum.lo;
  sum = TwoSum(sum.hi, r.hi);
  low += sum.lo + (r.lo - r.hi * r.lo);
  sum = TwoSum(sum.hi, -0.5 * square.hi);
  low += sum.lo + (LogTail(r.hi) - 0.5 * square.lo);
  return FastTwoSum(sum.hi, low);
}

// --- Powers ---

enum class Whole { kNo, kEven, kOdd };

// Infinity counts as even, as every large double is.
Whole WholeKind(double y) {
  if (std::floor(y) != y) return Whole::kNo;
  const double half = 0.5 * y;
  return std::floor(half) == half ? Whole::kEven : Whole::kOdd;
}

// x^y for 0 < x < infinity and finite y.
double PowOf(double x, double y) {
  const DoubleDouble log = LogOf(x);
  const double size = std::fabs(y);
  // |ln x| is 0 or in [2^-54, 745], so that y beyond these bounds determines the result, and
  // TwoProduct could not split it.
  if (log.hi == 0 || size < 0x1p-70) return 1;
  if (size > 0x1p70) return (log.hi > 0) == (y > 0) ? kInfinity : 0;
  const DoubleDouble product = TwoProduct(y, log.hi);
  return ExpOf({product.hi, product.lo + y * log.lo});
}

}  // namespace

double Exp(double x) {
  if (std::isnan(x)) return std::numeric_limits<double>::quiet_NaN();
  return ExpOf({x, 0});
}

double Log(double x) {
  if (std::isnan(x) || x < 0) return std::numeric_limits<double>::quiet_NaN();
  if (x == 0) return -kInfinity;
  if (x == kInfinity) return x;
  return LogOf(x).hi;
}

double Log10(double x) {
  if (std::isnan(x) || x < 0) return std::numeric_limits<double>::quiet_NaN();
  if (x == 0) return -kInfinity;
  if (x == kInfinity) return x;
  return Multiply(LogOf(x), kInverseLn10).hi;
}

double Pow(double x, double y) {
  if (y == 0 || x == 1) return 1;
  if (std::isnan(x) || std::isnan(y)) return std::numeric_limits<double>::quiet_NaN();
  const Whole whole = WholeKind(y);
  const double base = std::fabs(x);
  const bool negative = std::signbit(x) && whole == Whole::kOdd;
  if (std::isinf(y)) {
    if (base == 1) return 1;
    return (base > 1) == (y > 0) ? kInfinity : 0;
  }
  double result = 0;
  if (base == 0 || base == kInfinity) {
    result = (base == 0) == (y > 0) ? 0 : kInfinity;
  } else if (x < 0 && whole == Whole::kNo) {
    return std::numeric_limits<double>::quiet_NaN();
  } else {
    result = PowOf(base, y);
  }
  return negative ? -result : result;
}

// Computes the square root of an exact sum of squares.
double Hypot(double x, double y) {
  double larger = std::fabs(x);
  double smaller = std::fabs(y);
  if (larger == kInfinity || smaller == kInfinity) return kInfinity;
  if (std::isnan(x) || std::isnan(y)) return std::numeric_limits<double>::quiet_NaN();
  if (larger < smaller) std::swap(larger, smaller);
  if (smaller < larger * 0x1p-60) return larger;
  // Scaled so that squares neither overflow nor underflow.
  double scale = 1;
  if (larger > 0x1p500) scale = 0x1p-600;
  if (larger < 0x1p-400) scale = 0x1p600;
  larger *= scale;
  smaller *= scale;
  if (larger == 0) return 0;
  const DoubleDouble sum = Add(TwoProduct(larger, larger), TwoProduct(smaller, smaller));
  const double root = std::sqrt(sum.hi);
  // One Newton step with the exact residual.
  const DoubleDouble rest = Add(sum, Negate(TwoProduct(root, root)));
  return (root + rest.hi / (2 * root)) * (1 / scale);
}

}  // namespace vitrell::headless::pinned
