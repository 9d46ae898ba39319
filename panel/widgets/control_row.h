// One control: stopwatch, name, editor and a way back to the default.
#ifndef VITRELL_PANEL_WIDGETS_CONTROL_ROW_H_
#define VITRELL_PANEL_WIDGETS_CONTROL_ROW_H_

#include <QSize>
#include <QString>
#include <QWidget>

#include "look/control.h"
#include "panel/edit_phase.h"

class QLabel;
class QToolButton;

namespace vitrell::panel {

class ValueEditor;

// Its object name is the control's name. A changed control has a bold name and a button that resets
// it; so does a double click on the name.
class ControlRow : public QWidget {
  Q_OBJECT

 public:
  // `group` is the title of the innermost group, for screen readers; empty outside of groups. The
  // control must outlive the row.
  ControlRow(const look::Control& control, const QString& group, int nameWidth, QWidget* parent);

  void ShowValue(const look::Value& value, bool differsFromDefault, bool moves);
  void ShowGreyed(bool greyed);
  void SetPictureSize(const QSize& size);
  bool DiffersFromDefault() const { return differs_; }
  ValueEditor* Editor() const { return editor_; }

 Q_SIGNALS:
  void Edited(const look::Value& value, vitrell::panel::EditPhase phase);
  void Refused(const QString& message);
  void Reset();
  void PickPoint();
  void StopwatchToggled();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeStopwatch(const QString& spokenName);
  void MakeName(const look::Control& control, int width);
  void MakeResetButton(const QString& spokenName);
  void MarkChanged(bool differs);

  bool differs_ = false;
  QToolButton* stopwatch_;
  QLabel* name_;
  ValueEditor* editor_;
  QToolButton* reset_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_CONTROL_ROW_H_
