// Rows of marks.
#include "panel/time/key_tracks.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <iterator>

namespace vitrell::panel {
namespace {

constexpr int kRowHeight = 22;
constexpr double kTrackMarkRadius = 6;

// The sign says how the value leaves the key.
QPainterPath MarkOf(look::Stretch stretch, const QPointF& middle) {
  QPainterPath path;
  const double r = kTrackMarkRadius;
  switch (stretch) {
    case look::Stretch::kHold:
      path.addRect(QRectF(middle - QPointF(r, r) * 0.8, QSizeF(2 * r, 2 * r) * 0.8));
      break;
    case look::Stretch::kSmooth:
      path.addEllipse(middle, r, r);
      break;
    case look::Stretch::kEased:
      path.addPolygon(QPolygonF{middle + QPointF(-r, -r), middle + QPointF(r, -r),
                                middle + QPointF(r / 3, 0), middle + QPointF(r, r),
                                middle + QPointF(-r, r), middle + QPointF(-r / 3, 0)});
      path.closeSubpath();
      break;
    case look::Stretch::kLinear:
      path.addPolygon(QPolygonF{middle + QPointF(0, -r), middle + QPointF(r, 0),
                                middle + QPointF(0, r), middle + QPointF(-r, 0)});
      path.closeSubpath();
      break;
  }
  return path;
}

}  // namespace

KeyTracks::KeyTracks(const look::Panel& panel, QWidget* parent) : QWidget(parent), panel_(panel) {
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(tr("Keys"));
  setAccessibleDescription(
      tr("Up and Down choose a control, Ctrl with Left and Right a key; Left and Right move it"));
}

QSize KeyTracks::sizeHint() const {
  return {600, std::max<int>(1, static_cast<int>(keys_.size())) * kRowHeight};
}

TimeScale KeyTracks::Scale() const {
  return TimeScale::For(static_cast<int>(base_.length), width());
}

void KeyTracks::SetBase(const look::TimeBase& base) {
  base_ = base;
  update();
}

void KeyTracks::ShowFrame(int frame) {
  frame_ = frame;
  update();
}

void KeyTracks::ShowKeys(int control, const look::Keys& keys) {
  if (keys.empty()) {
    keys_.erase(control);
  } else {
    keys_[control] = keys;
  }
  // Of the selection stays what is still there.
  const KeyFrames frames = FramesOf(keys, base_);
  KeyFrames kept;
  for (const double frame : selection_[control]) {
    if (frames.contains(frame)) kept.insert(frame);
  }
  Select(control, kept);
  setMinimumHeight(sizeHint().height());
  update();
}

void KeyTracks::Choose(int control) {
  chosen_ = control;
  update();
}

void KeyTracks::Select(int control, const KeyFrames& frames) {
  if (frames.empty()) {
    selection_.erase(control);
  } else {
    selection_[control] = frames;
  }
  update();
}

QPointF KeyTracks::PlaceOf(int control, double frame) const {
  const auto row = std::distance(keys_.begin(), keys_.find(control));
  return {Scale().XOf(frame), (static_cast<double>(row) + 0.5) * kRowHeight};
}

std::optional<int> KeyTracks::RowAt(double y) const {
  const auto row = static_cast<std::ptrdiff_t>(std::floor(y / kRowHeight));
  if (row < 0 || row >= std::ssize(keys_)) return std::nullopt;
  return std::next(keys_.begin(), row)->first;
}

std::optional<KeyTracks::Place> KeyTracks::KeyAt(const QPointF& position) const {
  const std::optional<int> control = RowAt(position.y());
  if (!control) return std::nullopt;
  std::optional<Place> nearest;
  double least = kGrabRadius;
  for (const double frame : FramesOf(keys_.at(*control), base_)) {
    const double distance = std::abs(PlaceOf(*control, frame).x() - position.x());
    if (distance > least) continue;
    least = distance;
    nearest = Place{*control, frame};
  }
  return nearest;
}

void KeyTracks::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setRenderHint(QPainter::Antialiasing);
  int row = 0;
  for (const auto& [control, keys] : keys_) PaintRow(painter, row++, control, keys);
  painter.setPen(palette().color(QPalette::Highlight));
  const double x = Scale().XOf(frame_);
  painter.drawLine(QPointF(x, 0), QPointF(x, height()));
  if (hasFocus()) painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void KeyTracks::PaintRow(QPainter& painter, int row, int control, const look::Keys& keys) const {
  const QRect place(0, row * kRowHeight, width(), kRowHeight);
  if (control == chosen_) painter.fillRect(place, palette().color(QPalette::AlternateBase));
  painter.setPen(palette().color(QPalette::Text));
  const QRect label(4, place.top(), kTrackLabelWidth - 8, kRowHeight);
  const QString name =
      QString::fromStdString(panel_.controls.at(static_cast<std::size_t>(control)).name);
  painter.drawText(label, Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(name, Qt::ElideMiddle, label.width()));
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawLine(QPointF(kTrackLabelWidth, place.center().y()),
                   QPointF(width(), place.center().y()));
  const auto selected = selection_.find(control);
  for (const look::Key& key : keys) {
    const double frame = key.time.Frame(base_);
    const bool isSelected = selected != selection_.end() && selected->second.contains(frame);
    painter.setPen(palette().color(QPalette::Text));
    painter.setBrush(palette().color(isSelected ? QPalette::Highlight : QPalette::Button));
    painter.drawPath(MarkOf(key.stretch, PlaceOf(control, frame)));
  }
}

}  // namespace vitrell::panel
