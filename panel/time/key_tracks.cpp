// Rows of marks: painting, selecting and dragging.
#include "panel/time/key_tracks.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace vitrell::panel {
namespace {

constexpr int kRowHeight = 22;
constexpr double kMarkRadius = 6;
constexpr double kGrabRadius = 8;

// The sign says how the value leaves the key.
QPainterPath MarkOf(look::Stretch stretch, const QPointF& middle) {
  QPainterPath path;
  const double r = kMarkRadius;
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

void KeyTracks::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const std::optional<int> row = RowAt(event->position().y());
  if (row && *row != chosen_) {
    Choose(*row);
    Q_EMIT Chosen(*row);
  }
  const bool adds = (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)) != 0;
  const std::optional<Place> key = KeyAt(event->position());
  const bool isSelected =
      key && selection_.contains(key->control) && selection_.at(key->control).contains(key->frame);
  if (!adds && !isSelected) selection_.clear();
  if (key) {
    KeyFrames& frames = selection_[key->control];
    if (adds && isSelected) {
      frames.erase(key->frame);
    } else {
      frames.insert(key->frame);
    }
    drag_ = Drag{event->position().x(), 0, false, false, keys_, selection_};
  }
  update();
}

void KeyTracks::mouseMoveEvent(QMouseEvent* event) {
  if (!drag_) return;
  const double frames =
      std::round((event->position().x() - drag_->startX) / Scale().PixelsPerFrame());
  const bool copy = (event->modifiers() & Qt::AltModifier) != 0;
  if (frames == drag_->moved && copy == drag_->copy) return;
  drag_->moved = frames;
  drag_->copy = copy;
  drag_->shifted = true;
  Shift(*drag_, EditPhase::kDragging);
}

void KeyTracks::mouseReleaseEvent(QMouseEvent* event) {
  if (!drag_ || event->button() != Qt::LeftButton) return;
  const Drag drag = *std::exchange(drag_, std::nullopt);
  if (drag.shifted) Shift(drag, EditPhase::kDone);
}

// Rows do not move on when a key of another one has reached the end of the clip.
void KeyTracks::Shift(const Drag& drag, EditPhase phase) {
  double reach = drag.moved;
  for (const auto& [control, frames] : drag.selection) reach = ReachOf(frames, reach, base_);
  for (const auto& [control, frames] : drag.selection) {
    if (frames.empty()) continue;
    const look::Keys& before = drag.keys.at(control);
    keys_[control] = drag.copy ? CopiedKeys(before, frames, reach, base_)
                               : MovedKeys(before, frames, reach, base_);
    KeyFrames moved;
    for (const double frame : frames) moved.insert(frame + reach);
    Select(control, moved);
    Q_EMIT KeysEdited(control, keys_[control], phase);
  }
}

void KeyTracks::MoveSelected(double frames, bool copy) {
  Shift(Drag{0, frames, copy, true, keys_, selection_}, EditPhase::kDone);
}

void KeyTracks::DeleteSelected() {
  const std::map<int, KeyFrames> selection = std::exchange(selection_, {});
  for (const auto& [control, frames] : selection) {
    Q_EMIT KeysEdited(control, RemainingKeys(keys_.at(control), frames, base_), EditPhase::kDone);
  }
  update();
}

void KeyTracks::StretchSelected(look::Stretch stretch) {
  // Showing the changed keys touches the selection.
  const std::map<int, KeyFrames> selection = selection_;
  for (const auto& [control, frames] : selection) {
    const look::Control& named = panel_.controls.at(static_cast<std::size_t>(control));
    const look::Keys changed = StretchedKeys(named, keys_.at(control), frames, stretch, base_);
    if (changed != keys_.at(control)) Q_EMIT KeysEdited(control, changed, EditPhase::kDone);
  }
}

void KeyTracks::keyPressEvent(QKeyEvent* event) {
  const bool control = (event->modifiers() & Qt::ControlModifier) != 0;
  const bool alt = (event->modifiers() & Qt::AltModifier) != 0;
  switch (event->key()) {
    case Qt::Key_Up:
      return ChooseRow(-1);
    case Qt::Key_Down:
      return ChooseRow(1);
    case Qt::Key_Left:
    case Qt::Key_Right: {
      const bool forward = event->key() == Qt::Key_Right;
      return control ? SelectNextKey(forward) : MoveSelected(forward ? 1 : -1, alt);
    }
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      return DeleteSelected();
    default:
      QWidget::keyPressEvent(event);
  }
}

void KeyTracks::ChooseRow(int step) {
  if (keys_.empty()) return;
  auto row = keys_.find(chosen_);
  if (row == keys_.end()) {
    row = keys_.begin();
  } else if (step < 0 && row != keys_.begin()) {
    --row;
  } else if (step > 0 && std::next(row) != keys_.end()) {
    ++row;
  }
  Choose(row->first);
  Q_EMIT Chosen(row->first);
}

// From the selected key, or from the frame shown.
void KeyTracks::SelectNextKey(bool forward) {
  if (!keys_.contains(chosen_)) return ChooseRow(0);
  const KeyFrames frames = FramesOf(keys_.at(chosen_), base_);
  const bool isSelected = selection_.contains(chosen_);
  const double here = !isSelected ? frame_
                      : forward   ? *selection_.at(chosen_).rbegin()
                                  : *selection_.at(chosen_).begin();
  // An unselected key at the frame shown counts as the next one.
  auto next = isSelected ? frames.upper_bound(here) : frames.lower_bound(here);
  if (!forward) {
    next = isSelected ? frames.lower_bound(here) : frames.upper_bound(here);
    if (next == frames.begin()) return;
    --next;
  }
  if (next == frames.end()) return;
  const KeyFrames selected = {*next};
  selection_.clear();
  Select(chosen_, selected);
}

}  // namespace vitrell::panel
