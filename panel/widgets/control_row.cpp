// The parts of a control's row and what they signal.
#include "panel/widgets/control_row.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolButton>

#include "panel/widgets/icons.h"
#include "panel/widgets/value_editor.h"

namespace vitrell::panel {
namespace {

constexpr int kSpacing = 3;

QToolButton* FlatButton(const QIcon& icon, const QString& spokenName, const QString& toolTip,
                        QWidget* parent) {
  auto* const button = new QToolButton(parent);
  button->setIcon(icon);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::StrongFocus);
  button->setAccessibleName(spokenName);
  button->setToolTip(toolTip);
  QSizePolicy policy = button->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  button->setSizePolicy(policy);
  return button;
}

}  // namespace

ControlRow::ControlRow(const look::Control& control, const QString& group, int nameWidth,
                       QWidget* parent)
    : QWidget(parent) {
  setObjectName(QString::fromStdString(control.name));
  const QString label = QString::fromStdString(control.label);
  const QString spokenName = group.isEmpty() ? label : group + QStringLiteral(": ") + label;
  MakeStopwatch(spokenName);
  stopwatch_->setVisible(control.kind != look::ControlKind::kLayer);
  MakeName(control, nameWidth);
  editor_ = MakeValueEditor(control, spokenName, this);
  MakeResetButton(spokenName);
  name_->setBuddy(editor_);

  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpacing);
  layout->addWidget(stopwatch_);
  layout->addWidget(name_);
  layout->addWidget(editor_, 1);
  layout->addWidget(reset_);

  connect(editor_, &ValueEditor::Edited, this, &ControlRow::Edited);
  connect(editor_, &ValueEditor::Refused, this, &ControlRow::Refused);
  connect(editor_, &ValueEditor::PickPoint, this, &ControlRow::PickPoint);
  ShowGreyed(control.disabled);
  MarkChanged(false);
}

void ControlRow::MakeStopwatch(const QString& spokenName) {
  stopwatch_ =
      FlatButton(StopwatchIcon(), tr("%1, stopwatch").arg(spokenName), tr("Keys in time"), this);
  stopwatch_->setCheckable(true);
  connect(stopwatch_, &QToolButton::clicked, this, &ControlRow::StopwatchToggled);
}

void ControlRow::MakeName(const look::Control& control, int width) {
  name_ = new QLabel(QString::fromStdString(control.label), this);
  name_->setFixedWidth(width);
  name_->setToolTip(
      tr("%1\nDouble click: back to the default").arg(QString::fromStdString(control.name)));
  name_->installEventFilter(this);
}

void ControlRow::MakeResetButton(const QString& spokenName) {
  reset_ =
      FlatButton(ResetIcon(), tr("%1, reset").arg(spokenName), tr("Back to the default"), this);
  connect(reset_, &QToolButton::clicked, this, &ControlRow::Reset);
}

void ControlRow::ShowValue(const look::Value& value, bool differsFromDefault, bool moves) {
  editor_->ShowValue(value);
  stopwatch_->setChecked(moves);
  if (differsFromDefault != differs_) MarkChanged(differsFromDefault);
}

void ControlRow::MarkChanged(bool differs) {
  differs_ = differs;
  QFont font = name_->font();
  font.setBold(differs);
  name_->setFont(font);
  // The keyboard does not fall out of the row with the button that it was on.
  if (!differs && reset_->hasFocus()) editor_->setFocus();
  reset_->setVisible(differs);
}

void ControlRow::ShowGreyed(bool greyed) {
  name_->setEnabled(!greyed);
  editor_->setEnabled(!greyed);
}

void ControlRow::SetPictureSize(const QSize& size) { editor_->SetPictureSize(size); }

bool ControlRow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == name_ && event->type() == QEvent::MouseButtonDblClick) {
    Q_EMIT Reset();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace vitrell::panel
