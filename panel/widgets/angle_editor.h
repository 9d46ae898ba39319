// A dial beside a field with whole turns and degrees.
#ifndef VITRELL_PANEL_WIDGETS_ANGLE_EDITOR_H_
#define VITRELL_PANEL_WIDGETS_ANGLE_EDITOR_H_

#include "panel/widgets/value_editor.h"

class QDial;

namespace vitrell::panel {

class ScrubField;

// The dial points up at 0 and turns clockwise; turned past the top it counts another whole turn.
class AngleEditor : public ValueEditor {
  Q_OBJECT

 public:
  AngleEditor(const look::Control& control, const QString& spokenName, QWidget* parent);

  void ShowValue(const look::Value& value) override;

 private:
  void DialTurned(int position);
  void ShowDial(double degrees);

  QDial* dial_;
  ScrubField* field_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_ANGLE_EDITOR_H_
