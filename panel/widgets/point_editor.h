// Two fields for a position, its unit, and a button to choose it in the picture.
#ifndef VITRELL_PANEL_WIDGETS_POINT_EDITOR_H_
#define VITRELL_PANEL_WIDGETS_POINT_EDITOR_H_

#include "panel/widgets/value_editor.h"

class QComboBox;
class QToolButton;

namespace vitrell::panel {

class ScrubField;

// Each field takes a number in its own unit, and one in the other unit once the picture's size is
// known. Choosing another unit keeps the place.
class PointEditor : public ValueEditor {
  Q_OBJECT

 public:
  PointEditor(const look::Control& control, const QString& spokenName, QWidget* parent);

  void ShowValue(const look::Value& value) override;
  void SetPictureSize(const QSize& size) override;

 private:
  ScrubField* MakeField(const QString& spokenName);
  void Set(const look::PointValue& point, EditPhase phase);
  void ChooseUnit(bool percent);
  void ShowStyles();

  const look::Control& control_;
  look::PointValue point_;
  QSize picture_;
  ScrubField* x_;
  ScrubField* y_;
  QComboBox* unit_;
  QToolButton* pick_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_POINT_EDITOR_H_
