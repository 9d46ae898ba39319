// The icon of the program's windows.
#ifndef VITRELL_PANEL_WINDOW_PROGRAM_ICON_H_
#define VITRELL_PANEL_WINDOW_PROGRAM_ICON_H_

#include <QIcon>

namespace vitrell::panel {

// The same drawing as packaging/linux/vitrell-panel.svg, which Qt reads only with a module more.
QIcon ProgramIcon();

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_PROGRAM_ICON_H_
