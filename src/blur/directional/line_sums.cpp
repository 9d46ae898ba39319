// The directional blur's sums for many neighbouring pixels at once, one pixel per vector lane.
#include "blur/directional/line_sums.h"

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#define VITRELL_LANES_SOURCE "blur/directional/line_sums.inc"
#define VITRELL_LANES_AVX512 1
#include "simd/for_each_target.inc"

namespace vitrell {
namespace {

constexpr LaneEngines<LineEngine> kEngines = VITRELL_LANE_ENGINES(kEngine);

constexpr int kShallowValues = 256;

// How many floats below and above the nearest low part are tried.
constexpr int kTries = 16;

// Keeps the upper 16 bits of the significand, so that the product with an 8-bit value is exact.
float UpperPart(float weight) {
  return std::bit_cast<float>(std::bit_cast<std::uint32_t>(weight) & 0xFFFFFF00U);
}

bool IsExactSplit(double weight, float high, float low) {
  for (int value = 0; value < kShallowValues; ++value) {
    const auto shallow = static_cast<float>(value);
    const float split = shallow * high + shallow * low;
    if (split != static_cast<float>(value * weight)) {
      return false;
    }
  }
  return true;
}

}  // namespace

template <>
const LaneEngines<LineEngine>& EnginesOf<LineEngine>() {
  return kEngines;
}

bool SplitWeight(LineSumTap* tap) {
  tap->high = UpperPart(static_cast<float>(tap->weight));
  const auto nearest = static_cast<float>(tap->weight - tap->high);
  float below = nearest;
  float above = nearest;
  for (int i = 0; i < kTries; ++i) {
    for (const float low : {below, above}) {
      if (IsExactSplit(tap->weight, tap->high, low)) {
        tap->low = low;
        return true;
      }
    }
    below = std::nextafterf(below, -1.0f);
    above = std::nextafterf(above, 1.0f);
  }
  return false;
}

}  // namespace vitrell
