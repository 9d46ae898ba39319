// The panel of the effect that is linked in.
#ifndef VITRELL_FUZZ_FUZZ_PANEL_H_
#define VITRELL_FUZZ_FUZZ_PANEL_H_

#include <memory>

#include "cli/control.h"
#include "fuzz/fuzz_target.h"
#include "headless/effect_host.h"

namespace vitrell::fuzz {

inline const cli::Panel& ThePanel() {
  static const cli::Panel panel = [] {
    const headless::EffectHost host(
        std::make_shared<const headless::EffectModule>(&EntryPointFunc, "the effect"));
    return cli::MakePanel(host.Parameters());
  }();
  return panel;
}

}  // namespace vitrell::fuzz

#endif  // VITRELL_FUZZ_FUZZ_PANEL_H_
