// Keys as one line of text: "0=10; 50~=20; 100|=0".
#ifndef VITRELL_LOOK_ANIMATION_TEXT_H_
#define VITRELL_LOOK_ANIMATION_TEXT_H_

#include <string>
#include <string_view>

#include "look/animation.h"

namespace vitrell::look {

// Whether a text for the control holds keys rather than one value.
bool HoldsKeys(const Control& control, std::string_view text);

// Reads keys: TIME=VALUE, divided by ";". A mark in front of "=" tells how the value moves from
// this key to the next one: none straight, "~" smoothly, "|" not at all. Times are frames, seconds
// ("1.5s") or hours, minutes and seconds ("00:00:01.500"); with a minus they count back from the
// end, so that frame -1 is the last. Values are as ParseValue reads them. Throws ValueError with
// cause and remedy.
Keys ParseKeys(const Control& control, std::string_view text);

// Text that ParseKeys reads back as the same keys. Easing and paths have no such text: keys that
// have them are written as straight ones.
std::string FormatKeys(const Control& control, const Keys& keys);

// Whether FormatKeys loses nothing.
bool FitsText(const Keys& keys);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_ANIMATION_TEXT_H_
