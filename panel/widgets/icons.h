// The few signs that desktops' icon themes do not have, in the colours of the application's
// palette.
#ifndef VITRELL_PANEL_WIDGETS_ICONS_H_
#define VITRELL_PANEL_WIDGETS_ICONS_H_

#include <QIcon>

namespace vitrell::panel {

// On: the control has keys.
QIcon StopwatchIcon();
// A cross-hair.
QIcon PickIcon();
// An arrow that turns back.
QIcon ResetIcon();

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_ICONS_H_
