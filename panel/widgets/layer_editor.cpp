// Field and dialog for the file of a layer.
#include "panel/widgets/layer_editor.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QStyle>
#include <QToolButton>
#include <QUrl>

namespace vitrell::panel {

LayerEditor::LayerEditor(const QString& spokenName, QWidget* parent)
    : ValueEditor(parent),
      field_(new QLineEdit(this)),
      choose_(new QToolButton(this)),
      clear_(new QToolButton(this)) {
  field_->setPlaceholderText(tr("none"));
  field_->setAccessibleName(spokenName);
  field_->setAccessibleDescription(tr("a picture file, or empty for none"));
  field_->setAcceptDrops(false);  // this editor takes files whole
  choose_->setText(QStringLiteral("…"));
  choose_->setToolTip(tr("Choose a picture"));
  choose_->setAccessibleName(tr("%1, choose a file").arg(spokenName));
  choose_->setFocusPolicy(Qt::StrongFocus);
  clear_->setIcon(style()->standardIcon(QStyle::SP_LineEditClearButton));
  clear_->setToolTip(tr("No picture"));
  clear_->setAccessibleName(tr("%1, none").arg(spokenName));
  clear_->setFocusPolicy(Qt::StrongFocus);
  setAcceptDrops(true);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(field_, 1);
  layout->addWidget(clear_);
  layout->addWidget(choose_);
  setFocusProxy(field_);
  connect(choose_, &QToolButton::clicked, this, &LayerEditor::OpenDialog);
  connect(clear_, &QToolButton::clicked, this, [this] { Set({}); });
  connect(field_, &QLineEdit::editingFinished, this, [this] { Set(field_->text()); });
}

void LayerEditor::ShowValue(const look::Value& value) {
  path_ = QString::fromStdString(std::get<look::LayerValue>(value).path);
  field_->setText(path_);
  field_->setToolTip(path_);
}

void LayerEditor::Set(const QString& path) {
  if (path == path_) return;
  const look::LayerValue value{path.toStdString()};
  ShowValue(value);
  Q_EMIT Edited(value, EditPhase::kDone);
}

void LayerEditor::OpenDialog() {
  auto* const dialog = new QFileDialog(this, tr("Choose a picture"), path_);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setFileMode(QFileDialog::ExistingFile);
  dialog->setModal(true);
  connect(dialog, &QFileDialog::fileSelected, this, &LayerEditor::Set);
  dialog->show();
}

void LayerEditor::dragEnterEvent(QDragEnterEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  if (urls.size() == 1 && urls.front().isLocalFile()) event->acceptProposedAction();
}

void LayerEditor::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  Set(event->mimeData()->urls().front().toLocalFile());
}

}  // namespace vitrell::panel
