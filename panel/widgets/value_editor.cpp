// The choice of an editor for a control.
#include "panel/widgets/value_editor.h"

#include <QEvent>

#include "panel/widgets/angle_editor.h"
#include "panel/widgets/choice_editors.h"
#include "panel/widgets/colour_editor.h"
#include "panel/widgets/layer_editor.h"
#include "panel/widgets/number_editor.h"
#include "panel/widgets/point_editor.h"

namespace vitrell::panel {
namespace {

class WheelGuard : public QObject {
 public:
  explicit WheelGuard(QWidget* widget) : QObject(widget), widget_(widget) {}

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel || widget_->hasFocus()) {
      return QObject::eventFilter(watched, event);
    }
    event->ignore();
    return true;
  }

 private:
  QWidget* widget_;
};

ValueEditor* NewEditor(const look::Control& control, const QString& spokenName, QWidget* parent) {
  switch (control.kind) {
    case look::ControlKind::kNumber:
      return new NumberEditor(control, spokenName, parent);
    case look::ControlKind::kAngle:
      return new AngleEditor(control, spokenName, parent);
    case look::ControlKind::kSwitch:
      return new SwitchEditor(spokenName, parent);
    case look::ControlKind::kChoice:
      return new ChoiceEditor(control, spokenName, parent);
    case look::ControlKind::kPoint:
      return new PointEditor(control, spokenName, parent);
    case look::ControlKind::kColour:
      return new ColourEditor(control, spokenName, parent);
    case look::ControlKind::kLayer:
      return new LayerEditor(spokenName, parent);
  }
  return nullptr;
}

}  // namespace

ValueEditor::ValueEditor(QWidget* parent) : QWidget(parent) {}

void ValueEditor::SetPictureSize(const QSize& /*size*/) {}

ValueEditor* MakeValueEditor(const look::Control& control, const QString& spokenName,
                             QWidget* parent) {
  ValueEditor* const editor = NewEditor(control, spokenName, parent);
  editor->ShowValue(control.defaultValue);
  return editor;
}

void IgnoreWheelWithoutFocus(QWidget* widget) {
  widget->setFocusPolicy(Qt::StrongFocus);
  widget->installEventFilter(new WheelGuard(widget));
}

}  // namespace vitrell::panel
