// The curve of one control over time.
#ifndef VITRELL_PANEL_TIME_CURVE_VIEW_H_
#define VITRELL_PANEL_TIME_CURVE_VIEW_H_

#include <QWidget>
#include <optional>
#include <vector>

#include "look/animation.h"
#include "look/control.h"
#include "panel/edit_phase.h"
#include "panel/time/time_scale.h"

namespace vitrell::panel {

// A line for a number, an angle, a choice or a switch, two for a position, three for a colour.
// Numbers and angles are dragged up and down at their keys.
class CurveView : public QWidget {
  Q_OBJECT

 public:
  explicit CurveView(QWidget* parent);

  // The control must outlive its being shown; null for none.
  void ShowKeys(const look::Control* control, const look::Keys& keys, const look::TimeBase& base);
  void ShowFrame(int frame);

  // The components of a value, as they are drawn.
  static std::vector<double> ComponentsOf(const look::Value& value);
  QPointF PlaceOf(double frame, double component) const;

 Q_SIGNALS:
  void KeysEdited(const look::Keys& keys, vitrell::panel::EditPhase phase);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void ChooseRange();
  double ValueAt(double y) const;
  std::optional<std::size_t> KeyAt(const QPointF& position) const;
  void PaintCurves(QPainter& painter) const;
  void PaintKeys(QPainter& painter) const;
  void MoveKey(double y, EditPhase phase);

  const look::Control* control_ = nullptr;
  look::Keys keys_;
  look::TimeBase base_;
  int frame_ = 0;
  double lowest_ = 0;
  double highest_ = 1;
  std::optional<std::size_t> dragged_;  // in keys_
  bool moved_ = false;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_TIME_CURVE_VIEW_H_
