// Where frames lie along a time line.
#ifndef VITRELL_PANEL_TIME_TIME_SCALE_H_
#define VITRELL_PANEL_TIME_TIME_SCALE_H_

#include <algorithm>
#include <cmath>

namespace vitrell::panel {

// The names of controls stand left of all tracks.
constexpr int kTrackLabelWidth = 180;
// Keys of the last frame are seen whole.
constexpr int kTrackMargin = 12;
// As near as this a press takes a key, in pixels.
constexpr double kGrabRadius = 8;

struct TimeScale {
  int frames = 1;
  double left = kTrackLabelWidth + kTrackMargin;
  double width = 1;  // from the first to the last frame

  static TimeScale For(int frames, int widgetWidth) {
    const double left = kTrackLabelWidth + kTrackMargin;
    return {frames, left, std::max(1.0, widgetWidth - left - kTrackMargin)};
  }
  double PixelsPerFrame() const { return width / std::max(1, frames - 1); }
  double XOf(double frame) const { return left + frame * PixelsPerFrame(); }
  double FrameAt(double x) const { return (x - left) / PixelsPerFrame(); }
  int NearestFrame(double x) const {
    return static_cast<int>(std::clamp(std::round(FrameAt(x)), 0.0, frames - 1.0));
  }
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_TIME_TIME_SCALE_H_
