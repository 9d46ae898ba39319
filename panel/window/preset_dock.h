// The presets as small pictures.
#ifndef VITRELL_PANEL_WINDOW_PRESET_DOCK_H_
#define VITRELL_PANEL_WINDOW_PRESET_DOCK_H_

#include <QDockWidget>
#include <QString>
#include <filesystem>
#include <vector>

#include "panel/model/thumbnails.h"

class QListWidget;
class QListWidgetItem;

namespace vitrell::panel {

// The presets of some folders, each shown by its name until there is a picture. Return or a double
// click chooses one.
class PresetDock : public QDockWidget {
  Q_OBJECT

 public:
  explicit PresetDock(QWidget* parent = nullptr);

  // In this order; folders that do not exist are left out.
  void ShowFolders(const std::vector<std::filesystem::path>& folders);
  const std::vector<std::filesystem::path>& Presets() const { return presets_; }
  void ShowThumbnail(const Thumbnail& thumbnail);

 Q_SIGNALS:
  void Chosen(const QString& file);

 private:
  QListWidgetItem* ItemOf(const std::filesystem::path& preset) const;

  QListWidget* list_;
  std::vector<std::filesystem::path> presets_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_PRESET_DOCK_H_
