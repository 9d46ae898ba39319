// Fitting, zooming and panning.
#include "panel/view/view_transform.h"

#include <algorithm>

namespace vitrell::panel {
namespace {

// So much of the picture stays in the view when it is panned, in view pixels.
constexpr double kReach = 32;

}  // namespace

void ViewTransform::SetView(const QSizeF& view) {
  const QPointF middle(view_.width() / 2, view_.height() / 2);
  const QPointF shown = ToPicture(middle);
  view_ = view;
  if (fitted_) return Fit();
  origin_ = QPointF(view.width() / 2, view.height() / 2) - shown * zoom_;
  KeepInReach();
}

void ViewTransform::SetPicture(const QSize& picture) {
  if (picture == picture_) return;
  picture_ = picture;
  Fit();
}

void ViewTransform::Fit() {
  fitted_ = true;
  if (picture_.isEmpty()) return;
  zoom_ = std::clamp(std::min(view_.width() / picture_.width(), view_.height() / picture_.height()),
                     kLeastZoom, kMostZoom);
  origin_ = QPointF((view_.width() - picture_.width() * zoom_) / 2,
                    (view_.height() - picture_.height() * zoom_) / 2);
}

void ViewTransform::ZoomTo(double zoom, const QPointF& fixedPoint) {
  const QPointF kept = ToPicture(fixedPoint);
  fitted_ = false;
  zoom_ = std::clamp(zoom, kLeastZoom, kMostZoom);
  origin_ = fixedPoint - kept * zoom_;
}

void ViewTransform::Pan(const QPointF& viewPixels) {
  fitted_ = false;
  origin_ += viewPixels;
  KeepInReach();
}

void ViewTransform::KeepInReach() {
  const QRectF rect = PictureRect();
  const double reachX = std::min({kReach, rect.width(), view_.width()});
  const double reachY = std::min({kReach, rect.height(), view_.height()});
  origin_.setX(std::clamp(origin_.x(), reachX - rect.width(), view_.width() - reachX));
  origin_.setY(std::clamp(origin_.y(), reachY - rect.height(), view_.height() - reachY));
}

QTransform ViewTransform::ToView() const { return {zoom_, 0, 0, zoom_, origin_.x(), origin_.y()}; }

QPointF ViewTransform::ToView(const QPointF& picturePoint) const {
  return origin_ + picturePoint * zoom_;
}

QPointF ViewTransform::ToPicture(const QPointF& viewPoint) const {
  return (viewPoint - origin_) / zoom_;
}

QRectF ViewTransform::PictureRect() const {
  return {origin_, QSizeF(picture_.width() * zoom_, picture_.height() * zoom_)};
}

}  // namespace vitrell::panel
