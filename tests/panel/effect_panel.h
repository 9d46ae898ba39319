// The panel of the effect that ships, and values for it.
#ifndef VITRELL_TESTS_PANEL_EFFECT_PANEL_H_
#define VITRELL_TESTS_PANEL_EFFECT_PANEL_H_

#include <filesystem>
#include <string_view>
#include <vector>

#include "headless/effect_host.h"
#include "look/control.h"
#include "look/settings.h"

namespace vitrell::panel {

inline const look::Panel& EffectPanel() {
  static const look::Panel panel = look::MakePanel(
      headless::EffectHost(std::filesystem::path(VITRELL_MODULE_PATH)).Parameters());
  return panel;
}

// The control's position in look::Panel::controls.
inline int ControlOf(std::string_view name) {
  return static_cast<int>(EffectPanel().Find(name) - EffectPanel().controls.data());
}

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_EFFECT_PANEL_H_
