// A colour well beside a field for colours as text.
#ifndef VITRELL_PANEL_WIDGETS_COLOUR_EDITOR_H_
#define VITRELL_PANEL_WIDGETS_COLOUR_EDITOR_H_

#include "panel/widgets/value_editor.h"

class QLineEdit;
class QToolButton;

namespace vitrell::panel {

// The well opens a colour dialog, whose colour is shown while it is chosen; cancelling the dialog
// brings the old one back.
class ColourEditor : public ValueEditor {
  Q_OBJECT

 public:
  ColourEditor(const look::Control& control, const QString& spokenName, QWidget* parent);

  void ShowValue(const look::Value& value) override;

 private:
  void ReadText();
  void OpenDialog();
  void Set(const look::ColourValue& colour, EditPhase phase);

  const look::Control& control_;
  look::ColourValue colour_;
  QToolButton* well_;
  QLineEdit* field_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_COLOUR_EDITOR_H_
