// Popups and checkboxes.
#ifndef VITRELL_PANEL_WIDGETS_CHOICE_EDITORS_H_
#define VITRELL_PANEL_WIDGETS_CHOICE_EDITORS_H_

#include "panel/widgets/value_editor.h"

class QCheckBox;
class QComboBox;

namespace vitrell::panel {

class ChoiceEditor : public ValueEditor {
  Q_OBJECT

 public:
  ChoiceEditor(const look::Control& control, const QString& spokenName, QWidget* parent);

  void ShowValue(const look::Value& value) override;

 private:
  QComboBox* box_;
};

class SwitchEditor : public ValueEditor {
  Q_OBJECT

 public:
  SwitchEditor(const QString& spokenName, QWidget* parent);

  void ShowValue(const look::Value& value) override;

 private:
  QCheckBox* box_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_CHOICE_EDITORS_H_
