// The effect a second time in one process.
#ifndef VITRELL_PANEL_MODEL_MODULE_COPY_H_
#define VITRELL_PANEL_MODEL_MODULE_COPY_H_

#include <memory>

#include "headless/effect_module.h"

namespace vitrell::panel {

// An effect may let only one thread of the process render at a time. Loaded from a copy of its
// file, the module shares nothing with the one that was loaded before, so that both render at once.
// Gives the module itself back where no copy can be loaded: for a linked effect, or where temporary
// files may not be executed.
std::shared_ptr<const headless::EffectModule> LoadAgain(
    const std::shared_ptr<const headless::EffectModule>& module);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_MODULE_COPY_H_
