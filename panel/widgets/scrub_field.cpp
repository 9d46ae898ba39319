// The gestures of a number field.
#include "panel/widgets/scrub_field.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <utility>

#include "look/failure.h"

namespace vitrell::panel {
namespace {

constexpr double kCoarse = 10;
constexpr double kFine = 0.1;
constexpr double kWheelNotch = 120;  // eighths of a degree
constexpr double kDragBegins = 3;    // pixels
constexpr int kPageSteps = 10;

double FactorOf(Qt::KeyboardModifiers modifiers) {
  if ((modifiers & Qt::ShiftModifier) != 0) return kCoarse;
  return (modifiers & Qt::ControlModifier) != 0 ? kFine : 1;
}

}  // namespace

ScrubField::ScrubField(NumberStyle style, QWidget* parent)
    : QAbstractSpinBox(parent), style_(std::move(style)) {
  setButtonSymbols(QAbstractSpinBox::NoButtons);
  setFocusPolicy(Qt::StrongFocus);
  lineEdit()->installEventFilter(this);
  connect(lineEdit(), &QLineEdit::textEdited, this, [this] { typing_ = textChanged_ = true; });
  connect(this, &QAbstractSpinBox::editingFinished, this, [this] { ReadText(hasFocus()); });
  StopTyping();
}

void ScrubField::ShowValue(double value) {
  value_ = value;
  if (!textChanged_) ShowText();
}

void ScrubField::ChangeStyle(NumberStyle style) {
  style_ = std::move(style);
  StopTyping();
}

void ScrubField::ShowText() {
  lineEdit()->setText(style_.format(value_));
  textChanged_ = false;
  if (lineEdit()->testAttribute(Qt::WA_SetPalette)) lineEdit()->setPalette(QPalette());
  // What is typed next replaces the number.
  if (hasFocus() && mouse_ != Mouse::kScrubbing) lineEdit()->selectAll();
}

// Reads what was typed. A wrong text stays while the user can still correct it.
void ScrubField::ReadText(bool keepWrongText) {
  if (!textChanged_) return;
  try {
    const double value = style_.parse(lineEdit()->text());
    StopTyping();
    if (value != value_) Set(value, EditPhase::kDone);
  } catch (const look::ValueError& error) {
    const QString message = QString::fromStdString(error.what());
    if (keepWrongText) {
      QPalette wrong = palette();
      wrong.setColor(QPalette::Text, Qt::red);
      lineEdit()->setPalette(wrong);
      QToolTip::showText(mapToGlobal(rect().bottomLeft()), message, this);
    } else {
      StopTyping();
    }
    Q_EMIT Refused(message);
  }
}

void ScrubField::StopTyping() {
  typing_ = false;
  lineEdit()->setCursor(Qt::SizeHorCursor);
  ShowText();
}

void ScrubField::stepBy(int steps) { Step(steps); }

void ScrubField::Step(double steps) {
  ReadText(false);
  const double next = OnGrid(value_ + steps * style_.step, style_.step);
  const double value = std::clamp(next, style_.minimum, style_.maximum);
  if (value != value_) Set(value, EditPhase::kDone);
}

void ScrubField::Set(double value, EditPhase phase) {
  value_ = value;
  ShowText();
  Q_EMIT Edited(value, phase);
}

// Every text may be on its way to a number; it is read when the user has finished.
QValidator::State ScrubField::validate(QString& /*text*/, int& /*position*/) const {
  return QValidator::Intermediate;
}

QAbstractSpinBox::StepEnabled ScrubField::stepEnabled() const {
  StepEnabled enabled = StepNone;
  if (value_ > style_.minimum) enabled |= StepDownEnabled;
  if (value_ < style_.maximum) enabled |= StepUpEnabled;
  return enabled;
}

void ScrubField::keyPressEvent(QKeyEvent* event) {
  const double factor = FactorOf(event->modifiers());
  switch (event->key()) {
    case Qt::Key_Up:
      return Step(factor);
    case Qt::Key_Down:
      return Step(-factor);
    case Qt::Key_PageUp:
      return Step(kPageSteps * factor);
    case Qt::Key_PageDown:
      return Step(-kPageSteps * factor);
    case Qt::Key_Escape:
      if (mouse_ == Mouse::kScrubbing) return CancelScrub();
      if (textChanged_) return StopTyping();
      break;
    default:
      break;
  }
  QAbstractSpinBox::keyPressEvent(event);
}

void ScrubField::wheelEvent(QWheelEvent* event) {
  if (!hasFocus()) return event->ignore();
  // Some platforms turn the wheel sideways while a modifier is held.
  const QPoint angle = event->angleDelta();
  const int turned = angle.y() != 0 ? angle.y() : angle.x();
  wheelSteps_ += turned / kWheelNotch;
  const double steps = std::trunc(wheelSteps_);
  wheelSteps_ -= steps;
  if (steps != 0) Step(steps * FactorOf(event->modifiers()));
  event->accept();
}

void ScrubField::focusInEvent(QFocusEvent* event) {
  QAbstractSpinBox::focusInEvent(event);
  if (!textChanged_) lineEdit()->selectAll();
}

void ScrubField::focusOutEvent(QFocusEvent* event) {
  QAbstractSpinBox::focusOutEvent(event);  // says that editing is finished
  StopTyping();
}

bool ScrubField::eventFilter(QObject* watched, QEvent* event) {
  if (watched != lineEdit() || !isEnabled()) return QAbstractSpinBox::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      return Pressed(static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
      return Moved(static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
      return Released(static_cast<QMouseEvent*>(event));
    default:
      return QAbstractSpinBox::eventFilter(watched, event);
  }
}

bool ScrubField::Pressed(QMouseEvent* event) {
  if (typing_ || event->button() != Qt::LeftButton) return false;
  mouse_ = Mouse::kPressed;
  mouseX_ = event->globalPosition().x();
  return true;
}

bool ScrubField::Moved(QMouseEvent* event) {
  if (mouse_ == Mouse::kUp) return false;
  const double x = event->globalPosition().x();
  const double pixels = x - mouseX_;
  if (mouse_ == Mouse::kPressed) {
    if (std::abs(pixels) < kDragBegins) return true;
    mouse_ = Mouse::kScrubbing;
    valueBefore_ = scrubbed_ = value_;
    setFocus(Qt::MouseFocusReason);
  }
  mouseX_ = x;
  // What lies beyond the range is forgotten, so that turning round shows at once.
  scrubbed_ = std::clamp(scrubbed_ + pixels * style_.step * FactorOf(event->modifiers()),
                         style_.minimum, style_.maximum);
  const double value = std::clamp(OnGrid(scrubbed_, style_.step), style_.minimum, style_.maximum);
  if (value != value_) Set(value, EditPhase::kDragging);
  return true;
}

bool ScrubField::Released(QMouseEvent* event) {
  if (mouse_ == Mouse::kUp || event->button() != Qt::LeftButton) return false;
  const bool scrubbed = mouse_ == Mouse::kScrubbing;
  mouse_ = Mouse::kUp;
  if (scrubbed) {
    Set(value_, EditPhase::kDone);
    return true;
  }
  setFocus(Qt::MouseFocusReason);
  lineEdit()->selectAll();
  lineEdit()->setCursor(Qt::IBeamCursor);
  typing_ = true;
  return true;
}

void ScrubField::CancelScrub() {
  mouse_ = Mouse::kUp;
  Set(valueBefore_, EditPhase::kDone);
}

}  // namespace vitrell::panel
