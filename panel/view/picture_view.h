// The picture with the effect, and everything that can be done on it with the mouse.
#ifndef VITRELL_PANEL_VIEW_PICTURE_VIEW_H_
#define VITRELL_PANEL_VIEW_PICTURE_VIEW_H_

#include <QAction>
#include <QImage>
#include <QKeySequence>
#include <QList>
#include <QPointF>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QWidget>
#include <functional>

#include "panel/view/handles.h"
#include "panel/view/picture_painter.h"
#include "panel/view/view_transform.h"

class QLabel;

namespace vitrell::panel {

// By a key or a notch of the wheel.
inline constexpr double kZoomStep = 1.25;

// Fits the picture into itself until the user zooms. Keys: B held shows the picture without the
// effect, D a divider between both, M the lens mask, H hides the handles, F fits, 1 shows pixel for
// pixel, + and - zoom, Space held pans with the left button. They work wherever the keyboard is in
// the window, unless a widget there uses them.
class PictureView : public QWidget {
  Q_OBJECT

 public:
  explicit PictureView(QWidget* parent = nullptr);

  // The handles draw themselves over the picture and take the mouse first. Not owned; may be null,
  // and may end before the view.
  void SetHandles(Handles* handles);
  // Gives the text for the pixel (x, y) of the picture, in the file's own depth.
  void SetProbe(std::function<QString(int x, int y)> probeText);

  // The picture without the effect, in full size. A picture of another size than the last one is
  // fitted into the view.
  void ShowBefore(const QImage& image);
  // The picture with the effect; `scale` is its size as a share of the full one. Takes an error
  // text away.
  void ShowResult(const QImage& image, bool exact, double scale);
  // Grey levels: white inside the lens. Of any size; a null image for none.
  void ShowMask(const QImage& image);
  // Over the picture, which stays; empty for none.
  void ShowError(const QString& text);

  QSize PictureSize() const { return transform_.Picture(); }
  const ViewTransform& Transform() const { return transform_; }
  bool WantsMask() const { return maskAction_->isChecked(); }

  // Waits for a click in the picture, which becomes the position of the control (see
  // Handles::PlacePoint); Escape and the right button end the waiting.
  void PickPoint(int control);

  void Fit();
  // One picture pixel on one pixel of the screen.
  void ShowActualSize();
  void ZoomTo(double zoom, const QPointF& fixedPoint);

  // What the keys do, for a menu: fit, actual size, in, out, handles, mask, divider.
  QList<QAction*> ViewActions() const;

 Q_SIGNALS:
  // The mask is shown from now on, or no more.
  void MaskWanted(bool wanted);
  void ZoomChanged(double zoom);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Hand { kFree, kPanning, kDividing, kHandle };

  QAction* AddAction(const QString& text, const QList<QKeySequence>& keys,
                     const std::function<void()>& triggered);
  QAction* AddSwitch(const QString& text, Qt::Key key, bool on);
  void MakeActions();
  void MakeLabels();
  void Zoom(double factor);
  void TransformChanged();
  void PlaceLabels();
  void ShowState();
  bool KeyChanged(int key, bool down);
  void EndPicking();
  void ShowProbe(const QPointF& position);
  void UpdateCursor(const QPointF& position);
  bool NearDivider(const QPointF& position) const;
  bool HandlesShow() const;

  QPointer<Handles> handles_;
  std::function<QString(int, int)> probeText_;
  ViewTransform transform_;
  PictureLayers layers_;
  bool exact_ = false;
  double scale_ = 1;
  double divider_ = 0.5;  // of the picture's width
  bool beforeHeld_ = false;
  bool spaceHeld_ = false;
  int picking_ = -1;  // control
  Hand hand_ = Hand::kFree;
  QPointF grabbed_;  // where the mouse was last, in the view
  QAction* handlesAction_ = nullptr;
  QAction* maskAction_ = nullptr;
  QAction* dividerAction_ = nullptr;
  QLabel* stateLabel_ = nullptr;
  QLabel* probeLabel_ = nullptr;
  QLabel* errorLabel_ = nullptr;
};

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_VIEW_PICTURE_VIEW_H_
