// What mouse and keys do in the picture view.
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "panel/view/handles.h"
#include "panel/view/picture_view.h"

namespace vitrell::panel {
namespace {

constexpr double kWheelNotch = 120;  // eighths of a degree

}  // namespace

void PictureView::mousePressEvent(QMouseEvent* event) {
  const QPointF position = event->position();
  grabbed_ = position;
  const bool left = event->button() == Qt::LeftButton;
  if (picking_ >= 0 && event->button() == Qt::RightButton) {
    EndPicking();
  } else if (event->button() == Qt::MiddleButton || (left && spaceHeld_)) {
    hand_ = Hand::kPanning;
  } else if (left && picking_ >= 0) {
    const int control = picking_;
    EndPicking();
    handles_->PlacePoint(control, transform_.ToPicture(position), EditPhase::kDone);
  } else if (left && HandlesShow() && handles_->Press(position, transform_.ToView())) {
    hand_ = Hand::kHandle;
  } else if (left && NearDivider(position)) {
    hand_ = Hand::kDividing;
  }
  UpdateCursor(position);
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF position = event->position();
  const QRectF place = transform_.PictureRect();
  switch (hand_) {
    case Hand::kPanning:
      transform_.Pan(position - grabbed_);
      TransformChanged();
      break;
    case Hand::kDividing:
      divider_ = std::clamp((position.x() - place.left()) / place.width(), 0.0, 1.0);
      update();
      break;
    case Hand::kHandle:
      handles_->Move(position, event->modifiers());
      break;
    case Hand::kFree:
      UpdateCursor(position);
      break;
  }
  grabbed_ = position;
  ShowProbe(position);
}

void PictureView::mouseReleaseEvent(QMouseEvent* event) {
  if (hand_ == Hand::kHandle) handles_->Release();
  hand_ = Hand::kFree;
  UpdateCursor(event->position());
}

void PictureView::leaveEvent(QEvent* /*event*/) { probeLabel_->hide(); }

void PictureView::wheelEvent(QWheelEvent* event) {
  const double notches = event->angleDelta().y() / kWheelNotch;
  ZoomTo(transform_.Zoom() * std::pow(kZoomStep, notches), event->position());
  event->accept();
}

void PictureView::PickPoint(int control) {
  if (handles_ == nullptr || PictureSize().isEmpty()) return;
  picking_ = control;
  setCursor(Qt::CrossCursor);
  setFocus();
}

void PictureView::EndPicking() {
  picking_ = -1;
  unsetCursor();
}

// The handle under the pointer tells its value; other places tell the picture's.
void PictureView::ShowProbe(const QPointF& position) {
  const QPointF point = transform_.ToPicture(position);
  const int x = static_cast<int>(std::floor(point.x()));
  const int y = static_cast<int>(std::floor(point.y()));
  QString text;
  if (HandlesShow()) {
    const auto handle = handles_->At(position, transform_.ToView());
    if (handle) text = handles_->Hint(*handle);
  }
  if (text.isEmpty() && probeText_ && QRect(QPoint(0, 0), PictureSize()).contains(x, y)) {
    text = probeText_(x, y);
  }
  probeLabel_->setText(text);
  probeLabel_->setVisible(!text.isEmpty());
  PlaceLabels();
}

void PictureView::UpdateCursor(const QPointF& position) {
  if (picking_ >= 0) return setCursor(Qt::CrossCursor);
  if (hand_ == Hand::kPanning) return setCursor(Qt::ClosedHandCursor);
  if (spaceHeld_) return setCursor(Qt::OpenHandCursor);
  if (HandlesShow() && handles_->At(position, transform_.ToView())) {
    return setCursor(Qt::SizeAllCursor);
  }
  if (NearDivider(position)) return setCursor(Qt::SplitHCursor);
  unsetCursor();
}

// Keys that no widget of the window has used.
bool PictureView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == window() && event->type() == QEvent::WindowDeactivate) {
    KeyChanged(Qt::Key_B, false);
    KeyChanged(Qt::Key_Space, false);
  }
  if (watched != window() ||
      (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)) {
    return QWidget::eventFilter(watched, event);
  }
  const auto* const key = static_cast<QKeyEvent*>(event);
  if (key->isAutoRepeat()) return key->key() == Qt::Key_B || key->key() == Qt::Key_Space;
  return KeyChanged(key->key(), event->type() == QEvent::KeyPress);
}

bool PictureView::KeyChanged(int key, bool down) {
  switch (key) {
    case Qt::Key_B:
      beforeHeld_ = down;
      ShowState();
      update();
      return true;
    case Qt::Key_Space:
      spaceHeld_ = down;
      UpdateCursor(grabbed_);
      return true;
    case Qt::Key_Escape:
      if (!down || (picking_ < 0 && hand_ != Hand::kHandle)) return false;
      if (hand_ == Hand::kHandle) handles_->Cancel();
      hand_ = Hand::kFree;
      EndPicking();
      return true;
    default:
      return false;
  }
}

}  // namespace vitrell::panel
