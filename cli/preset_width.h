// Presets on pictures of another width than that they were made for.
#ifndef VITRELL_CLI_PRESET_WIDTH_H_
#define VITRELL_CLI_PRESET_WIDTH_H_

#include "cli/arguments.h"
#include "cli/notes.h"
#include "look/settings.h"

namespace vitrell::cli {

// Refuses --fit where no preset tells a width. Throws Failure.
void CheckFit(const RenderArguments& arguments, const look::Settings& settings);

// With --fit scales the lengths in pixels; without it notes a width that differs by half or more.
void FitPresets(bool fit, int width, look::Settings& settings, Notes& notes);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_PRESET_WIDTH_H_
