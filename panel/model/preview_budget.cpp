// Learning.
#include "panel/model/preview_budget.h"

#include <algorithm>

namespace vitrell::panel {
namespace {

// One render may have been disturbed: the budget follows in steps, and down quicker than up.
constexpr double kMostGrowth = 1.3;
constexpr double kMostShrinking = 0.12;
// A stage that is turned on costs as much as several others.
constexpr double kShareOfUnknown = 0.25;
// What was given up may have been far from its end.
constexpr double kShareOfGivenUp = 0.2;
constexpr double kFewestPixels = 64.0 * 36.0;
constexpr double kFewestOfUnknown = 160.0 * 90.0;

}  // namespace

int PreviewBudget::DivisorFor(std::int64_t pixels) const {
  for (const int divisor : kDivisors) {
    if (static_cast<double>(pixels) / (divisor * divisor) <= pixels_) return divisor;
  }
  return kDivisors.back();
}

void PreviewBudget::Learn(std::int64_t pixels, double seconds, bool finished) {
  double fitting = static_cast<double>(pixels) * kTargetSeconds / std::max(seconds, 1e-6);
  if (!finished && fitting > pixels_) return;
  if (!finished) fitting *= kShareOfGivenUp;
  const double step = std::clamp(fitting / pixels_, kMostShrinking, kMostGrowth);
  pixels_ = std::max(kFewestPixels, pixels_ * step);
}

void PreviewBudget::Forget() {
  pixels_ = std::max(std::min(pixels_, kFewestOfUnknown), pixels_ * kShareOfUnknown);
}

}  // namespace vitrell::panel
