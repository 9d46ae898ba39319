// The lens's shapes, as the effect's mask has them.
#include "panel/view/lens_geometry.h"

#include <QLineF>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

namespace vitrell::panel {
namespace {

// The effect's sizes, as shares of the picture's width or height.
constexpr double kShortSide = 0.35;
constexpr double kLongSide = 0.75;
// The least width of the soft edge, in picture pixels.
constexpr double kEdgePixels = 1.5;
// A soft edge more than twice the rectangle's half side no longer moves the inner rectangle.
constexpr double kWideBand = 2;
// A custom lens is sampled one pixel before the place that it is laid out for, and the middle of a
// pixel is half a pixel from its corner.
constexpr double kCustomShift = 0.5;

double HalfOfRoot3() { return std::numbers::sqrt3 / 2; }

QPainterPath TrianglePath(double radius) {
  QPainterPath path(QPointF(0, -radius));
  path.lineTo(HalfOfRoot3() * radius, radius / 2);
  path.lineTo(-HalfOfRoot3() * radius, radius / 2);
  path.closeSubpath();
  return path;
}

// Everything at most `distance` from the shape.
QPainterPath Grown(const QPainterPath& path, double distance) {
  QPainterPathStroker stroker;
  stroker.setWidth(2 * distance);
  stroker.setJoinStyle(Qt::RoundJoin);
  return path.united(stroker.createStroke(path)).simplified();
}

}  // namespace

LensControls LensControls::Of(const look::Panel& panel) {
  const auto find = [&](std::string_view name) {
    const look::Control* const control = panel.Find(name);
    return control == nullptr ? -1 : static_cast<int>(control - panel.controls.data());
  };
  return {.type = find("lens.type"),
          .placement = find("lens.placement"),
          .feather = find("lens.feather"),
          .position = find("lens.position"),
          .scale = find("lens.scale"),
          .scaleWidth = find("lens.scale-width"),
          .scaleHeight = find("lens.scale-height"),
          .rotation = find("lens.rotation")};
}

bool LensControls::IsComplete() const {
  return std::min({type, placement, feather, position, scale, scaleWidth, scaleHeight, rotation}) >=
         0;
}

LensGeometry::LensGeometry(const LensSetup& setup) : setup_(setup) {
  hasShape_ = setup.type >= kLensCircle && setup.type <= kLensCustom && setup.scaleWidth > 0 &&
              setup.scaleHeight > 0 && !setup.picture.isEmpty() &&
              (setup.type != kLensCustom || !setup.lensPicture.isEmpty());
  if (!hasShape_) return;
  radius_ = kShortSide * setup.picture.width();
  widthAnchor_ = {radius_, 0};
  heightAnchor_ = {0, -radius_};
  scaleAnchor_ = QPointF(radius_, radius_) * std::numbers::sqrt2 / 2;
  if (setup.type == kLensWideRectangle || setup.type == kLensTallRectangle) PlaceRectangle();
  if (setup.type == kLensTriangle) PlaceTriangle();
  if (setup.type == kLensCustom) PlaceCustom();
}

void LensGeometry::PlaceRectangle() {
  const bool wide = setup_.type == kLensWideRectangle;
  halfWidth_ = (wide ? kLongSide : kShortSide) * setup_.picture.width();
  halfHeight_ = (wide ? kShortSide : kLongSide) * setup_.picture.height();
  widthAnchor_ = {halfWidth_, 0};
  heightAnchor_ = {0, -halfHeight_};
  scaleAnchor_ = {halfWidth_, halfHeight_};
}

void LensGeometry::PlaceTriangle() {
  widthAnchor_ = {HalfOfRoot3() * radius_, radius_ / 2};
  heightAnchor_ = {0, -radius_};
  scaleAnchor_ = {HalfOfRoot3() * radius_ / 2, -radius_ / 4};
}

// The size on the picture, and the effect's own offset.
void LensGeometry::PlaceCustom() {
  const QSizeF size = setup_.stretched ? setup_.picture : setup_.lensPicture;
  const double shiftX = kCustomShift * size.width() / setup_.lensPicture.width();
  const double shiftY = kCustomShift * size.height() / setup_.lensPicture.height();
  lensRect_ = QRectF(QPointF(shiftX - size.width() / 2, shiftY - size.height() / 2), size);
  QTransform rotation;
  rotation.rotate(setup_.degrees);
  const QRectF around =
      rotation.mapRect(QRectF(-size.width() / 2, -size.height() / 2, size.width(), size.height()));
  widthAnchor_ = {around.right(), 0};
  heightAnchor_ = {0, around.top()};
  scaleAnchor_ = around.bottomRight();
}

QTransform LensGeometry::ShapeToPicture() const {
  if (setup_.type != kLensCustom) return ToPicture();
  QTransform transform = ToPicture();
  transform.rotate(setup_.degrees);
  return transform;
}

QTransform LensGeometry::ToPicture() const {
  QTransform transform = WithoutScale();
  transform.scale(setup_.scaleWidth, setup_.scaleHeight);
  return transform;
}

QTransform LensGeometry::WithoutScale() const {
  QTransform transform = QTransform::fromTranslate(setup_.centre.x(), setup_.centre.y());
  if (setup_.type != kLensCustom) transform.rotate(setup_.degrees);
  return transform;
}

QPainterPath LensGeometry::Outline() const {
  QPainterPath path;
  if (!hasShape_) return path;
  switch (setup_.type) {
    case kLensCircle:
      path.addEllipse(QPointF(0, 0), radius_, radius_);
      break;
    case kLensTriangle:
      path = TrianglePath(radius_);
      break;
    case kLensCustom:
      path.addRect(lensRect_);
      break;
    default:
      path.addRect(-halfWidth_, -halfHeight_, 2 * halfWidth_, 2 * halfHeight_);
      break;
  }
  return ShapeToPicture().map(path);
}

// The width of the soft edge as a share of the shape: the feather and what smooths the edge, which
// the effect measures by the width also where the height has another scale.
double LensGeometry::Band() const {
  const double size = setup_.type == kLensWideRectangle ? kShortSide * setup_.picture.height()
                                                        : kShortSide * setup_.picture.width();
  return setup_.feather + kEdgePixels / (setup_.scaleWidth * size);
}

QPainterPath LensGeometry::BandedRectangle() const {
  const double side = std::min(halfWidth_, halfHeight_);
  const double band = side * Band();
  const double inset = Band() > kWideBand ? side : band / 2;
  const QPointF corner(halfWidth_ - inset + band, halfHeight_ - inset + band);
  QPainterPath path;
  path.addRoundedRect(QRectF(-corner, corner), band, band);
  return path;
}

QPainterPath LensGeometry::FeatherLimit() const {
  QPainterPath path;
  if (!hasShape_) return path;
  switch (setup_.type) {
    case kLensCircle:
      path.addEllipse(QPointF(0, 0), radius_ * (1 + Band() / 2), radius_ * (1 + Band() / 2));
      break;
    case kLensTriangle:
      path = Grown(TrianglePath(radius_), radius_ * Band());
      break;
    case kLensCustom:
      return path;
    default:
      path = BandedRectangle();
      break;
  }
  return ShapeToPicture().map(path);
}

QPointF LensGeometry::FeatherAnchor() const {
  const double side = std::min(halfWidth_, halfHeight_);
  switch (setup_.type) {
    case kLensCircle:
      return QPointF(1, -1) * (radius_ * (1 + Band() / 2) / std::numbers::sqrt2);
    case kLensTriangle:
      return {0, radius_ * (0.5 + Band())};
    default:
      return {halfWidth_ / 2,
              -(halfHeight_ + side * (Band() > kWideBand ? Band() - 1 : Band() / 2))};
  }
}

double LensGeometry::FeatherAt(const QPointF& anchorPoint) const {
  double band = 0;
  if (setup_.type == kLensCircle) {
    band = 2 * (std::hypot(anchorPoint.x(), anchorPoint.y()) / radius_ - 1);
  } else if (setup_.type == kLensTriangle) {
    band = anchorPoint.y() / radius_ - 0.5;
  } else {
    const double beyond = (-anchorPoint.y() - halfHeight_) / std::min(halfWidth_, halfHeight_);
    band = beyond > 1 ? beyond + 1 : 2 * beyond;
  }
  return std::max(0.0, band - (Band() - setup_.feather));
}

double LensGeometry::DirectionOf(const QPointF& picturePoint) const {
  QPointF offset = picturePoint - setup_.centre;
  if (setup_.type == kLensCustom && hasShape_) {
    offset = {offset.x() / setup_.scaleWidth, offset.y() / setup_.scaleHeight};
  }
  return std::atan2(offset.x(), -offset.y()) * 180 / std::numbers::pi;
}

QPointF LensGeometry::Up() const {
  const double height = setup_.type == kLensCustom ? lensRect_.height() / 2 : -heightAnchor_.y();
  return ShapeToPicture().map(QPointF(0, -height)) - setup_.centre;
}

}  // namespace vitrell::panel
