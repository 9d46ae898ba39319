// Mouse events sent straight to a widget.
#include "panel/hand.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

namespace vitrell::panel {
namespace {

void Send(QWidget* widget, QEvent::Type type, const QPointF& position, Qt::MouseButton button,
          Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
  QMouseEvent event(type, position, widget->mapToGlobal(position), button, buttons, modifiers);
  QApplication::sendEvent(widget, &event);
}

}  // namespace

void ShowActive(QWidget& widget) {
  widget.show();
  widget.activateWindow();
  (void)QTest::qWaitForWindowActive(&widget);
}

void PressMouse(QWidget* widget, const QPointF& position, Qt::MouseButton button,
                Qt::KeyboardModifiers modifiers) {
  Send(widget, QEvent::MouseButtonPress, position, button, button, modifiers);
}

void MoveMouse(QWidget* widget, const QPointF& position, Qt::MouseButton button,
               Qt::KeyboardModifiers modifiers) {
  Send(widget, QEvent::MouseMove, position, Qt::NoButton, button, modifiers);
}

void ReleaseMouse(QWidget* widget, const QPointF& position, Qt::MouseButton button) {
  Send(widget, QEvent::MouseButtonRelease, position, button, Qt::NoButton, Qt::NoModifier);
}

void Drag(QWidget* widget, const std::vector<QPointF>& way, Qt::MouseButton button,
          Qt::KeyboardModifiers modifiers) {
  PressMouse(widget, way.front(), button, modifiers);
  for (const QPointF& position : way) MoveMouse(widget, position, button, modifiers);
  ReleaseMouse(widget, way.back(), button);
}

void TurnWheel(QWidget* widget, const QPointF& position, int notches,
               Qt::KeyboardModifiers modifiers) {
  QWheelEvent event(position, widget->mapToGlobal(position), QPoint(), QPoint(0, notches * 120),
                    Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &event);
}

}  // namespace vitrell::panel
