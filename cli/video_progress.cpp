// One line of text.
#include "cli/video_progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace vitrell::cli {
namespace {

constexpr int kBarWidth = 30;
// Before this an estimate would only jump about.
constexpr double kMinSeconds = 1.0;

std::string Bar(double fraction) {
  const int marks = static_cast<int>(fraction * kBarWidth);
  std::array<char, 16> percent{};
  std::snprintf(percent.data(), percent.size(), "] %3d %%  ", static_cast<int>(fraction * 100));
  return "[" + std::string(static_cast<std::size_t>(marks), '#') +
         std::string(static_cast<std::size_t>(kBarWidth - marks), '-') + percent.data();
}

}  // namespace

std::string FrameProgressLine(std::int64_t done, std::int64_t all, double elapsedSeconds) {
  const double rate = elapsedSeconds > 0 ? static_cast<double>(done) / elapsedSeconds : 0;
  std::array<char, 32> rateText{};
  std::snprintf(rateText.data(), rateText.size(), "  %.1f frames/s", rate);
  if (all <= 0) return "frame " + std::to_string(done) + rateText.data();
  // The header may tell fewer than there are.
  const double fraction = std::min(1.0, static_cast<double>(done) / static_cast<double>(all));
  std::string line = Bar(fraction) + "frame " + std::to_string(done) + " of " +
                     std::to_string(std::max(done, all)) + rateText.data();
  if (elapsedSeconds >= kMinSeconds && rate > 0 && done < all) {
    const double left = static_cast<double>(all - done) / rate;
    line += "  about " + std::to_string(static_cast<long>(std::ceil(left))) + " s left";
  }
  return line;
}

}  // namespace vitrell::cli
