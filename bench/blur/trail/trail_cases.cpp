// The measured cases of the trail.
#include <string>
#include <utility>

#include "bench/case_parts.h"
#include "bench/stage_cases.h"

namespace vitrell::bench {
namespace {

BenchCase Trail(std::string detail, double amount) {
  BenchCase result = Plain("Trail", std::move(detail), Alone("trail", amount));
  result.oneThreadOnly = true;
  return result;
}

}  // namespace

std::vector<BenchCase> TrailCases() { return {Trail("30", 30), Trail("100", 100)}; }

}  // namespace vitrell::bench
