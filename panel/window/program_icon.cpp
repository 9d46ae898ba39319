// A lens in the night, on a grid of 128 units.
#include "panel/window/program_icon.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QRadialGradient>

namespace vitrell::panel {
namespace {

constexpr double kUnits = 128;

void DrawNight(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor("#20242c"));
  painter.drawRoundedRect(QRectF(8, 8, 112, 112), 20, 20);
  painter.setBrush(QColor("#ffb347"));
  painter.drawEllipse(QPointF(30, 96), 5, 5);
  painter.drawEllipse(QPointF(100, 30), 5, 5);
  painter.drawEllipse(QPointF(102, 98), 4, 4);
}

void DrawLens(QPainter& painter) {
  QRadialGradient glass(QPointF(53, 48), 61);
  glass.setColorAt(0, QColor("#f4fbff"));
  glass.setColorAt(0.45, QColor("#8fc7ee"));
  glass.setColorAt(1, QColor("#2c4f9e"));
  painter.setPen(QPen(QColor("#e8edf4"), 5));
  painter.setBrush(glass);
  painter.drawEllipse(QPointF(62, 62), 38, 38);
  QPainterPath shine;
  shine.arcMoveTo(QRectF(39, 35, 50, 50), 156);
  shine.arcTo(QRectF(39, 35, 50, 50), 156, -54);
  painter.setPen(QPen(Qt::white, 5, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(shine);
}

}  // namespace

QIcon ProgramIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / kUnits, size / kUnits);
    DrawNight(painter);
    DrawLens(painter);
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

}  // namespace vitrell::panel
