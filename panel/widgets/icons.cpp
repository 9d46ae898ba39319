// Icons drawn with a few lines on a grid of 16 units.
#include "panel/widgets/icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <functional>

namespace vitrell::panel {
namespace {

constexpr int kUnits = 16;
constexpr int kPixelsPerUnit = 4;  // enough for screens of any density

QPixmap Drawn(const QColor& colour, const std::function<void(QPainter&)>& draw) {
  QPixmap pixmap(kUnits * kPixelsPerUnit, kUnits * kPixelsPerUnit);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(kPixelsPerUnit, kPixelsPerUnit);
  painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap));
  draw(painter);
  return pixmap;
}

void DrawStopwatch(QPainter& painter) {
  painter.drawEllipse(QPointF(8, 9), 5, 5);
  painter.drawLine(QPointF(8, 9), QPointF(8, 6));
  painter.drawLine(QPointF(6.5, 2), QPointF(9.5, 2));
  painter.drawLine(QPointF(8, 2), QPointF(8, 4));
}

void DrawCross(QPainter& painter) {
  painter.drawEllipse(QPointF(8, 8), 3.5, 3.5);
  for (const QPointF& direction : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
    painter.drawLine(QPointF(8, 8) + direction * 2, QPointF(8, 8) + direction * 6.5);
  }
}

void DrawTurnBack(QPainter& painter) {
  QPainterPath path(QPointF(4, 5));
  path.arcTo(QRectF(3, 3.5, 10, 10), 140, -290);
  painter.drawPath(path);
  painter.drawLine(QPointF(4, 5), QPointF(3.5, 1.5));
  painter.drawLine(QPointF(4, 5), QPointF(7.5, 5));
}

QIcon PlainIcon(const QPalette& palette, const std::function<void(QPainter&)>& draw) {
  QIcon icon(Drawn(palette.color(QPalette::ButtonText), draw));
  icon.addPixmap(Drawn(palette.color(QPalette::Disabled, QPalette::ButtonText), draw),
                 QIcon::Disabled);
  return icon;
}

}  // namespace

QIcon StopwatchIcon(const QPalette& palette) {
  QIcon icon = PlainIcon(palette, DrawStopwatch);
  icon.addPixmap(Drawn(palette.color(QPalette::Highlight), DrawStopwatch), QIcon::Normal,
                 QIcon::On);
  return icon;
}

QIcon PickIcon(const QPalette& palette) { return PlainIcon(palette, DrawCross); }

QIcon ResetIcon(const QPalette& palette) { return PlainIcon(palette, DrawTurnBack); }

}  // namespace vitrell::panel
