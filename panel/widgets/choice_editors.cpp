// Popups and checkboxes.
#include "panel/widgets/choice_editors.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>

namespace vitrell::panel {

ChoiceEditor::ChoiceEditor(const look::Control& control, const QString& spokenName, QWidget* parent)
    : ValueEditor(parent), box_(new QComboBox(this)) {
  for (const std::string& choice : control.choices) box_->addItem(QString::fromStdString(choice));
  box_->setAccessibleName(spokenName);
  IgnoreWheelWithoutFocus(box_);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(box_);
  layout->addStretch(1);
  setFocusProxy(box_);
  connect(box_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (index >= 0) Q_EMIT Edited(look::ChoiceValue{index + 1}, EditPhase::kDone);
  });
}

void ChoiceEditor::ShowValue(const look::Value& value) {
  const QSignalBlocker quiet(box_);
  box_->setCurrentIndex(std::get<look::ChoiceValue>(value).number - 1);
}

SwitchEditor::SwitchEditor(const QString& spokenName, QWidget* parent)
    : ValueEditor(parent), box_(new QCheckBox(this)) {
  box_->setAccessibleName(spokenName);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(box_);
  layout->addStretch(1);
  setFocusProxy(box_);
  connect(box_, &QCheckBox::toggled, this,
          [this](bool on) { Q_EMIT Edited(on, EditPhase::kDone); });
}

void SwitchEditor::ShowValue(const look::Value& value) {
  const QSignalBlocker quiet(box_);
  box_->setChecked(std::get<bool>(value));
}

}  // namespace vitrell::panel
