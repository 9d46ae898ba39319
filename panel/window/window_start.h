// From the name of an effect to a window.
#ifndef VITRELL_PANEL_WINDOW_WINDOW_START_H_
#define VITRELL_PANEL_WINDOW_WINDOW_START_H_

#include <memory>

#include "panel/window/main_window.h"

namespace vitrell::panel {

// The window over the effect that the order names, which needs no module yet. An effect that is not
// there or fails at its set-up is told, and another one can be chosen; null if the user does not.
std::unique_ptr<MainWindow> StartWindow(WindowOrder order);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_WINDOW_START_H_
