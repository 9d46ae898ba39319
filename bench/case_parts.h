// The settings from which the stages' benchmark cases are assembled.
#ifndef VITRELL_BENCH_CASE_PARTS_H_
#define VITRELL_BENCH_CASE_PARTS_H_

#include <string>

#include "bench/cases.h"

namespace vitrell::bench {

// Choices of "lens.type".
inline constexpr double kNone = 1;
inline constexpr double kCircle = 2;
inline constexpr double kRectangle = 3;
inline constexpr double kTriangle = 5;
inline constexpr double kCustom = 6;

Settings Joined(Settings first, const Settings& second);

// No lens and no visible stage, then the given settings.
Settings AllOff(const Settings& more = {});

// Switches a stage on, by its name in paths, and sets its amount.
Settings Stage(const std::string& name, double amount, const std::string& control = "amount");

// One stage alone, without a lens.
Settings Alone(const std::string& stage, double amount);

Settings Lens(double type, double feather);

// A blur inside a circular lens, and one with that circle as its map.
Settings InCircle(const std::string& blur, double amount, double feather);
Settings Mapped(const std::string& blur, double amount, double feather);

BenchCase Plain(std::string name, std::string detail, Settings settings, Settings other = {});

BenchCase AlsoHuge(BenchCase benchCase);

// The pass with this index is measured, in a render that has `passes` passes.
BenchCase Pass(std::string name, std::string detail, Settings settings, int pass, int passes);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_CASE_PARTS_H_
