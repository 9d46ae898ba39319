// The menu of files that were open.
#ifndef VITRELL_PANEL_WINDOW_RECENT_FILES_H_
#define VITRELL_PANEL_WINDOW_RECENT_FILES_H_

#include <QMenu>
#include <QString>
#include <filesystem>

namespace vitrell::panel {

// Remembered by QSettings. Files that are not there any more are left out.
class RecentFiles : public QMenu {
  Q_OBJECT

 public:
  explicit RecentFiles(QWidget* parent = nullptr);

  // To the top of the list.
  void Add(const std::filesystem::path& file);

 Q_SIGNALS:
  void Chosen(const QString& file);

 private:
  void Fill();
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WINDOW_RECENT_FILES_H_
