// The effect's panel as the host would show it, built from nothing but the panel's rows.
#ifndef VITRELL_PANEL_WIDGETS_CONTROL_PANEL_H_
#define VITRELL_PANEL_WIDGETS_CONTROL_PANEL_H_

#include <QScrollArea>
#include <QSize>
#include <QString>
#include <QWidget>
#include <cstddef>
#include <vector>

#include "look/control.h"
#include "panel/edit_phase.h"

class QVBoxLayout;

namespace vitrell::panel {

class ControlRow;
class GroupBox;

// Controls are numbered by their position in look::Panel::controls. The panel shows only what it is
// told: an edit is signalled, and shown once ShowValue has been called with it.
class ControlPanel : public QScrollArea {
  Q_OBJECT

 public:
  // The panel of the effect must outlive this one.
  explicit ControlPanel(const look::Panel& panel, QWidget* parent = nullptr);

  void ShowValue(int control, const look::Value& value, bool differsFromDefault, bool moves);
  // One for each control.
  void ShowGreyed(const std::vector<bool>& greyed);
  // By which a position in percent becomes one in pixels when its unit is changed.
  void SetPictureSize(const QSize& size);

  // Opens the groups around the control, scrolls to it and gives it the keyboard.
  void Choose(int control);

  // Wide enough for every row, so that only the height is scrolled.
  QSize minimumSizeHint() const override;
  QSize sizeHint() const override;

 Q_SIGNALS:
  void Edited(int control, const look::Value& value, vitrell::panel::EditPhase phase);
  // A typed text was no value; a whole sentence.
  void Refused(const QString& message);
  void ResetControl(int control);
  // `row` is the group's title in look::Panel::rows.
  void ResetGroup(std::size_t row);
  void ResetAll();
  // The user wants to choose a position by a click in the picture.
  void PickPoint(int control);
  void StopwatchToggled(int control);
  // The control whose row the keyboard is in.
  void Chosen(int control);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct OpenGroup {
    int depth;
    GroupBox* box;
  };

  void AddTitle(QVBoxLayout* layout);
  void AddGroup(std::size_t row, QVBoxLayout* layout);
  void AddControl(std::size_t row, QVBoxLayout* layout);
  void MarkGroups();

  const look::Panel& panel_;
  QWidget* title_ = nullptr;
  std::vector<OpenGroup> path_;                 // groups around the row that is being added
  std::vector<ControlRow*> rows_;               // one for each control
  std::vector<std::vector<GroupBox*>> around_;  // for each control, the groups that hold it
  std::vector<GroupBox*> groups_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_CONTROL_PANEL_H_
