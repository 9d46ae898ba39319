// What the picture view shows.
#include "panel/view/picture_view.h"

#include <QCursor>
#include <QLabel>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "panel/view/handles.h"

namespace vitrell::panel {
namespace {

constexpr double kDividerReach = 8;  // view pixels
constexpr int kMargin = 8;
constexpr int kLeastSide = 160;

// White on dark, readable over every picture.
QLabel* OverlayLabel(QWidget* parent, const QString& spokenName) {
  auto* const label = new QLabel(parent);
  label->setAccessibleName(spokenName);
  label->setStyleSheet(QStringLiteral(
      "QLabel { color: white; background: rgba(0, 0, 0, 170); border-radius: 4px; padding: 4px 8px;"
      " }"));
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  label->hide();
  return label;
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(kLeastSide, kLeastSide);
  setAccessibleName(tr("Picture"));
  setAccessibleDescription(tr("The picture with the effect"));
  MakeLabels();
  MakeActions();
}

void PictureView::MakeLabels() {
  stateLabel_ = OverlayLabel(this, tr("Preview or exact"));
  probeLabel_ = OverlayLabel(this, tr("Values under the pointer"));
  errorLabel_ = OverlayLabel(this, tr("Error"));
  errorLabel_->setWordWrap(true);
  errorLabel_->setAlignment(Qt::AlignCenter);
}

QAction* PictureView::AddAction(const QString& text, const QList<QKeySequence>& keys,
                                const std::function<void()>& triggered) {
  auto* const action = new QAction(text, this);
  action->setShortcuts(keys);
  addAction(action);
  connect(action, &QAction::triggered, this, triggered);
  return action;
}

QAction* PictureView::AddSwitch(const QString& text, Qt::Key key, bool on) {
  QAction* const action = AddAction(text, {QKeySequence(key)}, [] {});
  action->setCheckable(true);
  action->setChecked(on);
  connect(action, &QAction::toggled, this, [this] { update(); });
  return action;
}

void PictureView::MakeActions() {
  AddAction(tr("&Fit"), {QKeySequence(Qt::Key_F)}, [this] { Fit(); });
  AddAction(tr("&Actual size"), {QKeySequence(Qt::Key_1)}, [this] { ShowActualSize(); });
  AddAction(tr("Zoom &in"), {QKeySequence(Qt::Key_Plus), QKeySequence(Qt::Key_Equal)},
            [this] { Zoom(kZoomStep); });
  AddAction(tr("Zoom &out"), {QKeySequence(Qt::Key_Minus)}, [this] { Zoom(1 / kZoomStep); });
  handlesAction_ = AddSwitch(tr("&Handles"), Qt::Key_H, true);
  maskAction_ = AddSwitch(tr("Lens &mask"), Qt::Key_M, false);
  dividerAction_ = AddSwitch(tr("&Divider before and after"), Qt::Key_D, false);
  connect(maskAction_, &QAction::toggled, this, &PictureView::MaskWanted);
}

QList<QAction*> PictureView::ViewActions() const { return actions(); }

void PictureView::SetHandles(Handles* handles) {
  handles_ = handles;
  if (handles != nullptr) {
    handles->SetPictureSize(PictureSize());
    connect(handles, &Handles::Changed, this, [this] { update(); });
  }
  update();
}

void PictureView::SetProbe(std::function<QString(int x, int y)> probeText) {
  probeText_ = std::move(probeText);
}

void PictureView::ShowBefore(const QImage& image) {
  const bool isOther = image.size() != PictureSize();
  layers_.before = image;
  if (isOther) layers_.result = {};
  transform_.SetPicture(image.size());
  if (handles_ != nullptr && isOther) handles_->SetPictureSize(image.size());
  TransformChanged();
}

void PictureView::ShowResult(const QImage& image, bool exact, double scale) {
  layers_.result = image;
  exact_ = exact;
  scale_ = scale;
  ShowError({});
  ShowState();
  update();
}

void PictureView::ShowMask(const QImage& image) {
  layers_.maskOverlay = MaskOverlay(image);
  update();
}

void PictureView::ShowError(const QString& text) {
  errorLabel_->setText(text);
  errorLabel_->setAccessibleDescription(text);
  errorLabel_->setVisible(!text.isEmpty());
  PlaceLabels();
}

void PictureView::ShowState() {
  const QString zoom = tr("%1 %").arg(transform_.Zoom() * devicePixelRatioF() * 100, 0, 'f', 0);
  QString state;
  if (beforeHeld_) {
    state = tr("before");
  } else if (exact_) {
    state = tr("exact");
  } else if (!layers_.result.isNull()) {
    state =
        scale_ < 1 ? tr("preview in %1 % of the size").arg(scale_ * 100, 0, 'f', 0) : tr("preview");
  }
  stateLabel_->setText(state.isEmpty() ? zoom : state + QStringLiteral(" · ") + zoom);
  stateLabel_->setVisible(!PictureSize().isEmpty());
  PlaceLabels();
}

void PictureView::PlaceLabels() {
  stateLabel_->adjustSize();
  stateLabel_->move(width() - stateLabel_->width() - kMargin, kMargin);
  probeLabel_->adjustSize();
  probeLabel_->move(kMargin, height() - probeLabel_->height() - kMargin);
  if (errorLabel_->text().isEmpty()) return;
  const int errorWidth = width() * 3 / 4;
  errorLabel_->setFixedWidth(errorWidth);
  // A label that was never shown knows no height.
  errorLabel_->setFixedHeight(std::max(0, errorLabel_->heightForWidth(errorWidth)));
  errorLabel_->move((width() - errorWidth) / 2, (height() - errorLabel_->height()) / 2);
}

void PictureView::TransformChanged() {
  ShowState();
  update();
  Q_EMIT ZoomChanged(transform_.Zoom() * devicePixelRatioF());
}

void PictureView::Fit() {
  transform_.Fit();
  TransformChanged();
}

void PictureView::ShowActualSize() { ZoomTo(1 / devicePixelRatioF(), QRectF(rect()).center()); }

void PictureView::ZoomTo(double zoom, const QPointF& fixedPoint) {
  transform_.ZoomTo(zoom, fixedPoint);
  TransformChanged();
}

// Keys zoom around the pointer, too, while it is over the picture.
void PictureView::Zoom(double factor) {
  const QPointF pointer = mapFromGlobal(QPointF(QCursor::pos()));
  const QRectF view(rect());
  ZoomTo(transform_.Zoom() * factor,
         underMouse() && view.contains(pointer) ? pointer : view.center());
}

void PictureView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Window).darker());
  if (PictureSize().isEmpty()) return;
  const QRectF place = transform_.PictureRect();
  const double dividerX = place.left() + divider_ * place.width();
  PictureLayers shown = layers_;
  if (!WantsMask()) shown.maskOverlay = {};
  const bool divided = dividerAction_->isChecked();
  PaintPicture(painter, shown, place,
               beforeHeld_ ? place.right()
               : divided   ? dividerX
                           : place.left());
  if (divided && !beforeHeld_) PaintDivider(painter, place, dividerX);
  if (HandlesShow()) handles_->Paint(painter, transform_.ToView());
}

void PictureView::resizeEvent(QResizeEvent* /*event*/) {
  transform_.SetView(size());
  TransformChanged();
}

// The window is known only now. A key that no widget uses comes to it at last.
void PictureView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  window()->installEventFilter(this);
}

bool PictureView::HandlesShow() const {
  return handles_ != nullptr && handlesAction_->isChecked() && !beforeHeld_;
}

bool PictureView::NearDivider(const QPointF& position) const {
  const QRectF place = transform_.PictureRect();
  return dividerAction_->isChecked() && !beforeHeld_ && !PictureSize().isEmpty() &&
         std::abs(position.x() - place.left() - divider_ * place.width()) <= kDividerReach;
}

}  // namespace vitrell::panel
