// Sine, cosine, tangent and their inverses, with the same bits everywhere.
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "headless/double_double.h"
#include "headless/pinned_maths.h"

namespace vitrell::headless::pinned {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

constexpr DoubleDouble kPi = {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53};
constexpr DoubleDouble kHalfPi = {0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};
constexpr DoubleDouble kQuarterPi = {0.5 * kHalfPi.hi, 0.5 * kHalfPi.lo};
constexpr double kTwoOverPi = 0x1.45f306dc9c883p-1;

// For smaller |x|, series such as x - x^3 / 6 round to x.
constexpr double kTiny = 0x1p-27;

// --- Reduction by quarter turns ---

// Up to this |x| the product of quarter turns and a part of pi / 2 is exact.
constexpr double kExactReduction = 0x1p20;
// 145897 full turns: of all multiples of 2 pi below 2^20 the one nearest to a double (within
// 2^-69).
constexpr double kManyTurns = 0x1.bf9b3c6059d24p+19;
// pi / 2 as the sum of four parts; the first three have at most 32 bits, so that their products
// with the number of quarter turns are exact (Cody and Waite, Software Manual for the Elementary
// Functions).
constexpr std::array<double, 4> kHalfPiParts = {0x1.921fb544p+0, 0x1.0b4611a6p-34, 0x1.3198a2ep-69,
                                                0x1.b839a252049c1p-104};

struct Reduced {
  DoubleDouble rest;  // In [-pi / 4, pi / 4], up to a rounding error.
  std::uint32_t quarter = 0;
};

// rest - turns * part, the product being exact. Of |a| >= 2^-10 the sum's upper half is a itself
// where the product is below 2^-66, less than a quarter of a's last place; its lower half is then
// the product, so that the sum of the halves below needs no TwoSum.
template <bool kIsPartTiny>
DoubleDouble SubtractPart(DoubleDouble rest, double turns, double part) {
  if constexpr (kIsPartTiny) {
    return FastTwoSum(rest.hi, -turns * part + rest.lo);
  } else {
    const DoubleDouble next = TwoSum(rest.hi, -turns * part);
    return FastTwoSum(next.hi, next.lo + rest.lo);
  }
}

// x must be finite.
Reduced Reduce(double x) {
  if (std::fabs(x) > kExactReduction) x = std::fmod(x, kManyTurns);
  // floor(position), which is a call where the processor's baseline has no instruction for it.
  const double position = x * kTwoOverPi + 0.5;
  const auto cut = static_cast<std::int32_t>(position);
  const std::int32_t number = cut - (position < cut ? 1 : 0);
  if (number == 0) return {{x, 0}, 0};
  const double turns = number;
  const auto& parts = kHalfPiParts;
  // Exact, since x and the product are within a factor of two of each other (Sterbenz).
  const double first = x - turns * parts[0];
  DoubleDouble rest = TwoSum(first, -turns * parts[1]);
  if (std::fabs(rest.hi) >= 0x1p-10 && std::fabs(turns) <= 4) {
    rest = SubtractPart<true>(rest, turns, parts[2]);
    rest = SubtractPart<true>(rest, turns, parts[3]);
  } else {
    rest = SubtractPart<false>(rest, turns, parts[2]);
    rest = SubtractPart<false>(rest, turns, parts[3]);
  }
  return {rest, static_cast<std::uint32_t>(number) & 3U};
}

// --- Sine and cosine of the reduced angle ---

constexpr double InverseFactorial(int n) {
  double factorial = 1;
  for (int i = 2; i <= n; ++i) factorial *= i;
  return 1 / factorial;
}

// Taylor series up to x^17.
DoubleDouble SinKernel(DoubleDouble x) {
  const double square = x.hi * x.hi;
  double sum = InverseFactorial(17);
  sum = -InverseFactorial(15) + square * sum;
  sum = InverseFactorial(13) + square * sum;
  sum = -InverseFactorial(11) + square * sum;
  sum = InverseFactorial(9) + square * sum;
  sum = -InverseFactorial(7) + square * sum;
  sum = InverseFactorial(5) + square * sum;
  sum = -InverseFactorial(3) + square * sum;
  // x.lo enters to first order, times the derivative: the cosine.
  return FastTwoSum(x.hi, x.hi * square * sum + (x.lo - 0.5 * square * x.lo));
}

// Taylor series up to x^18.
DoubleDouble CosKernel(DoubleDouble x) {
  const DoubleDouble exactSquare = TwoProduct(x.hi, x.hi);
  const double square = exactSquare.hi;
  double sum = -InverseFactorial(18);
  sum = InverseFactorial(16) + square * sum;
  sum = -InverseFactorial(14) + square * sum;
  sum = InverseFactorial(12) + square * sum;
  sum = -InverseFactorial(10) + square * sum;
  sum = InverseFactorial(8) + square * sum;
  sum = -InverseFactorial(6) + square * sum;
  sum = InverseFactorial(4) + square * sum;
  const DoubleDouble start = FastTwoSum(1, -0.5 * square);
  const double rest = square * square * sum - 0.5 * exactSquare.lo - x.hi * x.lo;
  return FastTwoSum(start.hi, start.lo + rest);
}

// The sine of a reduced angle plus `more` quarter turns.
DoubleDouble SinOfReduced(const Reduced& angle, std::uint32_t more) {
  const std::uint32_t quarter = (angle.quarter + more) & 3U;
  const DoubleDouble value = (quarter & 1U) == 0 ? SinKernel(angle.rest) : CosKernel(angle.rest);
  return quarter < 2 ? value : Negate(value);
}

// --- Inverse functions ---

constexpr int kAtanSteps = 64;

// atan(i / 64), each computed from the one before by atan a - atan b = atan((a - b) / (1 + a b));
// Gregory's series gives the difference.
constexpr auto kAtanTable = [] {
  std::array<DoubleDouble, kAtanSteps + 1> table{};
  for (int i = 1; i <= kAtanSteps; ++i) {
    const double divisor = kAtanSteps * kAtanSteps + i * (i - 1);
    const DoubleDouble z = Divide({static_cast<double>(kAtanSteps), 0}, {divisor, 0});
    const DoubleDouble square = Multiply(z, z);
    DoubleDouble sum = {};
    for (int n = 21; n >= 1; n -= 2) {
      sum = Add(Divide({1, 0}, {static_cast<double>(n), 0}), Negate(Multiply(sum, square)));
    }
    table[static_cast<std::size_t>(i)] =
        Add(table[static_cast<std::size_t>(i - 1)], Multiply(z, sum));
  }
  return table;
}();

// atan(y / x) for 0 <= y <= x, as atan c + atan((y - c x) / (x + c y)) with c near y / x.
DoubleDouble OctantAngle(DoubleDouble y, DoubleDouble x) {
  const double quotient = y.hi / x.hi;
  if (quotient < 0x1p-40) return {quotient, 0};
  const auto step = static_cast<std::int32_t>(quotient * kAtanSteps + 0.5);
  const DoubleDouble c = {static_cast<double>(step) / kAtanSteps, 0};
  const DoubleDouble t = Divide(Add(y, Negate(Multiply(c, x))), Add(x, Multiply(c, y)));
  // Gregory's series, for |t| <= 1 / 127.
  const double square = t.hi * t.hi;
  const double sum =
      -1.0 / 3 + square * (1.0 / 5 + square * (-1.0 / 7 + square * (1.0 / 9 - square / 11)));
  const DoubleDouble small = FastTwoSum(t.hi, t.lo + t.hi * square * sum);
  return Add(kAtanTable[static_cast<std::size_t>(step)], small);
}

// The angle from the x axis for x, y >= 0, not both 0.
DoubleDouble QuadrantAngle(DoubleDouble y, DoubleDouble x) {
  if (y.hi <= x.hi) return OctantAngle(y, x);
  return Add(kHalfPi, Negate(OctantAngle(x, y)));
}

// sqrt(1 - x^2) for |x| <= 1, refined by one Newton step with the exact residual.
DoubleDouble OtherSide(double x) {
  const DoubleDouble square = Multiply(TwoSum(1, -x), TwoSum(1, x));
  const double root = std::sqrt(square.hi);
  if (root == 0) return {};
  const DoubleDouble rest = Add(square, Negate(TwoProduct(root, root)));
  return FastTwoSum(root, rest.hi / (2 * root));
}

// The same for x, y >= 0 of any size; both may be 0 or infinite.
DoubleDouble AnyQuadrantAngle(double y, double x) {
  if (y == 0) return {};
  if (std::isinf(x)) return std::isinf(y) ? kQuarterPi : DoubleDouble{};
  if (std::isinf(y)) return kHalfPi;
  // Scaled so that products neither overflow nor underflow. A value far smaller than the other may
  // still vanish, but then enters no product.
  const double larger = x > y ? x : y;
  double scale = 1;
  if (larger > 0x1p500) scale = 0x1p-600;
  if (larger < 0x1p-400) scale = 0x1p600;
  if (y / x < 0x1p-40 || x / y < 0x1p-40) scale = 1;
  return QuadrantAngle({y * scale, 0}, {x * scale, 0});
}

}  // namespace

