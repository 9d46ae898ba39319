// Settings that nobody would choose.
#ifndef VITRELL_TESTS_PANEL_RANDOM_LOOK_H_
#define VITRELL_TESTS_PANEL_RANDOM_LOOK_H_

#include "look/control.h"
#include "whole/dice.h"

namespace vitrell::panel {

// Anything that the control takes; of a slider anything that it shows. A layer stays empty.
look::Value RandomValue(whole::Dice& dice, const look::Control& control);

// The position of a control in the panel.
int PositionOf(const look::Panel& panel, const char* name);

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_RANDOM_LOOK_H_
