// The time of a clip: play, step, scrub, in and out, and the keys of all controls that move.
#ifndef VITRELL_PANEL_TIME_TIME_LINE_H_
#define VITRELL_PANEL_TIME_TIME_LINE_H_

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <map>

#include "look/animation.h"
#include "look/control.h"
#include "panel/edit_phase.h"

class QLabel;
class QScrollArea;
class QSpinBox;
class QToolButton;
class QHBoxLayout;

namespace vitrell::panel {

class CurveView;
class KeyTracks;
class TimeRuler;

// Frames count from 0. Controls are numbered by their position in look::Panel::controls. What is
// edited is signalled, and shown once it is told back.
class TimeLine : public QWidget {
  Q_OBJECT

 public:
  // The panel must outlive the time line.
  explicit TimeLine(const look::Panel& panel, QWidget* parent = nullptr);

  // A clip of base.length frames; the range becomes the whole clip, the frame the first one.
  void SetClip(const look::TimeBase& base);
  const look::TimeBase& Base() const { return base_; }

  void ShowFrame(int frame);
  int Frame() const { return frame_; }
  // In and out, both included.
  void SetRange(int first, int last);
  int First() const { return first_; }
  int Last() const { return last_; }

  // A row of marks; none for a control without keys.
  void ShowKeys(int control, const look::Keys& keys);
  // Shows the curve of the control.
  void Choose(int control);

  bool IsPlaying() const { return timer_.isActive(); }
  // From the frame shown to the end of the range, and again from its beginning, in the clip's own
  // time: frames are left out when the picture does not keep up.
  void Play(bool play);
  // Ends playing; stops at the ends of the clip.
  void Step(int frames);

 Q_SIGNALS:
  // kDragging while the ruler is scrubbed and while the clip plays, kDone when it rests.
  void FrameChosen(int frame, vitrell::panel::EditPhase phase);
  void RangeChanged(int first, int last);
  // Empty keys: the control is to stand still from now on.
  void KeysEdited(int control, const look::Keys& keys, vitrell::panel::EditPhase phase);
  void Chosen(int control);
  void PlayingChanged(bool playing);

 private:
  void MakeTransport(QHBoxLayout* layout);
  void MakeRangeButtons(QHBoxLayout* layout);
  void MakeKeyButtons(QHBoxLayout* layout);
  QToolButton* AddButton(QHBoxLayout* layout, const QString& text, const QString& toolTip,
                         const std::function<void()>& clicked);
  void Go(int frame, EditPhase phase);
  void GoToKey(bool next);
  void Tick();

  const look::Panel& panel_;
  look::TimeBase base_;
  int frame_ = 0;
  int first_ = 0;
  int last_ = 0;
  int chosen_ = -1;
  std::map<int, look::Keys> keys_;
  QTimer timer_;
  QElapsedTimer clock_;
  int playedFrom_ = 0;
  QToolButton* play_ = nullptr;
  QSpinBox* field_ = nullptr;
  QLabel* time_ = nullptr;
  TimeRuler* ruler_;
  QScrollArea* rows_;
  KeyTracks* tracks_;
  CurveView* curve_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_TIME_TIME_LINE_H_
