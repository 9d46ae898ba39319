// Learning.
#include "panel/model/preview_budget.h"

#include <algorithm>
#include <array>

namespace vitrell::panel {
namespace {

// Few sizes, so that the smaller copies of a frame are made once.
constexpr std::array kDivisors = {1, 2, 3, 4, 6, 8, 12, 16, 24, 32};
// One render may have been disturbed: the budget follows in steps.
constexpr double kMostGrowth = 1.5;
constexpr double kMostShrinking = 0.3;
constexpr double kFewestPixels = 64.0 * 36.0;

}  // namespace

int PreviewBudget::DivisorFor(std::int64_t pixels) const {
  for (const int divisor : kDivisors) {
    if (static_cast<double>(pixels) / (divisor * divisor) <= pixels_) return divisor;
  }
  return kDivisors.back();
}

void PreviewBudget::Learn(std::int64_t pixels, double seconds, bool finished) {
  const double fitting = static_cast<double>(pixels) * kTargetSeconds / std::max(seconds, 1e-6);
  if (!finished && fitting > pixels_) return;
  const double step = std::clamp(fitting / pixels_, kMostShrinking, kMostGrowth);
  pixels_ = std::max(kFewestPixels, pixels_ * step);
}

}  // namespace vitrell::panel
