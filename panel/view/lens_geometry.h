// Where the lens lies in the picture: its outline, the end of its feather, and where its handles
// stand.
#ifndef VITRELL_PANEL_VIEW_LENS_GEOMETRY_H_
#define VITRELL_PANEL_VIEW_LENS_GEOMETRY_H_

#include <QPainterPath>
#include <QPointF>
#include <QSize>
#include <QSizeF>
#include <QTransform>

#include "look/control.h"

namespace vitrell::panel {

// The lens's controls, as positions in look::Panel::controls; -1 for what the panel does not have.
struct LensControls {
  int type = -1;
  int placement = -1;
  int feather = -1;
  int position = -1;
  int scale = -1;
  int scaleWidth = -1;
  int scaleHeight = -1;
  int rotation = -1;

  static LensControls Of(const look::Panel& panel);
  bool IsComplete() const;
};

// The choices of the lens type.
enum LensType {
  kLensNone = 1,
  kLensCircle = 2,
  kLensWideRectangle = 3,
  kLensTallRectangle = 4,
  kLensTriangle = 5,
  kLensCustom = 6,
};

struct LensSetup {
  int type = kLensNone;
  bool stretched = false;  // a custom lens: its picture is stretched to the whole picture
  QPointF centre;          // continuous: the middle of pixel (0, 0) is (0.5, 0.5)
  double scaleWidth = 1;   // with the common scale
  double scaleHeight = 1;
  double degrees = 0;  // clockwise
  double feather = 0;  // as a share of the lens's size
  QSize picture;
  QSize lensPicture;  // of a custom lens
};

// Shape coordinates have their origin at the lens's centre, y downwards, before scale and rotation.
class LensGeometry {
 public:
  explicit LensGeometry(const LensSetup& setup);

  // Not for the type None, for a scale of 0, or for a custom lens without a picture.
  bool HasShape() const { return hasShape_; }

  // In the picture. The feather of circles and rectangles is centred on the outline, that of the
  // triangle begins there; the limit is where the lens has ended altogether.
  QPainterPath Outline() const;
  QPainterPath FeatherLimit() const;

  // Where the handles are, in the coordinates of ToPicture.
  QPointF WidthAnchor() const { return widthAnchor_; }
  QPointF HeightAnchor() const { return heightAnchor_; }
  QPointF ScaleAnchor() const { return scaleAnchor_; }
  QPointF FeatherAnchor() const;
  // The feather, as a share, that brings the limit to this place.
  double FeatherAt(const QPointF& anchorPoint) const;

  // From anchors into the picture, with and without the scales. Drawn lenses are scaled, then
  // rotated. A custom lens is rotated, then scaled, so that its anchors do not rotate with it.
  QTransform ToPicture() const;
  QTransform WithoutScale() const;
  // The direction from the centre to a point of the picture, in degrees clockwise from upwards,
  // which follows the rotation.
  double DirectionOf(const QPointF& picturePoint) const;
  // From the centre to the top of the lens, in the picture.
  QPointF Up() const;

 private:
  void PlaceRectangle();
  void PlaceTriangle();
  void PlaceCustom();
  QTransform ShapeToPicture() const;
  double Band() const;
  QPainterPath BandedRectangle() const;

  LensSetup setup_;
  bool hasShape_ = false;
  double radius_ = 0;      // circle, triangle
  double halfWidth_ = 0;   // rectangles
  double halfHeight_ = 0;  // rectangles
  QRectF lensRect_;        // custom
  QPointF widthAnchor_;
  QPointF heightAnchor_;
  QPointF scaleAnchor_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_LENS_GEOMETRY_H_
