// The keys of all controls that move, as marks in rows.
#ifndef VITRELL_PANEL_TIME_KEY_TRACKS_H_
#define VITRELL_PANEL_TIME_KEY_TRACKS_H_

#include <QWidget>
#include <map>
#include <optional>

#include "look/animation.h"
#include "look/control.h"
#include "panel/edit_phase.h"
#include "panel/time/key_edits.h"
#include "panel/time/time_scale.h"

namespace vitrell::panel {

// A click selects a key, with Shift or Ctrl one more; dragging moves the selected keys of all rows,
// with Alt a copy of them. Up and Down choose a row, Ctrl with Left and Right its next key; Left
// and Right move the selected keys by a frame, with Alt a copy, Delete deletes them.
class KeyTracks : public QWidget {
  Q_OBJECT

 public:
  KeyTracks(const look::Panel& panel, QWidget* parent);

  void SetBase(const look::TimeBase& base);
  void ShowFrame(int frame);
  // Empty keys: no row.
  void ShowKeys(int control, const look::Keys& keys);
  void Choose(int control);

  const std::map<int, KeyFrames>& Selection() const { return selection_; }
  void Select(int control, const KeyFrames& frames);

  void DeleteSelected();
  void StretchSelected(look::Stretch stretch);
  void MoveSelected(double frames, bool copy);

  // The middle of a key's mark.
  QPointF PlaceOf(int control, double frame) const;
  QSize sizeHint() const override;

 Q_SIGNALS:
  void KeysEdited(int control, const look::Keys& keys, vitrell::panel::EditPhase phase);
  void Chosen(int control);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct Place {
    int control;
    double frame;
  };
  struct Drag {
    double startX;
    double moved;  // frames
    bool copy;
    bool shifted;
    std::map<int, look::Keys> keys;  // before
    std::map<int, KeyFrames> selection;
  };

  TimeScale Scale() const;
  std::optional<int> RowAt(double y) const;
  std::optional<Place> KeyAt(const QPointF& position) const;
  void PaintRow(QPainter& painter, int row, int control, const look::Keys& keys) const;
  void Tell(const std::map<int, look::Keys>& changed, EditPhase phase);
  void Shift(const Drag& drag, EditPhase phase);
  void ChooseRow(int step);
  void SelectNextKey(bool forward);

  const look::Panel& panel_;
  look::TimeBase base_;
  int frame_ = 0;
  int chosen_ = -1;
  std::map<int, look::Keys> keys_;
  std::map<int, KeyFrames> selection_;
  std::optional<Drag> drag_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_TIME_KEY_TRACKS_H_
