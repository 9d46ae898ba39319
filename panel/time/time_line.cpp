// The parts of the time line, and playing.
#include "panel/time/time_line.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollArea>
#include <QSpinBox>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "panel/time/curve_view.h"
#include "panel/time/key_edits.h"
#include "panel/time/key_tracks.h"
#include "panel/time/time_ruler.h"

namespace vitrell::panel {
namespace {

constexpr int kLeastTracksHeight = 66;

// "00:00:01.500" as keys are written.
QString TimeText(int frame, double framesPerSecond) {
  const auto milliseconds = static_cast<qint64>(std::floor(frame * 1000.0 / framesPerSecond + 0.5));
  const auto two = [](qint64 number) {
    return QStringLiteral("%1").arg(number, 2, 10, QChar('0'));
  };
  return two(milliseconds / 3600000) + ':' + two(milliseconds / 60000 % 60) + ':' +
         two(milliseconds / 1000 % 60) +
         QStringLiteral(".%1").arg(milliseconds % 1000, 3, 10, QChar('0'));
}

}  // namespace

TimeLine::TimeLine(const look::Panel& panel, QWidget* parent)
    : QWidget(parent),
      panel_(panel),
      ruler_(new TimeRuler(this)),
      rows_(new QScrollArea(this)),
      tracks_(new KeyTracks(panel, this)),
      curve_(new CurveView(this)) {
  auto* const buttons = new QHBoxLayout;
  MakeTransport(buttons);
  MakeRangeButtons(buttons);
  buttons->addStretch(1);
  MakeKeyButtons(buttons);
  rows_->setWidget(tracks_);
  rows_->setWidgetResizable(true);
  rows_->setFrameShape(QFrame::NoFrame);
  rows_->setMinimumHeight(kLeastTracksHeight);
  // The keyboard is for the marks, and the row that they choose is scrolled to.
  rows_->setFocusPolicy(Qt::NoFocus);
  // The marks stand below the ruler's ticks only as long as no bar takes width from them.
  rows_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addLayout(buttons);
  layout->addWidget(ruler_);
  layout->addWidget(rows_, 1);
  layout->addWidget(curve_, 1);

  connect(ruler_, &TimeRuler::FrameChosen, this, &TimeLine::Go);
  connect(ruler_, &TimeRuler::RangeChosen, this, [this](int first, int last) {
    SetRange(first, last);
    Q_EMIT RangeChanged(first_, last_);
  });
  connect(tracks_, &KeyTracks::KeysEdited, this, &TimeLine::KeysEdited);
  connect(tracks_, &KeyTracks::Chosen, this, [this](int control) {
    Choose(control);
    Q_EMIT Chosen(control);
  });
  connect(curve_, &CurveView::KeysEdited, this, [this](const look::Keys& keys, EditPhase phase) {
    if (chosen_ >= 0) Q_EMIT KeysEdited(chosen_, keys, phase);
  });
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &TimeLine::Tick);
}

void TimeLine::SetClip(const look::TimeBase& base) {
  Play(false);
  base_ = base;
  const int frames = std::max(1, static_cast<int>(base.length));
  field_->setRange(0, frames - 1);
  ruler_->SetFrames(frames);
  tracks_->SetBase(base);
  SetRange(0, frames - 1);
  ShowFrame(0);
  Choose(chosen_);
}

void TimeLine::ShowFrame(int frame) {
  frame_ = std::clamp(frame, 0, std::max(0, static_cast<int>(base_.length) - 1));
  const QSignalBlocker quiet(field_);
  field_->setValue(frame_);
  time_->setText(TimeText(frame_, base_.framesPerSecond));
  ruler_->ShowFrame(frame_);
  tracks_->ShowFrame(frame_);
  curve_->ShowFrame(frame_);
}

void TimeLine::SetRange(int first, int last) {
  const int end = std::max(0, static_cast<int>(base_.length) - 1);
  first_ = std::clamp(first, 0, end);
  last_ = std::clamp(last, first_, end);
  ruler_->ShowRange(first_, last_);
}

void TimeLine::ShowKeys(int control, const look::Keys& keys) {
  if (keys.empty()) {
    keys_.erase(control);
  } else {
    keys_[control] = keys;
  }
  tracks_->ShowKeys(control, keys);
  if (control == chosen_) Choose(control);
}

void TimeLine::Choose(int control) {
  const bool isOther = control != chosen_;
  chosen_ = control;
  tracks_->Choose(control);
  const auto keys = keys_.find(control);
  if (isOther && keys != keys_.end()) {
    rows_->ensureVisible(0, static_cast<int>(tracks_->PlaceOf(control, 0).y()));
  }
  if (control < 0 || keys == keys_.end()) return curve_->ShowKeys(nullptr, {}, base_);
  curve_->ShowKeys(&panel_.controls.at(static_cast<std::size_t>(control)), keys->second, base_);
}

void TimeLine::Go(int frame, EditPhase phase) {
  Play(false);
  const int before = frame_;
  ShowFrame(frame);
  if (frame_ != before || phase == EditPhase::kDone) Q_EMIT FrameChosen(frame_, phase);
}

void TimeLine::Step(int frames) { Go(frame_ + frames, EditPhase::kDone); }

// Of the chosen control, or of all when none is chosen that moves.
void TimeLine::GoToKey(bool next) {
  KeyFrames frames;
  for (const auto& [control, keys] : keys_) {
    if (keys_.contains(chosen_) && control != chosen_) continue;
    frames.merge(FramesOf(keys, base_));
  }
  auto found = next ? frames.upper_bound(frame_) : frames.lower_bound(frame_);
  if (next ? found == frames.end() : found == frames.begin()) return;
  if (!next) --found;
  Go(static_cast<int>(std::round(*found)), EditPhase::kDone);
}

void TimeLine::Play(bool play) {
  if (play == IsPlaying()) return;
  if (play) {
    if (frame_ < first_ || frame_ >= last_) ShowFrame(first_);
    playedFrom_ = frame_;
    clock_.start();
    timer_.start(static_cast<int>(std::max(1.0, 1000 / base_.framesPerSecond)));
  } else {
    timer_.stop();
  }
  play_->setIcon(style()->standardIcon(play ? QStyle::SP_MediaPause : QStyle::SP_MediaPlay));
  play_->setToolTip(play ? tr("Pause") : tr("Play"));
  play_->setAccessibleName(play_->toolTip());
  Q_EMIT PlayingChanged(play);
  if (!play) Q_EMIT FrameChosen(frame_, EditPhase::kDone);
}

void TimeLine::Tick() {
  const auto passed =
      static_cast<qint64>(static_cast<double>(clock_.elapsed()) * base_.framesPerSecond / 1000);
  const int count = last_ - first_ + 1;
  const int frame = first_ + static_cast<int>((playedFrom_ - first_ + passed) % count);
  if (frame == frame_) return;
  ShowFrame(frame);
  Q_EMIT FrameChosen(frame_, EditPhase::kDragging);
}

}  // namespace vitrell::panel
