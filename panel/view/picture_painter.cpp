// Checkerboard, pictures, mask and divider.
#include "panel/view/picture_painter.h"

#include <algorithm>

namespace vitrell::panel {
namespace {

constexpr int kTile = 8;
constexpr QRgb kMaskColour = qRgb(255, 0, 0);
constexpr int kMaskOpacity = 128;
constexpr double kKnobRadius = 7;
// From this size on the pixels themselves are to be seen.
constexpr double kPixelsShow = 2;

QImage Checkerboard() {
  QImage tiles(2 * kTile, 2 * kTile, QImage::Format_RGB32);
  tiles.fill(QColor(102, 102, 102));
  QPainter painter(&tiles);
  const QColor light(153, 153, 153);
  painter.fillRect(0, 0, kTile, kTile, light);
  painter.fillRect(kTile, kTile, kTile, kTile, light);
  return tiles;
}

void DrawCheckerboard(QPainter& painter, const QRectF& place) {
  static const QBrush kCheckerboard(Checkerboard());
  painter.setBrushOrigin(place.topLeft());
  painter.fillRect(place, kCheckerboard);
}

void DrawImage(QPainter& painter, const QImage& image, const QRectF& place) {
  if (image.isNull()) return;
  painter.setRenderHint(QPainter::SmoothPixmapTransform,
                        place.width() < image.width() * kPixelsShow);
  painter.drawImage(place, image);
}

// Behind an opaque picture nobody sees the checkerboard. Qt shares it out among threads, for all of
// which the window would wait.
void DrawBacked(QPainter& painter, const QImage& image, const QRectF& place) {
  if (image.isNull() || image.hasAlphaChannel()) DrawCheckerboard(painter, place);
  DrawImage(painter, image, place);
}

}  // namespace

QImage MaskOverlay(const QImage& mask) {
  if (mask.isNull()) return {};
  const QImage grey = mask.convertToFormat(QImage::Format_Grayscale8);
  QImage overlay(grey.size(), QImage::Format_ARGB32);
  for (int y = 0; y < grey.height(); ++y) {
    const uchar* const from = grey.constScanLine(y);
    auto* const to = reinterpret_cast<QRgb*>(overlay.scanLine(y));
    for (int x = 0; x < grey.width(); ++x) {
      const int opacity = (255 - from[x]) * kMaskOpacity / 255;
      to[x] = (kMaskColour & 0xffffffU) | static_cast<QRgb>(opacity) << 24U;
    }
  }
  return overlay;
}

void PaintPicture(QPainter& painter, const PictureLayers& layers, const QRectF& place,
                  double dividerX) {
  painter.save();
  DrawBacked(painter, layers.result.isNull() ? layers.before : layers.result, place);
  DrawImage(painter, layers.maskOverlay, place);
  const double left = std::clamp(dividerX, place.left(), place.right());
  if (left > place.left()) {
    painter.setClipRect(QRectF(place.topLeft(), QPointF(left, place.bottom())));
    DrawBacked(painter, layers.before, place);
  }
  painter.restore();
}

void PaintDivider(QPainter& painter, const QRectF& place, double dividerX) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::black, 3));
  painter.drawLine(QPointF(dividerX, place.top()), QPointF(dividerX, place.bottom()));
  painter.setPen(QPen(Qt::white, 1));
  painter.drawLine(QPointF(dividerX, place.top()), QPointF(dividerX, place.bottom()));
  painter.setBrush(Qt::white);
  painter.setPen(QPen(Qt::black, 1));
  painter.drawEllipse(QPointF(dividerX, place.center().y()), kKnobRadius, kKnobRadius);
  painter.restore();
}

}  // namespace vitrell::panel
