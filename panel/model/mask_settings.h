// Showing the lens mask, which the effect keeps to itself.
#ifndef VITRELL_PANEL_MODEL_MASK_SETTINGS_H_
#define VITRELL_PANEL_MODEL_MASK_SETTINGS_H_

#include <optional>

#include "headless/world_buffer.h"
#include "look/settings.h"

namespace vitrell::panel {

// The same lens, with nothing but a white wash inside it: a black picture becomes the mask. Nothing
// for an effect without these controls.
std::optional<look::Settings> MaskSettings(const look::Settings& settings);

// Black and opaque, of the same size and depth.
headless::WorldBuffer BlackWorld(const headless::WorldBuffer& like);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_MASK_SETTINGS_H_
