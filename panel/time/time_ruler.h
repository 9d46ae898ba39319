// A ruler of frames with the frame shown, and in and out.
#ifndef VITRELL_PANEL_TIME_TIME_RULER_H_
#define VITRELL_PANEL_TIME_TIME_RULER_H_

#include <QWidget>

#include "panel/edit_phase.h"
#include "panel/time/time_scale.h"

namespace vitrell::panel {

// The ruler is scrubbed; the brackets of in and out are dragged. Arrow keys step by a frame, with
// Shift by ten, Home and End go to in and out; I and O put in and out at the frame shown.
class TimeRuler : public QWidget {
  Q_OBJECT

 public:
  explicit TimeRuler(QWidget* parent);

  void SetFrames(int frames);
  void ShowFrame(int frame);
  void ShowRange(int first, int last);

  QSize sizeHint() const override;

 Q_SIGNALS:
  void FrameChosen(int frame, vitrell::panel::EditPhase phase);
  void RangeChosen(int first, int last);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Hand { kFree, kFrame, kFirst, kLast };

  TimeScale Scale() const { return TimeScale::For(frames_, width()); }
  Hand HandAt(const QPointF& position) const;
  void MoveTo(double x, EditPhase phase);
  void PaintTicks(QPainter& painter) const;
  void PaintRange(QPainter& painter) const;

  int frames_ = 1;
  int frame_ = 0;
  int first_ = 0;
  int last_ = 0;
  Hand hand_ = Hand::kFree;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_TIME_TIME_RULER_H_
