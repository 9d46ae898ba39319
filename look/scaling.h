// Lengths in pixels, which belong to the width of a picture.
#ifndef VITRELL_LOOK_SCALING_H_
#define VITRELL_LOOK_SCALING_H_

#include "look/animation.h"
#include "look/control.h"

namespace vitrell::look {

// Whether the value is such a length: a radius other than 0, or a position that is not in percent.
bool HasPixels(const Control& control, const Value& value);

// Multiplies a value that is one by the factor. Returns whether it would have left its range and
// got its end.
bool ScaleValue(const Control& control, double factor, Value& value);
// The same for a key, together with its path.
bool ScaleKey(const Control& control, double factor, Key& key);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_SCALING_H_
