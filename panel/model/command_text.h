// What is shown, as a call of `vitrell render`.
#ifndef VITRELL_PANEL_MODEL_COMMAND_TEXT_H_
#define VITRELL_PANEL_MODEL_COMMAND_TEXT_H_

#include <QString>
#include <QStringList>
#include <cstdint>
#include <filesystem>

#include "look/settings.h"
#include "panel/model/source.h"

namespace vitrell::panel {

struct CommandOrder {
  const Source& source;
  std::int64_t index = 0;  // of the frame that is shown
  const look::Settings& settings;
  std::filesystem::path output;
  std::filesystem::path effect;  // empty: the one that the program finds by itself
  // Holds all of the settings; for keys that no text can hold. Empty: there is none.
  std::filesystem::path preset;
};

// The arguments behind the program's name. Of the controls only those that are not at their
// default. A picture is rendered as it is shown; of a clip all frames. Throws media::Failure if a
// clip has eased keys and there is no preset.
QStringList RenderArguments(const CommandOrder& order);

// Whether RenderArguments needs a preset.
bool NeedsPreset(const Source& source, const look::Settings& settings);

// One line for a POSIX shell: "vitrell render in.png 'my out.png' --set lens.feather=60".
QString ShellLine(const QStringList& arguments);

// "street-vitrell.png" beside "street.png", with the place for the frame's number if it has one,
// and of a format that can be written.
std::filesystem::path UsualOutput(const Source& source);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_COMMAND_TEXT_H_