double Sin(double x) {
  if (!std::isfinite(x)) return kNan;
  if (std::fabs(x) < kTiny) return x;
  return SinOfReduced(Reduce(x), 0).hi;
}

double Cos(double x) {
  if (!std::isfinite(x)) return kNan;
  return SinOfReduced(Reduce(x), 1).hi;
}

double Tan(double x) {
  if (!std::isfinite(x)) return kNan;
  if (std::fabs(x) < kTiny) return x;
  const Reduced angle = Reduce(x);
  return Divide(SinOfReduced(angle, 0), SinOfReduced(angle, 1)).hi;
}

double Atan(double x) {
  if (std::isnan(x)) return kNan;
  if (std::fabs(x) < kTiny) return x;
  return std::copysign(AnyQuadrantAngle(std::fabs(x), 1).hi, x);
}

double Atan2(double y, double x) {
  if (std::isnan(x) || std::isnan(y)) return kNan;
  DoubleDouble angle = AnyQuadrantAngle(std::fabs(y), std::fabs(x));
  if (std::signbit(x)) angle = Add(kPi, Negate(angle));
  return std::copysign(angle.hi, y);
}

double Asin(double x) {
  const double size = std::fabs(x);
  if (std::isnan(x) || size > 1) return kNan;
  if (size < kTiny) return x;
  return std::copysign(QuadrantAngle({size, 0}, OtherSide(x)).hi, x);
}

double Acos(double x) {
  const double size = std::fabs(x);
  if (std::isnan(x) || size > 1) return kNan;
  const DoubleDouble angle = QuadrantAngle(OtherSide(x), {size, 0});
  return std::signbit(x) ? Add(kPi, Negate(angle)).hi : angle.hi;
}

}  // namespace vitrell::headless::pinned
