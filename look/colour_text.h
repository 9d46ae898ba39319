// Colours as text.
#ifndef VITRELL_LOOK_COLOUR_TEXT_H_
#define VITRELL_LOOK_COLOUR_TEXT_H_

#include <string>
#include <string_view>

#include "look/control.h"

namespace vitrell::look {

// "#ff8800", "#f80", "orange" or "255,136,0". Throws ValueError.
ColourValue ParseColour(std::string_view text);

// "#ff8800".
std::string FormatColour(const ColourValue& colour);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_COLOUR_TEXT_H_
