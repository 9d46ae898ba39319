// The file that the settings name as a layer.
#ifndef VITRELL_PANEL_MODEL_LAYER_FILE_H_
#define VITRELL_PANEL_MODEL_LAYER_FILE_H_

#include <cstdint>
#include <filesystem>

#include "look/settings.h"

namespace vitrell::panel {

// For this frame: of a sequence's name the file with its number. Empty where the settings name
// none.
std::filesystem::path LayerFile(const look::Settings& settings, std::int64_t frame);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_LAYER_FILE_H_
