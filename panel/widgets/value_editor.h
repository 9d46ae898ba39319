// What all editors of a control's value have in common.
#ifndef VITRELL_PANEL_WIDGETS_VALUE_EDITOR_H_
#define VITRELL_PANEL_WIDGETS_VALUE_EDITOR_H_

#include <QSize>
#include <QString>
#include <QWidget>

#include "look/control.h"
#include "panel/edit_phase.h"

namespace vitrell::panel {

class ValueEditor : public QWidget {
  Q_OBJECT

 public:
  explicit ValueEditor(QWidget* parent);

  // Emits nothing. The value's alternative is that of the control's default.
  virtual void ShowValue(const look::Value& value) = 0;
  virtual void SetPictureSize(const QSize& size);

 Q_SIGNALS:
  void Edited(const look::Value& value, vitrell::panel::EditPhase phase);
  // A typed text was no value; a whole sentence.
  void Refused(const QString& message);
  // A position is to be chosen in the picture.
  void PickPoint();
};

// The editor for the control's kind. Names for screen readers begin with `spokenName`. The control
// must outlive the editor.
ValueEditor* MakeValueEditor(const look::Control& control, const QString& spokenName,
                             QWidget* parent);

// Lets the wheel scroll what the widget lies in, unless the widget has the keyboard.
void IgnoreWheelWithoutFocus(QWidget* widget);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_VALUE_EDITOR_H_
