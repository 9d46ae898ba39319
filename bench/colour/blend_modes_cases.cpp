// The measured cases of the final blend.
#include <string>
#include <utility>

#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {
namespace {

// Choices of "mode".
constexpr double kNormal = 1;
constexpr double kAdd = 2;
constexpr double kScreen = 3;
constexpr double kMultiply = 4;

// Lightness makes the front differ from the layer it is blended with.
BenchCase Blend(std::string detail, double mode, double intensity) {
  return Pass("Blend", std::move(detail),
              Joined(Alone("lightness", 40), {{"mode", mode}, {"intensity", intensity}}), 1, 2);
}

}  // namespace

std::vector<BenchCase> BlendCases() {
  return {
      Blend("normal-100", kNormal, 100),
      Blend("normal-70", kNormal, 70),
      Blend("add-70", kAdd, 70),
      Blend("screen-70", kScreen, 70),
      Blend("multiply-100", kMultiply, 100),
      Blend("multiply-70", kMultiply, 70),
  };
}

}  // namespace vitrell::bench
