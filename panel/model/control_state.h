// All that a control holds: a value that stands still, or keys.
#ifndef VITRELL_PANEL_MODEL_CONTROL_STATE_H_
#define VITRELL_PANEL_MODEL_CONTROL_STATE_H_

#include "look/animation.h"
#include "look/control.h"

namespace vitrell::panel {

struct ControlState {
  look::Value value;
  look::Keys keys;  // empty: the value stands still

  bool operator==(const ControlState&) const = default;
};

// One control's part of an undo step.
struct ControlChange {
  int control = 0;
  ControlState before;
  ControlState after;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_CONTROL_STATE_H_
