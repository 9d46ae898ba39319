// Controls as MLT takes them, the library behind melt, Kdenlive and Shotcut.
#ifndef VITRELL_LOOK_MLT_TEXT_H_
#define VITRELL_LOOK_MLT_TEXT_H_

#include <string>

#include "look/animation.h"
#include "look/frei0r_mapping.h"
#include "look/settings.h"

namespace vitrell::look {

// The value of a parameter: "0.25", a switch as "1" or "0", a colour as "#ff8800". Of a control
// with keys an animation string, "0=0.25;50~=0.5;75|=0": every frame comes to the value that Curve
// has there. Keys that MLT reads in the same way stay keys. Others become one held value for each
// frame at which the value changes: eased curves and paths, times between two frames, and moving
// colours, whose channels MLT rounds down.
//
// A base of length 0 leaves the length open: times from the end stay such. The text has no blanks.
// Throws Failure (wrong usage) where it cannot be written: one held value for each frame needs the
// length if times count from the end, and may not be longer than an argument of a program.
std::string MltText(const Frei0rParameter& parameter, const Settings& settings,
                    const TimeBase& base);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_MLT_TEXT_H_
