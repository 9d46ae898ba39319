// Reading and writing the list.
#include "panel/window/recent_files.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>

namespace vitrell::panel {
namespace {

constexpr int kMostFiles = 10;
constexpr const char* kKey = "recent-files";

// The name of a sequence is no file's; then its folder counts.
bool Exists(const QString& name) {
  const QFileInfo file(name);
  return file.exists() || (name.contains('#') && file.dir().exists());
}

}  // namespace

RecentFiles::RecentFiles(QWidget* parent) : QMenu(tr("Open &Recent"), parent) {
  setToolTipsVisible(true);
  connect(this, &QMenu::aboutToShow, this, &RecentFiles::Fill);
  Fill();
}

void RecentFiles::Add(const std::filesystem::path& file) {
  const QString name = QString::fromStdString(file.string());
  QSettings settings;
  QStringList files = settings.value(kKey).toStringList();
  files.removeAll(name);
  files.prepend(name);
  settings.setValue(kKey, files.mid(0, kMostFiles));
  Fill();
}

void RecentFiles::Fill() {
  clear();
  for (const QString& name : QSettings().value(kKey).toStringList()) {
    if (!Exists(name)) continue;
    // An ampersand in a menu's text would be a shortcut.
    QAction* action = addAction(QFileInfo(name).fileName().replace("&", "&&"));
    action->setToolTip(name);
    connect(action, &QAction::triggered, this, [this, name] { Q_EMIT Chosen(name); });
  }
  menuAction()->setEnabled(!isEmpty());
}

}  // namespace vitrell::panel
