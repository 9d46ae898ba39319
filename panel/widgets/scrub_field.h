// A number that is dragged sideways, typed, and stepped with arrows and wheel.
#ifndef VITRELL_PANEL_WIDGETS_SCRUB_FIELD_H_
#define VITRELL_PANEL_WIDGETS_SCRUB_FIELD_H_

#include <QAbstractSpinBox>
#include <QString>

#include "panel/edit_phase.h"
#include "panel/widgets/number_style.h"

namespace vitrell::panel {

// A pixel of a drag, an arrow key and a notch of the wheel are one step; Shift makes that ten, Ctrl
// a tenth, and the page keys step by ten. The wheel works while the field has the keyboard, so that
// a panel can be scrolled over its fields. A click without a drag selects the text for typing.
// Escape ends a drag or the typing and brings the number before back.
class ScrubField : public QAbstractSpinBox {
  Q_OBJECT
  // Read by screen readers.
  Q_PROPERTY(double value READ Value WRITE ShowValue)
  Q_PROPERTY(double minimum READ Minimum)
  Q_PROPERTY(double maximum READ Maximum)

 public:
  explicit ScrubField(NumberStyle style, QWidget* parent = nullptr);

  double Value() const { return value_; }
  double Minimum() const { return style_.minimum; }
  double Maximum() const { return style_.maximum; }
  // Emits nothing. A text that is being typed stays.
  void ShowValue(double value);
  // Shows the same number in the new style.
  void ChangeStyle(NumberStyle style);

  void stepBy(int steps) override;

 Q_SIGNALS:
  void Edited(double value, vitrell::panel::EditPhase phase);
  // The typed text is no number that the field takes; a whole sentence.
  void Refused(const QString& message);

 protected:
  QValidator::State validate(QString& text, int& position) const override;
  StepEnabled stepEnabled() const override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Mouse { kUp, kPressed, kScrubbing };

  void ShowText();
  void ReadText(bool keepWrongText);
  void StopTyping();
  void Step(double steps);
  void Set(double value, EditPhase phase);
  bool Pressed(QMouseEvent* event);
  bool Moved(QMouseEvent* event);
  bool Released(QMouseEvent* event);
  void CancelScrub();

  NumberStyle style_;
  double value_ = 0;
  bool typing_ = false;       // the mouse belongs to the text
  bool textChanged_ = false;  // by the user
  Mouse mouse_ = Mouse::kUp;
  double mouseX_ = 0;       // where the mouse was last
  double valueBefore_ = 0;  // the drag
  double scrubbed_ = 0;     // without rounding
  double wheelSteps_ = 0;   // less than one
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_WIDGETS_SCRUB_FIELD_H_
