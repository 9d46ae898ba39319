// The effect that is tested.
#ifndef VITRELL_TESTS_PANEL_REAL_MODULE_H_
#define VITRELL_TESTS_PANEL_REAL_MODULE_H_

#include <filesystem>
#include <memory>

#include "headless/effect_module.h"

namespace vitrell::panel {

inline std::shared_ptr<const headless::EffectModule> RealModule() {
  return std::make_shared<const headless::EffectModule>(std::filesystem::path(VITRELL_MODULE_PATH));
}

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_REAL_MODULE_H_
