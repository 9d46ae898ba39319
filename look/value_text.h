// Values of controls as text: what users type and what listings show.
#ifndef VITRELL_LOOK_VALUE_TEXT_H_
#define VITRELL_LOOK_VALUE_TEXT_H_

#include <string>
#include <string_view>

#include "look/control.h"

namespace vitrell::look {

// Reads a value for the control. Numbers are in the control's own unit ("12.5", or "12.5%" where
// the unit is percent); switches are on or off; choices are given by text or number; points are
// "960,540" pixels or "50%,50%"; angles are degrees; colours "#ff8800", "#f80", "255,136,0" or a
// name of CSS; layers a file name or "none". Independent of the locale. Throws ValueError with the
// cause and the remedy, also for a number out of range, NaN and infinities.
Value ParseValue(const Control& control, std::string_view text);

// The checks of ParseValue for a number that needs no parsing.
double CheckedNumber(const Control& control, double number);

// Text that ParseValue reads back as the same value.
std::string FormatValue(const Control& control, const Value& value);

// What the control takes, in a few words: "0 to 400 %", "None | Circle".
std::string DescribeRange(const Control& control);

// The shortest text that reads back as the same double, with an exponent only where it would be
// longer than 20 characters: "100000", "1e308".
std::string FormatNumber(double number);

// The unit behind a number: " %", " degrees" or nothing.
std::string UnitSuffix(const Control& control);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_VALUE_TEXT_H_
