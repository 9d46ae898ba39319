// How small a frame has to be so that it is there while the hand still moves.
#ifndef VITRELL_PANEL_MODEL_PREVIEW_BUDGET_H_
#define VITRELL_PANEL_MODEL_PREVIEW_BUDGET_H_

#include <array>
#include <chrono>
#include <cstdint>

namespace vitrell::panel {

// Learns from every render how many pixels fit into kTargetSeconds. What a pixel costs depends on
// the settings, and changes while they do.
class PreviewBudget {
 public:
  // Painting the view and a disturbance now and then have to fit into 50 ms beside it.
  static constexpr double kTargetSeconds = 0.02;
  // What takes longer is given up for a much smaller frame, which has to fit into the rest.
  static constexpr std::chrono::milliseconds kMostTime{26};
  // Few sizes, so that the smaller copies of a frame are made once.
  static constexpr std::array kDivisors = {1, 2, 3, 4, 6, 8, 12, 16, 24, 32};

  // Width and height of the frame are divided by this; 1: the frame itself is quick enough.
  int DivisorFor(std::int64_t pixels) const;
  // What rendering so many pixels took; it would have been longer, if it was not finished.
  void Learn(std::int64_t pixels, double seconds, bool finished);
  // Something else is changed from now on: what a pixel costs is no longer known.
  void Forget();

 private:
  double pixels_ = 640.0 * 360.0;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_PREVIEW_BUDGET_H_
