// Curves drawn by the evaluation that renders use.
#include "panel/time/curve_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>

#include "panel/widgets/number_style.h"

namespace vitrell::panel {
namespace {

constexpr int kLeastHeight = 90;
constexpr int kMargin = 10;
constexpr double kMarkRadius = 4;
// Red, green and blue of a colour; x and y of a position.
// Seen on light and on dark.
constexpr std::array<QRgb, 3> kColours = {qRgb(220, 60, 60), qRgb(50, 160, 70), qRgb(80, 130, 240)};

bool IsDraggable(const look::Control& control) {
  return control.kind == look::ControlKind::kNumber || control.kind == look::ControlKind::kAngle;
}

}  // namespace

CurveView::CurveView(QWidget* parent) : QWidget(parent) {
  setMinimumHeight(kLeastHeight);
  setAccessibleName(tr("Curve"));
}

void CurveView::ShowKeys(const look::Control* control, const look::Keys& keys,
                         const look::TimeBase& base) {
  control_ = control;
  keys_ = keys;
  base_ = base;
  if (!dragged_) ChooseRange();
  update();
}

void CurveView::ShowFrame(int frame) {
  frame_ = frame;
  update();
}

std::vector<double> CurveView::ComponentsOf(const look::Value& value) {
  if (const auto* point = std::get_if<look::PointValue>(&value)) {
    return {point->x.value, point->y.value};
  }
  if (const auto* colour = std::get_if<look::ColourValue>(&value)) {
    return {static_cast<double>(colour->red), static_cast<double>(colour->green),
            static_cast<double>(colour->blue)};
  }
  if (const auto* on = std::get_if<bool>(&value)) return {*on ? 1.0 : 0.0};
  if (const auto* choice = std::get_if<look::ChoiceValue>(&value)) {
    return {static_cast<double>(choice->number)};
  }
  return {std::get<double>(value)};
}

// From the lowest to the highest value on the whole curve, which may lie beyond its keys.
void CurveView::ChooseRange() {
  lowest_ = 0;
  highest_ = 1;
  if (control_ == nullptr || keys_.empty()) return;
  const look::Curve curve(*control_, keys_, base_);
  lowest_ = highest_ = ComponentsOf(keys_.front().value).front();
  const int frames = std::max(1, static_cast<int>(std::ceil(base_.length)));
  for (int frame = 0; frame < frames; ++frame) {
    for (const double component : ComponentsOf(curve.At(frame))) {
      lowest_ = std::min(lowest_, component);
      highest_ = std::max(highest_, component);
    }
  }
  if (highest_ - lowest_ > 0) return;
  lowest_ -= 0.5;
  highest_ += 0.5;
}

QPointF CurveView::PlaceOf(double frame, double component) const {
  const TimeScale scale = TimeScale::For(static_cast<int>(base_.length), width());
  const double share = (component - lowest_) / (highest_ - lowest_);
  return {scale.XOf(frame), height() - kMargin - share * (height() - 2 * kMargin)};
}

double CurveView::ValueAt(double y) const {
  return lowest_ + (height() - kMargin - y) / (height() - 2 * kMargin) * (highest_ - lowest_);
}

void CurveView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setPen(palette().color(QPalette::Text));
  const QRect label(4, 0, kTrackLabelWidth - 8, height());
  if (control_ == nullptr || keys_.empty()) {
    painter.drawText(label, Qt::AlignVCenter, tr("no curve"));
    return;
  }
  painter.drawText(label, Qt::AlignTop | Qt::AlignRight, ShortNumber(highest_));
  painter.drawText(label, Qt::AlignBottom | Qt::AlignRight, ShortNumber(lowest_));
  painter.drawText(label, Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(QString::fromStdString(control_->name),
                                                    Qt::ElideMiddle, label.width()));
  painter.setRenderHint(QPainter::Antialiasing);
  PaintCurves(painter);
  PaintKeys(painter);
  painter.setPen(palette().color(QPalette::Highlight));
  const double x = PlaceOf(frame_, lowest_).x();
  painter.drawLine(QPointF(x, 0), QPointF(x, height()));
}

// One place for each pixel, or for each frame where they are farther apart.
void CurveView::PaintCurves(QPainter& painter) const {
  const look::Curve curve(*control_, keys_, base_);
  const TimeScale scale = TimeScale::For(static_cast<int>(base_.length), width());
  const double step = std::min(1.0, 1 / scale.PixelsPerFrame());
  const int steps = static_cast<int>((base_.length - 1) / step);
  const std::size_t count = ComponentsOf(keys_.front().value).size();
  std::vector<QPainterPath> paths(count);
  for (int at = 0; at <= steps; ++at) {
    const double frame = at * step;
    const std::vector<double> components = ComponentsOf(curve.At(frame));
    for (std::size_t i = 0; i < count; ++i) {
      const QPointF place = PlaceOf(frame, components[i]);
      if (at == 0) {
        paths[i].moveTo(place);
      } else {
        paths[i].lineTo(place);
      }
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    painter.setPen(
        QPen(count == 1 ? palette().color(QPalette::Text) : QColor(kColours.at(i)), 1.5));
    painter.drawPath(paths[i]);
  }
}

void CurveView::PaintKeys(QPainter& painter) const {
  painter.setPen(palette().color(QPalette::Text));
  painter.setBrush(palette().color(QPalette::Button));
  for (const look::Key& key : keys_) {
    for (const double component : ComponentsOf(key.value)) {
      painter.drawEllipse(PlaceOf(key.time.Frame(base_), component), kMarkRadius, kMarkRadius);
    }
  }
}

std::optional<std::size_t> CurveView::KeyAt(const QPointF& position) const {
  for (std::size_t i = 0; i < keys_.size(); ++i) {
    const QPointF place = PlaceOf(keys_[i].time.Frame(base_), ComponentsOf(keys_[i].value).front());
    const QPointF way = place - position;
    if (std::hypot(way.x(), way.y()) <= kGrabRadius) return i;
  }
  return std::nullopt;
}

void CurveView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || control_ == nullptr || !IsDraggable(*control_)) return;
  dragged_ = KeyAt(event->position());
  moved_ = false;
}

void CurveView::mouseMoveEvent(QMouseEvent* event) {
  if (dragged_) MoveKey(event->position().y(), EditPhase::kDragging);
}

void CurveView::mouseReleaseEvent(QMouseEvent* event) {
  if (!dragged_ || event->button() != Qt::LeftButton) return;
  if (moved_) MoveKey(event->position().y(), EditPhase::kDone);
  dragged_.reset();
  ChooseRange();
  update();
}

// The scale stays during the drag, so that the key stays under the pointer.
void CurveView::MoveKey(double y, EditPhase phase) {
  if (*dragged_ >= keys_.size()) return;
  const NumberStyle style = StyleOf(*control_);
  const double number = OnGrid(ValueAt(y), style.step);
  look::Keys keys = keys_;
  keys[*dragged_].value = std::clamp(number, style.minimum, style.maximum);
  if (phase == EditPhase::kDragging && keys == keys_) return;
  moved_ = true;
  keys_ = keys;
  update();
  Q_EMIT KeysEdited(keys, phase);
}

}  // namespace vitrell::panel
