// Which handles there are, how they look, and what a drag of one does.
#include "panel/view/handles.h"

#include <QLineF>
#include <algorithm>
#include <cmath>
#include <utility>

#include "look/value_text.h"
#include "panel/view/effect_position.h"
#include "panel/widgets/number_style.h"

namespace vitrell::panel {
namespace {

// In view pixels.
constexpr double kHandleRadius = 5;
constexpr double kGrabRadius = 10;
constexpr double kStalk = 28;  // from the top of the lens to its rotation handle

constexpr double kFullTurn = 360;
constexpr double kTurnStep = 15;
constexpr double kPercent = 100;

double Dot(const QPointF& a, const QPointF& b) { return QPointF::dotProduct(a, b); }

// A light line in a dark one is seen on every picture.
void DrawOutlined(QPainter& painter, const QPainterPath& path, Qt::PenStyle style) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0, 0, 0, 160), 3));
  painter.drawPath(path);
  painter.setPen(QPen(Qt::white, 1, style));
  painter.drawPath(path);
}

void DrawHandle(QPainter& painter, const Handles::Handle& handle) {
  painter.setPen(QPen(Qt::black, 1));
  painter.setBrush(Qt::white);
  const QPointF reach(kHandleRadius, kHandleRadius);
  const QRectF box(handle.position - reach, handle.position + reach);
  switch (handle.kind) {
    case Handles::Kind::kPoint:
      painter.drawEllipse(box);
      painter.drawLine(box.center() - QPointF(kHandleRadius, 0),
                       box.center() + QPointF(kHandleRadius, 0));
      painter.drawLine(box.center() - QPointF(0, kHandleRadius),
                       box.center() + QPointF(0, kHandleRadius));
      break;
    case Handles::Kind::kRotation:
    case Handles::Kind::kFeather:
      painter.drawEllipse(box);
      break;
    default:
      painter.drawRect(box);
      break;
  }
}

}  // namespace

Handles::Handles(const look::Panel& panel, QObject* parent)
    : QObject(parent), panel_(panel), lens_(LensControls::Of(panel)) {
  for (const look::Control& control : panel.controls) {
    values_.push_back(control.defaultValue);
    greyed_.push_back(control.disabled);
  }
}

void Handles::ShowValues(const std::vector<look::Value>& values, const std::vector<bool>& greyed) {
  values_ = values;
  greyed_ = greyed;
  Q_EMIT Changed();
}

void Handles::SetPictureSize(const QSize& size) {
  picture_ = size;
  Q_EMIT Changed();
}

void Handles::SetLensPictureSize(const QSize& size) {
  lensPicture_ = size;
  Q_EMIT Changed();
}

const look::Value& Handles::ValueOf(int control) const {
  return values_.at(static_cast<std::size_t>(control));
}

double Handles::Number(int control) const { return std::get<double>(ValueOf(control)); }

// The middle of the pixel that the effect takes.
QPointF Handles::PointOf(int control) const {
  const auto& point = std::get<look::PointValue>(ValueOf(control));
  return {EffectPixel(point.x, picture_.width()) + 0.5,
          EffectPixel(point.y, picture_.height()) + 0.5};
}

bool Handles::IsShown(int control) const { return !greyed_.at(static_cast<std::size_t>(control)); }

bool Handles::HasLens() const { return lens_.IsComplete() && !picture_.isEmpty(); }

LensGeometry Handles::Lens() const {
  const double scale = Number(lens_.scale) / kPercent;
  LensSetup setup;
  setup.type = std::get<look::ChoiceValue>(ValueOf(lens_.type)).number;
  setup.stretched = std::get<look::ChoiceValue>(ValueOf(lens_.placement)).number == 2;
  setup.centre = PointOf(lens_.position);
  setup.scaleWidth = Number(lens_.scaleWidth) / kPercent * scale;
  setup.scaleHeight = Number(lens_.scaleHeight) / kPercent * scale;
  setup.degrees = Number(lens_.rotation);
  setup.feather = Number(lens_.feather) / kPercent;
  setup.picture = picture_;
  setup.lensPicture = lensPicture_;
  return LensGeometry(setup);
}

