// Which controls a hand is at.
#ifndef VITRELL_PANEL_MODEL_CONTROL_WATCH_H_
#define VITRELL_PANEL_MODEL_CONTROL_WATCH_H_

#include <set>
#include <vector>

#include "look/settings.h"

namespace vitrell::panel {

class ControlWatch {
 public:
  // Whether these settings differ from those seen before in a control that was not being turned.
  bool SeesOther(const look::Settings& settings);

 private:
  std::vector<look::Value> seen_;
  std::set<std::size_t> turned_;  // positions in the panel
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_CONTROL_WATCH_H_
