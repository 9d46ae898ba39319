// How a number is shown, read and stepped.
#ifndef VITRELL_PANEL_WIDGETS_NUMBER_STYLE_H_
#define VITRELL_PANEL_WIDGETS_NUMBER_STYLE_H_

#include <QString>
#include <functional>

#include "look/control.h"

namespace vitrell::panel {

struct NumberStyle {
  double minimum = 0;
  double maximum = 0;
  double step = 1;  // a power of ten
  std::function<QString(double)> format;
  // Throws look::ValueError for what is no number within the range.
  std::function<double(const QString&)> parse;
};

// The greatest power of ten of which a hundred fit into the range: a drag across a slider's width
// then covers the slider.
double StepFor(double range);

// `number` on the grid that a fine step needs, a tenth of `step`. Keeps sums of steps free of the
// digits that 0.1 + 0.2 leaves.
double OnGrid(double number, double step);

// With at most four decimals.
QString ShortNumber(double number);

// Of a number with its unit, or of an angle.
NumberStyle StyleOf(const look::Control& control);

// Half a position, in its own unit. Text with the other unit is converted by the length of the
// picture's side, and refused where that is 0.
NumberStyle CoordinateStyle(const look::Control& control, bool percent, double pictureSide);

// Whole turns and degrees: "2x +30°"; the turns are left out when there are none.
QString FormatAngle(double degrees);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_NUMBER_STYLE_H_
