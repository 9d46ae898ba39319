// A hand with a mouse, for widgets.
#ifndef VITRELL_TESTS_PANEL_HAND_H_
#define VITRELL_TESTS_PANEL_HAND_H_

#include <QPointF>
#include <QWidget>
#include <vector>

namespace vitrell::panel {

// Shows the widget as a window that has the keyboard.
void ShowActive(QWidget& widget);

// Positions are the widget's own.
void PressMouse(QWidget* widget, const QPointF& position, Qt::MouseButton button = Qt::LeftButton,
                Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void MoveMouse(QWidget* widget, const QPointF& position, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void ReleaseMouse(QWidget* widget, const QPointF& position,
                  Qt::MouseButton button = Qt::LeftButton);
void Drag(QWidget* widget, const std::vector<QPointF>& way, Qt::MouseButton button = Qt::LeftButton,
          Qt::KeyboardModifiers modifiers = Qt::NoModifier);
void TurnWheel(QWidget* widget, const QPointF& position, int notches,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);

}  // namespace vitrell::panel

#endif  // VITRELL_TESTS_PANEL_HAND_H_
