// Looking for files.
#include "panel/model/places.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <array>
#include <string>

#include "media/failure.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

// From the program's folder.
constexpr std::array kEffects = {"Vitrell.so", "../lib/vitrell/Vitrell.so", "../src/Vitrell.so"};
constexpr std::array kTools = {"vitrell", "../cli/vitrell"};
constexpr std::array kPresets = {"../share/vitrell/presets", "../../../presets"};

template <typename Names>
fs::path FindFrom(const Names& names) {
  const fs::path folder = QCoreApplication::applicationDirPath().toStdString();
  for (const char* name : names) {
    fs::path candidate = (folder / name).lexically_normal();
    std::error_code ignored;
    if (fs::exists(candidate, ignored)) return candidate;
  }
  return {};
}

}  // namespace

fs::path FindEffect(const fs::path& named) {
  fs::path found = named.empty() ? FindFrom(kEffects) : fs::absolute(named);
  std::error_code ignored;
  if (!found.empty() && fs::is_regular_file(found, ignored)) return found;
  throw media::Failure(media::kFailed, named.empty()
                                           ? "The effect module was not found beside the program. "
                                             "Name it with --effect MODULE."
                                           : named.string() +
                                                 ": there is no such effect module. Check the name "
                                                 "given to --effect, or leave the option out.");
}

fs::path FindTool() {
  fs::path found = FindFrom(kTools);
  if (found.empty()) found = QStandardPaths::findExecutable("vitrell").toStdString();
  if (!found.empty()) return found;
  throw media::Failure(
      media::kFailed,
      "The program vitrell, which writes the files, was not found beside this one. "
      "Install the package vitrell.");
}

fs::path ShippedPresets() { return FindFrom(kPresets); }

fs::path OwnPresets() {
  const QString folder =
      QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/presets";
  QDir().mkpath(folder);
  return folder.toStdString();
}

}  // namespace vitrell::panel
