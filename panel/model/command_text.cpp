// Arguments and their quoting.
#include "panel/model/command_text.h"

#include <QRegularExpression>
#include <algorithm>
#include <string>

#include "look/animation_text.h"
#include "look/value_text.h"
#include "media/failure.h"
#include "media/formats.h"
#include "media/sequence.h"
#include "media/video_containers.h"
#include "panel/model/path_text.h"

namespace vitrell::panel {
namespace {

std::filesystem::path Absolute(const std::filesystem::path& path) {
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute;
}

// A command may be run in another folder.
look::Value WithAbsoluteLayer(const look::Value& value) {
  const auto* layer = std::get_if<look::LayerValue>(&value);
  if (layer == nullptr || layer->path.empty()) return value;
  return look::LayerValue{Absolute(layer->path).string()};
}

void AddAssignment(const look::Control& control, const std::string& value, QStringList& arguments) {
  arguments << "--set" << QString::fromStdString(control.name + "=" + value);
}

void AddSettings(const look::Settings& settings, QStringList& arguments) {
  for (const look::Control& control : settings.GetPanel().controls) {
    if (const look::Keys* keys = settings.KeysOf(control)) {
      AddAssignment(control, look::FormatKeys(control, *keys), arguments);
    } else if (settings.ValueOf(control) != control.defaultValue) {
      AddAssignment(control,
                    look::FormatValue(control, WithAbsoluteLayer(settings.ValueOf(control))),
                    arguments);
    }
  }
}

}  // namespace

bool NeedsPreset(const Source& source, const look::Settings& settings) {
  if (!source.IsClip()) return false;
  const std::vector<look::Control>& controls = settings.GetPanel().controls;
  return std::any_of(controls.begin(), controls.end(), [&](const look::Control& control) {
    const look::Keys* keys = settings.KeysOf(control);
    return keys != nullptr && !look::FitsText(*keys);
  });
}

QStringList RenderArguments(const CommandOrder& order) {
  QStringList arguments = {"render", Text(Absolute(order.source.Name())),
                           Text(Absolute(order.output))};
  if (NeedsPreset(order.source, order.settings)) {
    if (order.preset.empty()) {
      throw media::Failure(media::kFailed,
                           "Eased keys have no form on a command line. Save the look as a preset "
                           "first; the command then names it.");
    }
    arguments << "--preset" << Text(Absolute(order.preset));
  } else if (order.source.IsClip()) {
    AddSettings(order.settings, arguments);
  } else {
    AddSettings(order.settings.At(static_cast<double>(order.source.NumberOf(order.index)),
                                  order.source.Times()),
                arguments);
  }
  if (!order.effect.empty()) arguments << "--effect" << Text(Absolute(order.effect));
  return arguments;
}

QString ShellLine(const QStringList& arguments) {
  static const QRegularExpression plain("^[A-Za-z0-9_@%+=:,./-]+$");
  QStringList words = {"vitrell"};
  for (const QString& argument : arguments) {
    QString word = argument;
    if (!plain.match(word).hasMatch()) word = "'" + word.replace("'", "'\\''") + "'";
    words << word;
  }
  return words.join(' ');
}

std::filesystem::path UsualOutput(const Source& source) {
  const std::filesystem::path& name = source.Name();
  std::string stem = name.stem().string();
  std::string extension = name.extension().string();
  const bool writes =
      source.IsVideo() ? media::IsVideoName(name) : media::FormatToWrite(name) != nullptr;
  if (!writes) extension = source.IsVideo() ? ".mp4" : ".png";
  // "plate.####" -> "plate-vitrell.####"
  const std::size_t dot =
      source.IsClip() && !source.IsVideo() ? stem.rfind('.') : std::string::npos;
  stem.insert(dot == std::string::npos ? stem.size() : dot, "-vitrell");
  return name.parent_path() / (stem + extension);
}

}  // namespace vitrell::panel
