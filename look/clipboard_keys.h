// Keys as the host puts them on the clipboard and users paste them into a text file.
#ifndef VITRELL_LOOK_CLIPBOARD_KEYS_H_
#define VITRELL_LOOK_CLIPBOARD_KEYS_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "look/animation.h"

namespace vitrell::look {

struct ClipboardKeys {
  double framesPerSecond = 0;  // of the composition that they were copied from
  double sourceWidth = 0;      // of the layer in pixels, for which positions were chosen
  double sourceHeight = 0;
  std::vector<std::pair<const Control*, Keys>> keys;
  std::vector<std::string> unmatched;  // properties that are no control of the panel
};

// Reads the text: a first line, a header with units per second and the source's size, a block for
// each property and a last line, with tabs between fields. Times are frames. The form knows no
// easing, so that all keys are straight, those of choices and switches holding. A property belongs
// to the control with its label; where several have it, to the one with its number behind "#".
// Properties of anything but the effect of this name are unmatched. Throws ValueError for a text of
// another form and for values that the control does not take.
ClipboardKeys ReadClipboardKeys(const Panel& panel, std::string_view effectName,
                                std::string_view text);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_CLIPBOARD_KEYS_H_
