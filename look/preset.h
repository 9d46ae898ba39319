// Presets: JSON files with a value for each named control.
#ifndef VITRELL_LOOK_PRESET_H_
#define VITRELL_LOOK_PRESET_H_

#include <filesystem>
#include <string>
#include <vector>

#include "look/settings.h"

namespace vitrell::look {

// Changes the settings that the preset names. The file is one JSON object; its keys are the names
// that --set takes, and "picture-width" for the width of the picture that the preset was made for.
// Values are numbers, true or false, or the texts that --set takes; positions
// may also be [x, y] in pixels and colours [red, green, blue]. Keys may
// stand in their place, as text or as an object (see animation_text.h, animation_json.h). A layer's
// file is relative to the preset's folder. "-" is standard input. Throws Failure naming file and
// key, and then leaves the settings unspecified.
void LoadPreset(const std::filesystem::path& file, Settings& settings);

// Every control with its value, in the panel's order, as LoadPreset reads it back from this file,
// and the width of the picture, if that is not 0.
std::string PresetText(const std::filesystem::path& file, const Settings& settings,
                       double pictureWidth = 0);

// Writes PresetText beside the file and renames. Returns what a replaced file loses, in whole
// sentences. Throws Failure.
std::vector<std::string> SavePreset(const std::filesystem::path& file, const Settings& settings,
                                    double pictureWidth = 0);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_PRESET_H_
