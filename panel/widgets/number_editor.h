// A slider over the slider range beside a field over the valid range.
#ifndef VITRELL_PANEL_WIDGETS_NUMBER_EDITOR_H_
#define VITRELL_PANEL_WIDGETS_NUMBER_EDITOR_H_

#include "panel/widgets/value_editor.h"

class QSlider;

namespace vitrell::panel {

class ScrubField;

class NumberEditor : public ValueEditor {
  Q_OBJECT

 public:
  NumberEditor(const look::Control& control, const QString& spokenName, QWidget* parent);

  // A number beyond the slider's range leaves the slider at its end.
  void ShowValue(const look::Value& value) override;

 private:
  void SliderChanged(int tick);

  const look::Control& control_;
  double step_;  // of the slider
  QSlider* slider_;
  ScrubField* field_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_NUMBER_EDITOR_H_
