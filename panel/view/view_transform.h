// Where the picture lies in the view.
#ifndef VITRELL_PANEL_VIEW_VIEW_TRANSFORM_H_
#define VITRELL_PANEL_VIEW_VIEW_TRANSFORM_H_

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QTransform>

namespace vitrell::panel {

// Zoom is in view pixels per picture pixel. The picture's coordinates are continuous: pixel (0, 0)
// covers 0 to 1.
class ViewTransform {
 public:
  static constexpr double kLeastZoom = 0.01;
  static constexpr double kMostZoom = 64;

  // While the picture is fitted, it stays so in a view of another size; otherwise the point in the
  // middle of the view stays there.
  void SetView(const QSizeF& view);
  // A picture of another size is fitted.
  void SetPicture(const QSize& picture);

  void Fit();
  // `fixedPoint` of the view keeps showing the same point of the picture.
  void ZoomTo(double zoom, const QPointF& fixedPoint);
  void Pan(const QPointF& viewPixels);

  QSize Picture() const { return picture_; }
  double Zoom() const { return zoom_; }
  bool IsFitted() const { return fitted_; }
  QTransform ToView() const;
  QPointF ToView(const QPointF& picturePoint) const;
  QPointF ToPicture(const QPointF& viewPoint) const;
  QRectF PictureRect() const;  // in the view

 private:
  void KeepInReach();

  QSizeF view_{1, 1};
  QSize picture_;
  double zoom_ = 1;
  QPointF origin_;  // of the picture, in the view
  bool fitted_ = true;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_VIEW_TRANSFORM_H_
