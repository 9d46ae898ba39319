// The few signs that desktops' icon themes do not have, in the colours of the palette.
#ifndef VITRELL_PANEL_WIDGETS_ICONS_H_
#define VITRELL_PANEL_WIDGETS_ICONS_H_

#include <QIcon>
#include <QPalette>

namespace vitrell::panel {

// On: the control has keys.
QIcon StopwatchIcon(const QPalette& palette);
// A cross-hair.
QIcon PickIcon(const QPalette& palette);
// An arrow that turns back.
QIcon ResetIcon(const QPalette& palette);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_ICONS_H_
