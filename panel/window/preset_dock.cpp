// A list with icons.
#include "panel/window/preset_dock.h"

#include <QDir>
#include <QListWidget>
#include <QPixmap>

#include "panel/model/path_text.h"

namespace vitrell::panel {
namespace {

// "tilt-shift.json" -> "tilt shift"
QString NameOf(const std::filesystem::path& preset) {
  return Text(preset.stem()).replace('-', ' ').replace('_', ' ');
}

}  // namespace

PresetDock::PresetDock(QWidget* parent)
    : QDockWidget(tr("Presets"), parent), list_(new QListWidget(this)) {
  setObjectName("presets");
  list_->setViewMode(QListView::IconMode);
  list_->setResizeMode(QListView::Adjust);
  list_->setMovement(QListView::Static);
  list_->setUniformItemSizes(true);
  list_->setWordWrap(true);
  list_->setSpacing(6);
  list_->setIconSize({Thumbnails::kWidth * 2 / 3, Thumbnails::kWidth * 3 / 8});
  list_->setAccessibleName(tr("Presets"));
  connect(list_, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    Q_EMIT Chosen(item->data(Qt::UserRole).toString());
  });
  setWidget(list_);
}

void PresetDock::ShowFolders(const std::vector<std::filesystem::path>& folders) {
  list_->clear();
  presets_.clear();
  QPixmap empty(list_->iconSize());
  empty.fill(palette().color(QPalette::Mid));
  for (const std::filesystem::path& folder : folders) {
    if (folder.empty()) continue;
    for (const QFileInfo& file : QDir(Text(folder)).entryInfoList({"*.json"}, QDir::Files)) {
      presets_.emplace_back(file.filePath().toStdString());
      auto* item = new QListWidgetItem(QIcon(empty), NameOf(presets_.back()), list_);
      item->setData(Qt::UserRole, file.filePath());
      item->setToolTip(file.filePath());
    }
  }
}

void PresetDock::ShowThumbnail(const Thumbnail& thumbnail) {
  QListWidgetItem* item = ItemOf(thumbnail.preset);
  if (item == nullptr) return;
  if (!thumbnail.image.isNull()) item->setIcon(QPixmap::fromImage(thumbnail.image));
  // Why there is none, or what the effect did wrong.
  if (!thumbnail.message.isEmpty()) item->setToolTip(thumbnail.message);
}

QListWidgetItem* PresetDock::ItemOf(const std::filesystem::path& preset) const {
  for (int i = 0; i < list_->count(); ++i) {
    if (list_->item(i)->data(Qt::UserRole).toString() == Text(preset)) return list_->item(i);
  }
  return nullptr;
}

}  // namespace vitrell::panel
