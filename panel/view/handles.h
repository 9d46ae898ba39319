// Handles over the picture for the lens and for all other positions.
#ifndef VITRELL_PANEL_VIEW_HANDLES_H_
#define VITRELL_PANEL_VIEW_HANDLES_H_

#include <QObject>
#include <QPainter>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QTransform>
#include <optional>
#include <vector>

#include "look/control.h"
#include "panel/edit_phase.h"
#include "panel/view/lens_geometry.h"

namespace vitrell::panel {

// The lens controls' numbers are percentages.
inline constexpr double kPercent = 100;

// Controls are numbered by their position in look::Panel::controls. Handles of greyed controls are
// not there. Positions in the picture are continuous: pixel (0, 0) covers 0 to 1.
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

  enum class Kind { kPoint, kWidth, kHeight, kScale, kRotation, kFeather };
  struct Handle {
    Kind kind = Kind::kPoint;
    int control = 0;
    QPointF position;  // in the view
    QPointF anchor;    // of a side of the lens: where it is in LensGeometry's coordinates
  };
  std::vector<Handle> Visible(const QTransform& pictureToView) const;
  // None if no handle is within reach.
  std::optional<Handle> At(const QPointF& viewPoint, const QTransform& pictureToView) const;
  // What the handle changes, and its value now.
  QString Hint(const Handle& handle) const;

  void Paint(QPainter& painter, const QTransform& pictureToView) const;

  // A drag. Press is false where there is no handle. Shift rotates in steps of 15 degrees and moves
  // along one axis. Cancel brings the value before back.
  bool Press(const QPointF& viewPoint, const QTransform& pictureToView);
  void Move(const QPointF& viewPoint, Qt::KeyboardModifiers modifiers);
  void Release();
  void Cancel();
  bool IsDragging() const { return drag_.has_value(); }

  // Moves a position so that the effect uses the pixel that holds the point of the picture. The
  // position keeps its units.
  void PlacePoint(int control, const QPointF& picturePoint, EditPhase phase);

 Q_SIGNALS:
  void Edited(int control, const look::Value& value, vitrell::panel::EditPhase phase);
  // Other handles, or at other places.
  void Changed();

 private:
  struct Drag {
    Handle handle;
    look::Value before;
    QTransform viewToPicture;
    QPointF grip;      // from the pointer to the handle, in the view
    QPointF start;     // the handle, in the picture
    double direction;  // of the last move, for rotations
    double turned;     // degrees since the drag began
    bool moved;
  };

  const look::Value& ValueOf(int control) const;
  double Number(int control) const;
  QPointF PointOf(int control) const;
  bool IsShown(int control) const;
  bool HasLens() const;
  LensGeometry Lens() const;
  void AddLensHandles(const QTransform& pictureToView, std::vector<Handle>& handles) const;
  void PaintLens(QPainter& painter, const QTransform& pictureToView) const;
  look::PointValue PointAt(int control, const QPointF& picturePoint) const;
  look::Value Dragged(QPointF picturePoint, Qt::KeyboardModifiers modifiers);
  double DraggedNumber(const QPointF& picturePoint) const;
  double DraggedRotation(const QPointF& picturePoint, Qt::KeyboardModifiers modifiers);
  void Set(int control, const look::Value& value, EditPhase phase);

  const look::Panel& panel_;
  LensControls lens_;
  std::vector<look::Value> values_;
  std::vector<bool> greyed_;
  QSize picture_;
  QSize lensPicture_;
  std::optional<Drag> drag_;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_HANDLES_H_
