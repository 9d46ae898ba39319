// Names of files for Qt.
#ifndef VITRELL_PANEL_MODEL_PATH_TEXT_H_
#define VITRELL_PANEL_MODEL_PATH_TEXT_H_

#include <QString>
#include <filesystem>

namespace vitrell::panel {

inline QString Text(const std::filesystem::path& path) {
  return QString::fromStdString(path.string());
}

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_PATH_TEXT_H_
