// Learning.
#include "panel/model/preview_budget.h"

#include <algorithm>

namespace vitrell::panel {
namespace {

// One render may have been disturbed: the budget follows in steps, and down quicker than up.
constexpr double kMostGrowth = 1.2;
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
