// Which handles there are, and how they look.
#include "panel/view/handles.h"

#include <QLineF>
#include <algorithm>

#include "look/value_text.h"
#include "panel/view/effect_position.h"

namespace vitrell::panel {
namespace {

// In view pixels.
constexpr double kHandleRadius = 5;
constexpr double kGrabRadius = 10;
constexpr double kStalk = 28;  // from the top of the lens to its rotation handle

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

}  // namespace vitrell::panel
