// Handles over the picture for the lens and for all other positions.
#ifndef VITRELL_PANEL_VIEW_HANDLES_H_
#define VITRELL_PANEL_VIEW_HANDLES_H_

#include <QObject>
#include <QPainter>
#include <QPointF>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <QTransform>
#include <optional>
#include <vector>

#include "look/control.h"
#include "panel/edit_phase.h"
#include "panel/view/lens_geometry.h"

namespace vitrell::panel {

// Controls are numbered by their position in look::Panel::controls. Handles of greyed controls are
// not there. All positions are continuous: pixel (0, 0) covers 0 to 1.
class Handles : public QObject {
  Q_OBJECT

 public:
  // The panel must outlive the handles.
  explicit Handles(const look::Panel& panel, QObject* parent = nullptr);

  // One value and one bit for each control.
  void ShowValues(const std::vector<look::Value>& values, const std::vector<bool>& greyed);
  // Of the whole picture, as the effect sees it.
  void SetPictureSize(const QSize& size);
  // Of the picture that a custom lens is taken from; empty for none.
  void SetLensPictureSize(const QSize& size);

  enum class Kind { kCentre, kWidth, kHeight, kScale, kRotation, kFeather, kPoint };
  struct Handle {
    Kind kind = Kind::kPoint;
    int control = 0;
    QPointF position;  // in the view
    QPointF anchor;    // of the lens's handles: where in its shape they are
    QString hint;
  };
  std::vector<Handle> Visible(const QTransform& pictureToView) const;

  void Paint(QPainter& painter, const QTransform& pictureToView) const;
  // Null if no handle is within reach.
  std::optional<Handle> At(const QPointF& viewPoint, const QTransform& pictureToView) const;

  // A drag. Press is false where there is no handle. Shift turns in steps of 15 degrees, moves
  // along one axis and scales width and height alike; Escape is Cancel, which restores the value.
  bool Press(const QPointF& viewPoint, const QTransform& pictureToView);
  void Move(const QPointF& viewPoint, Qt::KeyboardModifiers modifiers);
  void Release();
  void Cancel();
  bool IsDragging() const { return dragged_.has_value(); }

  // Moves a position so that the effect uses the pixel that holds the point of the picture. The
  // position keeps its units.
  void PlacePoint(int control, const QPointF& picturePoint, EditPhase phase);

 Q_SIGNALS:
  void Edited(int control, const look::Value& value, vitrell::panel::EditPhase phase);
  // Other handles, or at other places.
  void Changed();

 private:
  double Number(int control) const;
  QPointF PointOf(int control) const;
  bool Enabled(int control) const;
  void AddLensHandles(const QTransform& pictureToView, std::vector<Handle>& handles) const;
  void PaintLens(QPainter& painter, const QTransform& pictureToView) const;
  look::Value Dragged(const QPointF& picturePoint, Qt::KeyboardModifiers modifiers);

  const look::Panel& panel_;
  LensControls lens_;
  std::vector<look::Value> values_;
  std::vector<bool> greyed_;
  QSize picture_;
  QSize lensPicture_;

  std::optional<Handle> dragged_;
  QTransform viewToPicture_;  // when the drag began
  QPointF grip_;              // from the pointer to the handle, in the view
  QPointF pressed_;           // the handle, in the picture
  look::Value before_;
  double lastTurn_ = 0;  // degrees
  double turned_ = 0;    // degrees since the drag began
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_HANDLES_H_
