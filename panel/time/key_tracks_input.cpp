// What mouse and keys do to the marks.
#include <QKeyEvent>
#include <QMouseEvent>
#include <cmath>
#include <iterator>
#include <utility>

#include "panel/time/key_tracks.h"

namespace vitrell::panel {

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

// Rows that change together are one step.
void KeyTracks::Tell(const std::map<int, look::Keys>& changed, EditPhase phase) {
  for (auto row = changed.begin(); row != changed.end(); ++row) {
    const bool isLast = std::next(row) == changed.end();
    Q_EMIT KeysEdited(row->first, row->second, isLast ? phase : EditPhase::kDragging);
  }
}

// Rows do not move on when a key of another one has reached the end of the clip.
void KeyTracks::Shift(const Drag& drag, EditPhase phase) {
  double reach = drag.moved;
  for (const auto& [control, frames] : drag.selection) reach = ReachOf(frames, reach, base_);
  std::map<int, look::Keys> changed;
  for (const auto& [control, frames] : drag.selection) {
    if (frames.empty()) continue;
    const look::Keys& before = drag.keys.at(control);
    changed[control] = keys_[control] = drag.copy ? CopiedKeys(before, frames, reach, base_)
                                                  : MovedKeys(before, frames, reach, base_);
    KeyFrames moved;
    for (const double frame : frames) moved.insert(frame + reach);
    Select(control, moved);
  }
  Tell(changed, phase);
}

void KeyTracks::MoveSelected(double frames, bool copy) {
  Shift(Drag{0, frames, copy, true, keys_, selection_}, EditPhase::kDone);
}

void KeyTracks::DeleteSelected() {
  std::map<int, look::Keys> changed;
  for (const auto& [control, frames] : std::exchange(selection_, {})) {
    changed[control] = RemainingKeys(keys_.at(control), frames, base_);
  }
  Tell(changed, EditPhase::kDone);
  update();
}

void KeyTracks::StretchSelected(look::Stretch stretch) {
  std::map<int, look::Keys> changed;
  for (const auto& [control, frames] : selection_) {
    const look::Control& named = panel_.controls.at(static_cast<std::size_t>(control));
    look::Keys keys = StretchedKeys(named, keys_.at(control), frames, stretch, base_);
    if (keys != keys_.at(control)) changed[control] = std::move(keys);
  }
  Tell(changed, EditPhase::kDone);
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
