// Draws the pictures of the view over one another.
#ifndef VITRELL_PANEL_VIEW_PICTURE_PAINTER_H_
#define VITRELL_PANEL_VIEW_PICTURE_PAINTER_H_

#include <QImage>
#include <QPainter>
#include <QRectF>

namespace vitrell::panel {

struct PictureLayers {
  QImage before;
  QImage result;
  QImage maskOverlay;  // null: not shown
};

// Red where the mask is black, transparent where it is white.
QImage MaskOverlay(const QImage& mask);

// Fills the picture's place with a checkerboard, the result, and the mask over it. Left of
// `dividerX`, in the view, lies the picture before. Pictures of any size fill the place.
void PaintPicture(QPainter& painter, const PictureLayers& layers, const QRectF& place,
                  double dividerX);
void PaintDivider(QPainter& painter, const QRectF& place, double dividerX);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_PICTURE_PAINTER_H_
