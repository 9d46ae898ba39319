// Ticks, playhead and brackets.
#include "panel/time/time_ruler.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace vitrell::panel {
namespace {

constexpr int kHeight = 34;
constexpr int kBracketHeight = 10;  // at the top; the ruler is below
constexpr double kReach = 7;
constexpr int kLeastTickDistance = 60;
constexpr int kManyFrames = 10;
constexpr int kTextGap = 3;

// 1, 2, 5, 10, 20, 50, ...: the least that is at least `frames`.
int NiceStep(double frames) {
  for (int decade = 1;; decade *= 10) {
    for (const int digit : {1, 2, 5}) {
      if (digit * decade >= frames) return digit * decade;
    }
  }
}

}  // namespace

TimeRuler::TimeRuler(QWidget* parent) : QWidget(parent) {
  setFixedHeight(kHeight);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("Frames"));
  setAccessibleDescription(tr("Arrow keys step, I and O set in and out"));
  setToolTip(tr("Drag to scrub; drag the brackets for in and out (I and O)"));
}

QSize TimeRuler::sizeHint() const { return {600, kHeight}; }

void TimeRuler::SetFrames(int frames) {
  frames_ = std::max(1, frames);
  update();
}

void TimeRuler::ShowFrame(int frame) {
  frame_ = frame;
  update();
}

void TimeRuler::ShowRange(int first, int last) {
  first_ = first;
  last_ = last;
  update();
}

void TimeRuler::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setRenderHint(QPainter::Antialiasing);
  PaintRange(painter);
  PaintTicks(painter);
  const double x = Scale().XOf(frame_);
  QPainterPath head(QPointF(x, kHeight));
  head.lineTo(x - kReach, kBracketHeight + 2);
  head.lineTo(x + kReach, kBracketHeight + 2);
  head.closeSubpath();
  painter.fillPath(head, palette().color(QPalette::Highlight));
  if (hasFocus()) {
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
  }
}

void TimeRuler::PaintRange(QPainter& painter) const {
  const TimeScale scale = Scale();
  const double left = scale.XOf(first_), right = scale.XOf(last_);
  painter.fillRect(QRectF(left, 0, std::max(1.0, right - left), kBracketHeight),
                   palette().color(QPalette::Mid));
  painter.setPen(QPen(palette().color(QPalette::Text), 2));
  for (const auto& [x, inwards] : {std::pair(left, 4.0), std::pair(right, -4.0)}) {
    painter.drawLine(QPointF(x, 1), QPointF(x, kBracketHeight - 1));
    painter.drawLine(QPointF(x, 1), QPointF(x + inwards, 1));
    painter.drawLine(QPointF(x, kBracketHeight - 1), QPointF(x + inwards, kBracketHeight - 1));
  }
}

void TimeRuler::PaintTicks(QPainter& painter) const {
  const TimeScale scale = Scale();
  painter.setPen(palette().color(QPalette::Text));
  const int step = NiceStep(kLeastTickDistance / scale.PixelsPerFrame());
  for (int frame = 0; frame < frames_; frame += step) {
    const double x = scale.XOf(frame);
    painter.drawLine(QPointF(x, kHeight - 8), QPointF(x, kHeight));
    const QString number = QString::number(frame);
    const int advance = painter.fontMetrics().horizontalAdvance(number);
    const bool fits = x + kTextGap + advance <= width();
    painter.drawText(QPointF(fits ? x + kTextGap : x - kTextGap - advance, kHeight - 8), number);
  }
}

TimeRuler::Hand TimeRuler::HandAt(const QPointF& position) const {
  const TimeScale scale = Scale();
  if (position.y() > kBracketHeight) return Hand::kFrame;
  const double toFirst = std::abs(position.x() - scale.XOf(first_));
  const double toLast = std::abs(position.x() - scale.XOf(last_));
  if (std::min(toFirst, toLast) > kReach) return Hand::kFrame;
  return toFirst < toLast ? Hand::kFirst : Hand::kLast;
}

void TimeRuler::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  hand_ = HandAt(event->position());
  MoveTo(event->position().x(), EditPhase::kDragging);
}

void TimeRuler::mouseMoveEvent(QMouseEvent* event) {
  MoveTo(event->position().x(), EditPhase::kDragging);
}

void TimeRuler::mouseReleaseEvent(QMouseEvent* event) {
  MoveTo(event->position().x(), EditPhase::kDone);
  hand_ = Hand::kFree;
}

void TimeRuler::MoveTo(double x, EditPhase phase) {
  const int frame = Scale().NearestFrame(x);
  switch (hand_) {
    case Hand::kFree:
      return;
    case Hand::kFrame:
      return Q_EMIT FrameChosen(frame, phase);
    case Hand::kFirst:
      return Q_EMIT RangeChosen(std::min(frame, last_), last_);
    case Hand::kLast:
      return Q_EMIT RangeChosen(first_, std::max(frame, first_));
  }
}

void TimeRuler::keyPressEvent(QKeyEvent* event) {
  const int step = (event->modifiers() & Qt::ShiftModifier) != 0 ? kManyFrames : 1;
  const auto go = [this](int frame) {
    Q_EMIT FrameChosen(std::clamp(frame, 0, frames_ - 1), EditPhase::kDone);
  };
  switch (event->key()) {
    case Qt::Key_Left:
      return go(frame_ - step);
    case Qt::Key_Right:
      return go(frame_ + step);
    case Qt::Key_Home:
      return go(first_);
    case Qt::Key_End:
      return go(last_);
    case Qt::Key_I:
      return Q_EMIT RangeChosen(frame_, std::max(frame_, last_));
    case Qt::Key_O:
      return Q_EMIT RangeChosen(std::min(first_, frame_), frame_);
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace vitrell::panel
