// Keys as JSON, in the form of Lottie's animated properties:
//   {"a": 1, "k": [{"t": 0, "s": [480, 540], "o": {"x": [0.33], "y": [0]},
//                   "i": {"x": [0.67], "y": [1]}, "to": [10, 0], "ti": [0, 20]}, {"t": 25, ...}]}
#ifndef VITRELL_LOOK_ANIMATION_JSON_H_
#define VITRELL_LOOK_ANIMATION_JSON_H_

#include <nlohmann/json_fwd.hpp>

#include "look/animation.h"

namespace vitrell::look {

// Reads the keys of an object. "t" is the key's frame, "s" its value: a number or a list of
// numbers, for colours of red, green and blue from 0 to 1 (a fourth is left out), for positions of
// pixels, for choices and switches one number. "o" and "i" are the easing from this key to the
// next, as the control points of a curve over time (see CubicEasing), "to" and "ti" the tangents of
// a position's path, "h": 1 holds the value. A value that is missing is the "e" of the key before.
// An object with "a": 0 is a single key at frame 0. Throws ValueError.
Keys KeysFromJson(const Control& control, const nlohmann::ordered_json& object);

// The object that KeysFromJson reads back as the same keys. Smooth stretches have no such form.
nlohmann::ordered_json JsonFromKeys(const Keys& keys);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_ANIMATION_JSON_H_
