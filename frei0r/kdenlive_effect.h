// The filter's controls as Kdenlive shows them: its description of an effect, an XML file.
#ifndef VITRELL_FREI0R_KDENLIVE_EFFECT_H_
#define VITRELL_FREI0R_KDENLIVE_EFFECT_H_

#include <string>

#include "look/control.h"

namespace vitrell::frei0r {

// What belongs into kdenlive/effects/frei0r_vitrell.xml. Every parameter of the filter is there, in
// the panel's order and with its defaults, named by group and label. Kdenlive multiplies a number
// before it shows it and adds nothing, so that values count up from the slider's lower end: where
// this is not 0 a comment tells which number means what. `threads` is held at 1: MLT would give the
// effect slices of a frame.
std::string KdenliveEffect(const look::Panel& panel);

}  // namespace vitrell::frei0r

#endif  // VITRELL_FREI0R_KDENLIVE_EFFECT_H_
