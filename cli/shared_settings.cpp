// The settings that several commands share.
#include <cstdio>
#include <string>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/printable.h"
#include "look/clipboard_keys.h"
#include "look/failure.h"
#include "look/preset.h"
#include "look/text_file.h"
#include "look/value_text.h"

namespace vitrell::cli {
namespace {

constexpr const char* kEffectName = "Vitrell";

void TellKeyNote(const std::string& file, const std::string& note) {
  std::fprintf(stderr, "vitrell: note: %s: %s\n", Printable(file).c_str(), Printable(note).c_str());
}

void LoadClipboardKeys(const std::string& file, double framesPerSecond, look::Settings& settings) {
  look::ClipboardKeys read;
  try {
    read = look::ReadClipboardKeys(settings.GetPanel(), kEffectName,
                                   look::ReadTextFile(file, "key file"));
  } catch (const look::ValueError& error) {
    throw Failure(kFailed, "key file " + file + ": " + error.what());
  }
  const bool otherRate = read.framesPerSecond > 0 && read.framesPerSecond != framesPerSecond;
  for (auto& [control, keys] : read.keys) {
    for (look::Key& key : keys) {
      if (otherRate) key.time.amount *= framesPerSecond / read.framesPerSecond;
    }
    settings.SetKeys(*control, keys);
  }
  if (otherRate) {
    TellKeyNote(file, "frames were counted at " + look::FormatNumber(read.framesPerSecond) +
                          " per second and are taken at " + look::FormatNumber(framesPerSecond) +
                          " (--fps).");
  }
  for (const std::string& name : read.unmatched) {
    TellKeyNote(file, "\"" + name + "\" is no control of the effect and was left out.");
  }
  TellKeyNote(file, std::to_string(read.keys.size()) +
                        " properties have keys; this form tells no easing, all go straight.");
}

}  // namespace

look::Settings MakeSettings(const look::Panel& panel, const EffectArguments& arguments) {
  look::Settings settings(panel);
  for (const std::string& preset : arguments.presets) look::LoadPreset(preset, settings);
  if (!arguments.keys.empty()) {
    LoadClipboardKeys(arguments.keys, arguments.framesPerSecond, settings);
  }
  for (const std::string& assignment : arguments.assignments) settings.Set(assignment);
  return settings;
}

look::TimeBase TimeBaseOf(const look::Settings& settings, const EffectArguments& arguments) {
  if (arguments.length <= 0 && settings.CountsFromEnd()) {
    throw Failure(kWrongUsage,
                  "a key's time counts from the end, which is not known. Give --length FRAMES.");
  }
  return {arguments.framesPerSecond, arguments.length};
}

look::Settings SettingsAt(const look::Settings& settings, const EffectArguments& arguments) {
  if (!settings.Moves()) return settings;
  return settings.At(arguments.at, TimeBaseOf(settings, arguments));
}

}  // namespace vitrell::cli
