// Pinned maths: as near as the C library's in long double, and the same bits everywhere.
#include "headless/pinned_maths.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

#include "headless/host_maths.h"
#include "whole/dice.h"

namespace vitrell::headless {
namespace {

using whole::Dice;

constexpr std::uint64_t kSeed = 20260601;
constexpr int kArguments = 200000;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// Where long double is no wider than double the reference is itself rounded.
constexpr double kAllowedUlps = std::numeric_limits<long double>::digits > 53 ? 0.9 : 1.4;

// The error in units in the last place of the exact value.
double UlpsBetween(double result, long double exact) {
  const auto rounded = static_cast<double>(exact);
  if (std::isnan(rounded) || std::isinf(rounded)) {
    const bool same = std::isnan(rounded) ? std::isnan(result) : result == rounded;
    return same ? 0 : kInfinity;
  }
  int exponent = 0;
  std::frexp(rounded, &exponent);
  const int unit = exponent < -1021 ? -1074 : exponent - 53;
  return static_cast<double>(
      std::fabs(std::ldexp(static_cast<long double>(result) - exact, -unit)));
}

struct Arguments {
  double x = 0;
  double y = 0;
};

using Picker = std::function<Arguments(Dice&)>;

// A number with any exponent from low to high; with bothSigns of either sign.
double AnySize(Dice& dice, int low, int high, bool bothSigns) {
  const double mantissa = dice.Real(1, 2);
  const double size = std::ldexp(mantissa, dice.Between(low, high));
  return bothSigns && dice.Chance(50) ? -size : size;
}

void ExpectNear(const char* name, const std::function<double(Arguments)>& function,
                const std::function<long double(Arguments)>& reference, const Picker& pick) {
  Dice dice(kSeed);
  double worst = 0;
  Arguments where;
  for (int i = 0; i < kArguments; ++i) {
    const Arguments arguments = pick(dice);
    const double ulps = UlpsBetween(function(arguments), reference(arguments));
    if (ulps > worst) {
      worst = ulps;
      where = arguments;
    }
  }
  std::cout << name << ": seed " << kSeed << ", at most " << worst << " ulp, at " << std::hexfloat
            << where.x << " " << where.y << std::defaultfloat << std::endl;
  EXPECT_LE(worst, kAllowedUlps) << name;
  EXPECT_GT(worst, 0.25) << name << ": rounding alone reaches half an ulp, these were too easy";
}

void ExpectNear(const char* name, double (*function)(double), long double (*reference)(long double),
                const std::function<double(Dice&)>& pick) {
  ExpectNear(
      name, [=](Arguments a) { return function(a.x); },
      [=](Arguments a) { return reference(static_cast<long double>(a.x)); },
      [&](Dice& dice) {
        return Arguments{pick(dice), 0};
      });
}

void ExpectNear(const char* name, double (*function)(double, double),
                long double (*reference)(long double, long double), const Picker& pick) {
  ExpectNear(
      name, [=](Arguments a) { return function(a.x, a.y); },
      [=](Arguments a) {
        return reference(static_cast<long double>(a.x), static_cast<long double>(a.y));
      },
      pick);
}

// A double near a multiple of a quarter turn, where the reduction cancels most.
double NearQuarterTurn(Dice& dice) {
  return dice.Between(-600000, 600000) * 1.5707963267948966 + dice.Real(-1e-9, 1e-9);
}

TEST(PinnedMathsTest, SineCosineTangent) {
  const auto functions = {std::tuple("sin", &pinned::Sin, &::sinl),
                          std::tuple("cos", &pinned::Cos, &::cosl),
                          std::tuple("tan", &pinned::Tan, &::tanl)};
  for (const auto& [name, function, reference] : functions) {
    ExpectNear(name, function, reference, [](Dice& dice) { return dice.Real(-7, 7); });
    ExpectNear(name, function, reference, [](Dice& dice) { return dice.Real(-0x1p20, 0x1p20); });
    ExpectNear(name, function, reference, NearQuarterTurn);
  }
  const auto small = [](Dice& dice) { return AnySize(dice, -26, 0, true); };
  ExpectNear("sin", pinned::Sin, ::sinl, small);
  ExpectNear("tan", pinned::Tan, ::tanl, small);
}

TEST(PinnedMathsTest, HugeAnglesStayNearAndBounded) {
  Dice dice(kSeed);
  for (int i = 0; i < 10000; ++i) {
    const double x = AnySize(dice, 20, 50, true);
    EXPECT_NEAR(pinned::Sin(x), static_cast<double>(::sinl(static_cast<long double>(x))),
                1e-15 + std::fabs(x) * 0x1p-68);
    const double huge = AnySize(dice, 60, 1023, true);
    EXPECT_LE(std::fabs(pinned::Sin(huge)), 1);
    EXPECT_LE(std::fabs(pinned::Cos(huge)), 1);
  }
}

TEST(PinnedMathsTest, InverseFunctions) {
  const auto unit = [](Dice& dice) { return dice.Real(-1, 1); };
  const auto nearOne = [](Dice& dice) {
    const double x = 1 - AnySize(dice, -52, -2, false);
    return dice.Chance(50) ? x : -x;
  };
  const auto anySize = [](Dice& dice) { return AnySize(dice, -26, 60, true); };
  ExpectNear("asin", pinned::Asin, ::asinl, unit);
  ExpectNear("asin", pinned::Asin, ::asinl, nearOne);
  ExpectNear("asin", pinned::Asin, ::asinl,
             [](Dice& dice) { return AnySize(dice, -26, -1, true); });
  ExpectNear("acos", pinned::Acos, ::acosl, unit);
  ExpectNear("acos", pinned::Acos, ::acosl, nearOne);
  ExpectNear("atan", pinned::Atan, ::atanl, [](Dice& dice) { return dice.Real(-3, 3); });
  ExpectNear("atan", pinned::Atan, ::atanl, anySize);
  const Picker alike = [](Dice& dice) {
    return Arguments{dice.Real(-100, 100), dice.Real(-100, 100)};
  };
  const Picker any = [](Dice& dice) {
    return Arguments{AnySize(dice, -1000, 1000, true), AnySize(dice, -1000, 1000, true)};
  };
  const Picker edges = [](Dice& dice) {
    const int size = dice.Chance(50) ? -1070 : 1020;
    return Arguments{AnySize(dice, size, size + 3, true), AnySize(dice, size, size + 3, true)};
  };
  for (const Picker& pick : {alike, any, edges}) {
    ExpectNear("atan2", pinned::Atan2, ::atan2l, pick);
  }
}

TEST(PinnedMathsTest, ExponentialAndLogarithms) {
  ExpectNear("exp", pinned::Exp, ::expl, [](Dice& dice) { return dice.Real(-745, 709.7); });
  ExpectNear("exp", pinned::Exp, ::expl, [](Dice& dice) { return dice.Real(-2, 2); });
  const auto functions = {std::tuple("log", &pinned::Log, &::logl),
                          std::tuple("log10", &pinned::Log10, &::log10l)};
  for (const auto& [name, function, reference] : functions) {
    ExpectNear(name, function, reference,
               [](Dice& dice) { return AnySize(dice, -1074, 1023, false); });
    ExpectNear(name, function, reference, [](Dice& dice) { return dice.Real(0.5, 2); });
    ExpectNear(name, function, reference,
               [](Dice& dice) { return 1 + AnySize(dice, -40, -2, true); });
  }
  EXPECT_EQ(pinned::Log10(1000), 3);
  EXPECT_EQ(pinned::Log10(1e22), 22);
}

TEST(PinnedMathsTest, PowerAndHypotenuse) {
  const Picker gains = [](Dice& dice) { return Arguments{dice.Real(0, 1), dice.Real(0.1, 10)}; };
  const Picker tens = [](Dice& dice) { return Arguments{10, dice.Real(-300, 300)}; };
  // Results over the whole range, also below the smallest normal number.
  const Picker wide = [](Dice& dice) {
    const double x = AnySize(dice, -1070, 1020, false);
    return Arguments{x, dice.Real(-744, 709) / static_cast<double>(::logl(x))};
  };
  const Picker nearOne = [](Dice& dice) {
    return Arguments{1 + AnySize(dice, -30, -3, true), AnySize(dice, 0, 12, true)};
  };
  for (const Picker& pick : {gains, tens, wide, nearOne}) {
    ExpectNear("pow", pinned::Pow, ::powl, pick);
  }
  const Picker alike = [](Dice& dice) {
    return Arguments{dice.Real(-3000, 3000), dice.Real(-3000, 3000)};
  };
  const Picker any = [](Dice& dice) {
    const int size = dice.Between(-1050, 1010);
    return Arguments{AnySize(dice, size, size + 12, true), AnySize(dice, size, size + 12, true)};
  };
  ExpectNear("hypot", pinned::Hypot, ::hypotl, alike);
  ExpectNear("hypot", pinned::Hypot, ::hypotl, any);
}

TEST(PinnedMathsTest, FirstPowerIsExact) {
  for (int v = 0; v <= 65535; ++v) {
    EXPECT_EQ(pinned::Pow(v / 255.0, 1), v / 255.0);
    EXPECT_EQ(pinned::Pow(v / 32768.0, 1), v / 32768.0);
  }
  Dice dice(kSeed);
  for (int i = 0; i < kArguments; ++i) {
    const double x = dice.Real(0, 2);
    EXPECT_EQ(pinned::Pow(x, 1), x);
    const double any = AnySize(dice, -1080, 1023, false);
    EXPECT_EQ(pinned::Pow(any, 1), any);
  }
  EXPECT_EQ(pinned::Pow(10, 0), 1);
  EXPECT_EQ(pinned::Pow(10, -1), 0.1);
  EXPECT_EQ(pinned::Pow(10, 2), 100);
  EXPECT_EQ(pinned::Pow(0, 0.5), 0);
}

// Annex F of C99 specifies these results to the bit.
TEST(PinnedMathsTest, SpecialValuesAreThoseOfTheCLibrary) {
  const double big = std::numeric_limits<double>::max();
  const double least = std::numeric_limits<double>::denorm_min();
  std::vector<double> values;
  for (const double size :
       {0.0, 0.5, 1.0, 2.0, 3.0, 2.5, 1e300, big, least, 9007199254740993.0, kInfinity, kNan}) {
    values.push_back(size);
    values.push_back(-size);
  }
  const auto same = [](double a, double b) {
    return std::isnan(b) ? std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(kNan)
                         : std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
  };
  for (const double x : values) {
    for (const double y : values) {
      EXPECT_TRUE(same(pinned::Pow(x, y), std::pow(x, y))) << "pow " << x << " " << y;
      EXPECT_TRUE(same(pinned::Atan2(x, y), std::atan2(x, y))) << "atan2 " << x << " " << y;
      EXPECT_TRUE(same(pinned::Hypot(x, y), std::hypot(x, y))) << "hypot " << x << " " << y;
    }
    EXPECT_TRUE(same(pinned::Exp(x), std::exp(x))) << "exp " << x;
    EXPECT_TRUE(same(pinned::Log(x), std::log(x))) << "log " << x;
    EXPECT_TRUE(same(pinned::Log10(x), std::log10(x))) << "log10 " << x;
    EXPECT_TRUE(same(pinned::Atan(x), std::atan(x))) << "atan " << x;
    EXPECT_TRUE(same(pinned::Asin(x), std::asin(x))) << "asin " << x;
    EXPECT_TRUE(same(pinned::Acos(x), std::acos(x))) << "acos " << x;
  }
  for (const double x : {0.0, -0.0, kInfinity, -kInfinity, kNan, least, -least, 0.5, 1.0, -1.0}) {
    EXPECT_TRUE(same(pinned::Sin(x), std::sin(x))) << "sin " << x;
    EXPECT_TRUE(same(pinned::Cos(x), std::cos(x))) << "cos " << x;
    EXPECT_TRUE(same(pinned::Tan(x), std::tan(x))) << "tan " << x;
  }
}

TEST(PinnedMathsTest, HostTableHoldsThem) {
  EXPECT_EQ(HostMaths().sin, &pinned::Sin);
  EXPECT_EQ(HostMaths().cos, &pinned::Cos);
  EXPECT_EQ(HostMaths().tan, &pinned::Tan);
  EXPECT_EQ(HostMaths().atan, &pinned::Atan);
  EXPECT_EQ(HostMaths().atan2, &pinned::Atan2);
  EXPECT_EQ(HostMaths().asin, &pinned::Asin);
  EXPECT_EQ(HostMaths().acos, &pinned::Acos);
  EXPECT_EQ(HostMaths().exp, &pinned::Exp);
  EXPECT_EQ(HostMaths().log, &pinned::Log);
  EXPECT_EQ(HostMaths().log10, &pinned::Log10);
  EXPECT_EQ(HostMaths().pow, &pinned::Pow);
  EXPECT_EQ(HostMaths().hypot, &pinned::Hypot);
}

// FNV-1a over the bits of results.
class ResultHash {
 public:
  void Add(double result) {
    const auto bits = std::bit_cast<std::uint64_t>(result);
    for (unsigned shift = 0; shift < 64; shift += 8) {
      value_ = (value_ ^ ((bits >> shift) & 0xFFU)) * 0x100000001B3ULL;
    }
  }
  std::uint64_t Value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325ULL;
};

// What the numbers should be, the tests above judge; this one only holds them in place. The literal
// is the same for every processor, compiler and C library, and changes with a formula alone.
TEST(PinnedMathsTest, BitsAreTheSameEverywhere) {
  Dice dice(kSeed);
  ResultHash hash;
  for (int i = 0; i < 50000; ++i) {
    const double angle = AnySize(dice, -30, 40, true);
    const double unit = dice.Real(-1, 1);
    const double positive = AnySize(dice, -1074, 1023, false);
    const double gain = AnySize(dice, -8, 8, true);
    for (double (*function)(double) : {pinned::Sin, pinned::Cos, pinned::Tan, pinned::Atan}) {
      hash.Add(function(angle));
    }
    hash.Add(pinned::Asin(unit));
    hash.Add(pinned::Acos(unit));
    hash.Add(pinned::Exp(gain));
    hash.Add(pinned::Log(positive));
    hash.Add(pinned::Log10(positive));
    hash.Add(pinned::Pow(positive, gain));
    hash.Add(pinned::Pow(unit, gain));
    hash.Add(pinned::Pow(std::fabs(unit), gain));
    hash.Add(pinned::Atan2(angle, unit));
    hash.Add(pinned::Hypot(angle, gain));
  }
  std::cout << "hash of 700000 results " << std::hex << hash.Value() << std::dec << std::endl;
  EXPECT_EQ(hash.Value(), 0xEC10581B926B2CAEULL);
}

// The same around whole quarter turns, where the reduction cancels and takes one of two ways: the
// distances go from far below to above the 2^-10 that parts them. The literal was recorded from a
// reduction that knew only the longer way.
TEST(PinnedMathsTest, BitsNearQuarterTurnsAreTheSameEverywhere) {
  Dice dice(kSeed);
  ResultHash hash;
  for (int i = 0; i < 50000; ++i) {
    const double turns = dice.Between(-6, 6) * 1.5707963267948966;
    const double angle = turns + AnySize(dice, -40, -1, true);
    const double side = dice.Chance(50) ? 0x1p-10 : -0x1p-10;
    const double limit = turns + side + dice.Between(-9, 9) * 0x1p-52;
    for (const double x : {angle, limit}) {
      hash.Add(pinned::Sin(x));
      hash.Add(pinned::Cos(x));
      hash.Add(pinned::Tan(x));
    }
  }
  std::cout << "hash of 300000 results " << std::hex << hash.Value() << std::dec << std::endl;
  EXPECT_EQ(hash.Value(), 0x5C61E4357067CBEBULL);
}

}  // namespace
}  // namespace vitrell::headless
