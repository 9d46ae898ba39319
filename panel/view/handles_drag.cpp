// What dragging a handle does.
#include <algorithm>
#include <cmath>
#include <utility>

#include "panel/view/effect_position.h"
#include "panel/view/handles.h"
#include "panel/widgets/number_style.h"

namespace vitrell::panel {
namespace {

constexpr double kCircle = 360;
constexpr double kTurnStep = 15;

double Dot(const QPointF& a, const QPointF& b) { return QPointF::dotProduct(a, b); }

}  // namespace

bool Handles::Press(const QPointF& viewPoint, const QTransform& pictureToView) {
  const std::optional<Handle> handle = At(viewPoint, pictureToView);
  if (!handle) return false;
  const QTransform toPicture = pictureToView.inverted();
  const QPointF start = toPicture.map(handle->position);
  const double direction = handle->kind == Kind::kRotation ? Lens().DirectionOf(start) : 0;
  drag_ = Drag{.handle = *handle,
               .before = ValueOf(handle->control),
               .viewToPicture = toPicture,
               .grip = handle->position - viewPoint,
               .start = start,
               .direction = direction,
               .turned = 0,
               .moved = false};
  return true;
}

void Handles::Move(const QPointF& viewPoint, Qt::KeyboardModifiers modifiers) {
  if (!drag_) return;
  const QPointF picturePoint = drag_->viewToPicture.map(viewPoint + drag_->grip);
  const look::Value value = Dragged(picturePoint, modifiers);
  const int control = drag_->handle.control;
  if (value == ValueOf(control)) return;
  drag_->moved = true;
  Set(control, value, EditPhase::kDragging);
}

void Handles::Release() {
  if (!drag_) return;
  const Drag drag = *std::exchange(drag_, std::nullopt);
  if (drag.moved) Set(drag.handle.control, ValueOf(drag.handle.control), EditPhase::kDone);
}

void Handles::Cancel() {
  if (!drag_) return;
  const Drag drag = *std::exchange(drag_, std::nullopt);
  if (drag.moved) Set(drag.handle.control, drag.before, EditPhase::kDone);
}

void Handles::PlacePoint(int control, const QPointF& picturePoint, EditPhase phase) {
  Set(control, PointAt(control, picturePoint), phase);
}

void Handles::Set(int control, const look::Value& value, EditPhase phase) {
  values_.at(static_cast<std::size_t>(control)) = value;
  Q_EMIT Edited(control, value, phase);
  Q_EMIT Changed();
}

look::PointValue Handles::PointAt(int control, const QPointF& picturePoint) const {
  const auto& point = std::get<look::PointValue>(ValueOf(control));
  const int x = static_cast<int>(std::floor(picturePoint.x()));
  const int y = static_cast<int>(std::floor(picturePoint.y()));
  return {CoordinateFor(x, point.x.percent, picture_.width()),
          CoordinateFor(y, point.y.percent, picture_.height())};
}

look::Value Handles::Dragged(QPointF picturePoint, Qt::KeyboardModifiers modifiers) {
  if (drag_->handle.kind == Kind::kRotation) return DraggedRotation(picturePoint, modifiers);
  if (drag_->handle.kind != Kind::kPoint) return DraggedNumber(picturePoint);
  if ((modifiers & Qt::ShiftModifier) != 0) {
    const QPointF way = picturePoint - drag_->start;
    if (std::abs(way.x()) < std::abs(way.y())) {
      picturePoint.setX(drag_->start.x());
    } else {
      picturePoint.setY(drag_->start.y());
    }
  }
  return PointAt(drag_->handle.control, picturePoint);
}

// The number that brings the dragged side or the end of the feather under the pointer.
double Handles::DraggedNumber(const QPointF& picturePoint) const {
  const LensGeometry lens = Lens();
  const QPointF scaled = lens.WithoutScale().inverted().map(picturePoint);
  const QPointF anchor = drag_->handle.anchor;
  double number = 0;
  switch (drag_->handle.kind) {
    case Kind::kWidth:
      number = scaled.x() / anchor.x() / Number(lens_.scale) * kPercent * kPercent;
      break;
    case Kind::kHeight:
      number = scaled.y() / anchor.y() / Number(lens_.scale) * kPercent * kPercent;
      break;
    case Kind::kScale: {
      const QPointF unscaled(anchor.x() * Number(lens_.scaleWidth) / kPercent,
                             anchor.y() * Number(lens_.scaleHeight) / kPercent);
      number = Dot(scaled, unscaled) / Dot(unscaled, unscaled) * kPercent;
      break;
    }
    default:
      number = lens.FeatherAt(lens.ToPicture().inverted().map(picturePoint)) * kPercent;
      break;
  }
  const look::Control& control =
      panel_.controls.at(static_cast<std::size_t>(drag_->handle.control));
  // A scale of 0 would leave no handle to drag it back with.
  const double step = StepFor(control.sliderMaximum - control.sliderMinimum);
  const double least = drag_->handle.kind == Kind::kFeather ? control.minimum : step;
  return std::clamp(OnGrid(number, step), std::max(control.minimum, least), control.maximum);
}

// The pointer may go round more than once.
double Handles::DraggedRotation(const QPointF& picturePoint, Qt::KeyboardModifiers modifiers) {
  const double direction = Lens().DirectionOf(picturePoint);
  drag_->turned += std::remainder(direction - drag_->direction, kCircle);
  drag_->direction = direction;
  double degrees = std::get<double>(drag_->before) + drag_->turned;
  if ((modifiers & Qt::ShiftModifier) != 0) degrees = std::round(degrees / kTurnStep) * kTurnStep;
  return std::clamp(OnGrid(degrees, 1), -look::kFixedLimit, look::kFixedLimit);
}

}  // namespace vitrell::panel
