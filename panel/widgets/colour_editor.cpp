// Well, dialog and text of one colour.
#include "panel/widgets/colour_editor.h"

#include <QColorDialog>
#include <QHBoxLayout>
#include <QIcon>
#include <QLineEdit>
#include <QPixmap>
#include <QToolButton>

#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::panel {
namespace {

constexpr QSize kWellSize(32, 16);
constexpr int kFieldWidth = 84;

look::ColourValue ValueOf(const QColor& colour) {
  return {static_cast<uint8_t>(colour.red()), static_cast<uint8_t>(colour.green()),
          static_cast<uint8_t>(colour.blue())};
}

QColor ColourOf(const look::ColourValue& value) { return {value.red, value.green, value.blue}; }

}  // namespace

ColourEditor::ColourEditor(const look::Control& control, const QString& spokenName, QWidget* parent)
    : ValueEditor(parent),
      control_(control),
      well_(new QToolButton(this)),
      field_(new QLineEdit(this)) {
  well_->setIconSize(kWellSize);
  well_->setFocusPolicy(Qt::StrongFocus);
  well_->setAccessibleName(tr("%1, choose").arg(spokenName));
  well_->setToolTip(tr("Choose a colour"));
  field_->setAccessibleName(spokenName);
  field_->setAccessibleDescription(QString::fromStdString(look::DescribeRange(control)));
  field_->setToolTip(QString::fromStdString(look::DescribeRange(control)));
  field_->setFixedWidth(kFieldWidth);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(field_);
  layout->addWidget(well_);
  layout->addStretch(1);
  setFocusProxy(field_);
  // Coming from outside, Tab goes to the field and from there on: what was made before it would be
  // left out.
  setTabOrder(field_, well_);
  connect(well_, &QToolButton::clicked, this, &ColourEditor::OpenDialog);
  connect(field_, &QLineEdit::editingFinished, this, &ColourEditor::ReadText);
}

void ColourEditor::ShowValue(const look::Value& value) {
  colour_ = std::get<look::ColourValue>(value);
  QPixmap swatch(kWellSize);
  swatch.fill(ColourOf(colour_));
  well_->setIcon(QIcon(swatch));
  field_->setText(QString::fromStdString(look::FormatValue(control_, colour_)));
}

void ColourEditor::ReadText() {
  if (!field_->isModified()) return;
  field_->setModified(false);
  try {
    const look::Value value = look::ParseValue(control_, field_->text().toStdString());
    const bool changed = std::get<look::ColourValue>(value) != colour_;
    ShowValue(value);
    if (changed) Q_EMIT Edited(colour_, EditPhase::kDone);
  } catch (const look::ValueError& error) {
    ShowValue(colour_);
    Q_EMIT Refused(QString::fromStdString(error.what()));
  }
}

void ColourEditor::Set(const look::ColourValue& colour, EditPhase phase) {
  ShowValue(colour);
  Q_EMIT Edited(colour, phase);
}

void ColourEditor::OpenDialog() {
  auto* const dialog = new QColorDialog(ColourOf(colour_), this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setModal(true);
  const look::ColourValue before = colour_;
  connect(dialog, &QColorDialog::currentColorChanged, this,
          [this](const QColor& colour) { Set(ValueOf(colour), EditPhase::kDragging); });
  connect(dialog, &QColorDialog::accepted, this, [this] { Set(colour_, EditPhase::kDone); });
  connect(dialog, &QColorDialog::rejected, this, [this, before] { Set(before, EditPhase::kDone); });
  dialog->show();
}

}  // namespace vitrell::panel
