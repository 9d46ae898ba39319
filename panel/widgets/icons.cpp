// Icons drawn with a few lines on a grid of 16 units.
#include "panel/widgets/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace vitrell::panel {
namespace {

constexpr int kUnits = 16;
constexpr double kLineWidth = 1.5;

using Drawing = void (*)(QPainter&);

// Takes its colour from the palette when it is painted, so that it follows a desktop that turns
// dark.
class DrawnIcon : public QIconEngine {
 public:
  explicit DrawnIcon(Drawing drawing) : drawing_(drawing) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const QPalette palette = QGuiApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const auto role = state == QIcon::On ? QPalette::Highlight : QPalette::ButtonText;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / double{kUnits}, rect.height() / double{kUnits});
    painter->setPen(QPen(palette.color(group, role), kLineWidth, Qt::SolidLine, Qt::RoundCap));
    drawing_(*painter);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap pixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return pixmap;
  }

  QIconEngine* clone() const override { return new DrawnIcon(drawing_); }

 private:
  Drawing drawing_;
};

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

}  // namespace

QIcon StopwatchIcon() { return QIcon(new DrawnIcon(DrawStopwatch)); }

QIcon PickIcon() { return QIcon(new DrawnIcon(DrawCross)); }

QIcon ResetIcon() { return QIcon(new DrawnIcon(DrawTurnBack)); }

}  // namespace vitrell::panel
