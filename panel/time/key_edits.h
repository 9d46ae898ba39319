// What can be done to the keys of one control. Keys are named by the frames that they stand at;
// results are in order of time and have one key a frame.
#ifndef VITRELL_PANEL_TIME_KEY_EDITS_H_
#define VITRELL_PANEL_TIME_KEY_EDITS_H_

#include <set>

#include "look/animation.h"

namespace vitrell::panel {

using KeyFrames = std::set<double>;

KeyFrames FramesOf(const look::Keys& keys, const look::TimeBase& base);

// Moves by whole or parts of frames, as far as all moved keys stay in the clip. A moved key
// replaces one that stands where it arrives. Times keep their form: frames or seconds, from the
// start or the end.
look::Keys MovedKeys(const look::Keys& keys, const KeyFrames& frames, double by,
                     const look::TimeBase& base);
// The same, leaving the keys where they are, too.
look::Keys CopiedKeys(const look::Keys& keys, const KeyFrames& frames, double by,
                      const look::TimeBase& base);
// How far MovedKeys moves.
double ReachOf(const KeyFrames& frames, double by, const look::TimeBase& base);

// May be empty: then the control moves no more.
look::Keys RemainingKeys(const look::Keys& keys, const KeyFrames& frames,
                         const look::TimeBase& base);

// How the value leaves these keys; eased ones begin and end slowly. Choices and switches only hold.
look::Keys StretchedKeys(const look::Control& control, const look::Keys& keys,
                         const KeyFrames& frames, look::Stretch stretch,
                         const look::TimeBase& base);

// With the value at the frame: in the key there, or in a new one, which is left as the one before
// it.
look::Keys KeysWithValue(const look::Control& control, const look::Keys& keys, double frame,
                         const look::Value& value, const look::TimeBase& base);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_TIME_KEY_EDITS_H_
