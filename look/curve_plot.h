// The curves of values that move, as a drawing.
#ifndef VITRELL_LOOK_CURVE_PLOT_H_
#define VITRELL_LOOK_CURVE_PLOT_H_

#include <string>

#include "look/settings.h"

namespace vitrell::look {

// The first and the last frame that any key stands at, frame 0 included. {0, 0} without keys.
struct FrameRange {
  double first = 0;
  double last = 0;
};
FrameRange RangeOfKeys(const Settings& settings, const TimeBase& base);

// An SVG document with a chart for each control that moves, over the frames of the range: one line
// for a number, an angle, a choice or a switch, two for a position, three for a colour.
std::string PlotCurves(const Settings& settings, const TimeBase& base, const FrameRange& range);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_CURVE_PLOT_H_
