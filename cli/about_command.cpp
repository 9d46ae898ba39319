// `vitrell about`, and the settings that commands share.
#include <algorithm>
#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "cli/effect_finder.h"
#include "cli/printable.h"
#include "look/preset.h"

namespace vitrell::cli {

void RunAbout(const EffectArguments& arguments) {
  std::string text = OpenEffect(arguments.effect)->About();
  // The effect separates its name from the text by a carriage return.
  std::replace(text.begin(), text.end(), '\r', '\n');
  std::printf("%s\n", Printable(text, true).c_str());
}

look::Settings MakeSettings(const look::Panel& panel, const EffectArguments& arguments) {
  look::Settings settings(panel);
  for (const std::string& preset : arguments.presets) look::LoadPreset(preset, settings);
  for (const std::string& assignment : arguments.assignments) settings.Set(assignment);
  return settings;
}

}  // namespace vitrell::cli
