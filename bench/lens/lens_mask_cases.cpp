// The measured cases of the lens mask.
#include <string>
#include <utility>

#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {
namespace {

BenchCase Mask(std::string detail, double type) {
  BenchCase result = Plain("LensMask", std::move(detail), AllOff(Lens(type, 50)));
  result.mask = true;
  result.customLayer = type == kCustom;
  return result;
}

}  // namespace

std::vector<BenchCase> LensMaskCases() {
  return {Mask("circle", kCircle), Mask("rectangle", kRectangle), Mask("triangle", kTriangle),
          Mask("custom", kCustom)};
}

}  // namespace vitrell::bench
