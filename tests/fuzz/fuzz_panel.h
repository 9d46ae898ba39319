// The panel of the effect that is linked in.
#ifndef VITRELL_FUZZ_FUZZ_PANEL_H_
#define VITRELL_FUZZ_FUZZ_PANEL_H_

#include <memory>

#include "fuzz/fuzz_target.h"
#include "headless/effect_host.h"
#include "look/control.h"

namespace vitrell::fuzz {

inline const look::Panel& ThePanel() {
  static const look::Panel panel = [] {
    const headless::EffectHost host(
        std::make_shared<const headless::EffectModule>(&EntryPointFunc, "the effect"));
    return look::MakePanel(host.Parameters());
  }();
  return panel;
}

}  // namespace vitrell::fuzz

#endif  // VITRELL_FUZZ_FUZZ_PANEL_H_