std::vector<Handles::Handle> Handles::Visible(const QTransform& pictureToView) const {
  std::vector<Handle> handles;
  if (picture_.isEmpty()) return handles;
  if (HasLens()) AddLensHandles(pictureToView, handles);
  for (std::size_t i = 0; i < panel_.controls.size(); ++i) {
    const int control = static_cast<int>(i);
    if (panel_.controls[i].kind != look::ControlKind::kPoint || !IsShown(control)) continue;
    handles.push_back({Kind::kPoint, control, pictureToView.map(PointOf(control)), {}});
  }
  return handles;
}

void Handles::AddLensHandles(const QTransform& pictureToView, std::vector<Handle>& handles) const {
  const LensGeometry lens = Lens();
  if (!lens.HasShape()) return;
  const QTransform toView = lens.ToPicture() * pictureToView;
  const auto add = [&](Kind kind, int control, const QPointF& anchor) {
    if (IsShown(control)) handles.push_back({kind, control, toView.map(anchor), anchor});
  };
  const QPointF width = lens.WidthAnchor();
  add(Kind::kWidth, lens_.scaleWidth, width);
  add(Kind::kWidth, lens_.scaleWidth, {-width.x(), width.y()});
  add(Kind::kHeight, lens_.scaleHeight, lens.HeightAnchor());
  add(Kind::kScale, lens_.scale, lens.ScaleAnchor());
  add(Kind::kFeather, lens_.feather, lens.FeatherAnchor());
  if (!IsShown(lens_.rotation)) return;
  const QPointF centre = pictureToView.map(PointOf(lens_.position));
  const QLineF up(centre, pictureToView.map(PointOf(lens_.position) + lens.Up()));
  QLineF stalk = up;
  stalk.setLength(up.length() + kStalk);
  handles.push_back({Kind::kRotation, lens_.rotation, stalk.p2(), {}});
}

// Of handles in one place the first is taken, which is drawn last.
std::optional<Handles::Handle> Handles::At(const QPointF& viewPoint,
                                           const QTransform& pictureToView) const {
  std::optional<Handle> nearest;
  double least = kGrabRadius;
  for (const Handle& handle : Visible(pictureToView)) {
    const double distance = QLineF(handle.position, viewPoint).length();
    if (distance >= least) continue;
    least = distance;
    nearest = handle;
  }
  return nearest;
}

QString Handles::Hint(const Handle& handle) const {
  const look::Control& control = panel_.controls.at(static_cast<std::size_t>(handle.control));
  return QString::fromStdString(control.name + " " +
                                look::FormatValue(control, ValueOf(handle.control)) +
                                look::UnitSuffix(control));
}

void Handles::Paint(QPainter& painter, const QTransform& pictureToView) const {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (HasLens()) PaintLens(painter, pictureToView);
  const std::vector<Handle> handles = Visible(pictureToView);
  std::for_each(handles.rbegin(), handles.rend(),
                [&](const Handle& handle) { DrawHandle(painter, handle); });
  painter.restore();
}

void Handles::PaintLens(QPainter& painter, const QTransform& pictureToView) const {
  const LensGeometry lens = Lens();
  if (!lens.HasShape()) return;
  DrawOutlined(painter, pictureToView.map(lens.Outline()), Qt::SolidLine);
  if (IsShown(lens_.feather) && Number(lens_.feather) > 0) {
    DrawOutlined(painter, pictureToView.map(lens.FeatherLimit()), Qt::DashLine);
  }
  for (const Handle& handle : Visible(pictureToView)) {
    if (handle.kind != Kind::kRotation) continue;
    QPainterPath stalk(pictureToView.map(PointOf(lens_.position) + lens.Up()));
    stalk.lineTo(handle.position);
    DrawOutlined(painter, stalk, Qt::SolidLine);
  }
}

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
  drag_->turned += std::remainder(direction - drag_->direction, kFullTurn);
  drag_->direction = direction;
  double degrees = std::get<double>(drag_->before) + drag_->turned;
  if ((modifiers & Qt::ShiftModifier) != 0) degrees = std::round(degrees / kTurnStep) * kTurnStep;
  return std::clamp(OnGrid(degrees, 1), -look::kFixedLimit, look::kFixedLimit);
}

}  // namespace vitrell::panel
