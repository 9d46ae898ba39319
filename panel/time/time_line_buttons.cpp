// The buttons above the ruler.
#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>
#include <QStyle>
#include <QToolButton>
#include <algorithm>

#include "panel/time/key_tracks.h"
#include "panel/time/time_line.h"

namespace vitrell::panel {

QToolButton* TimeLine::AddButton(QHBoxLayout* layout, const QString& text, const QString& toolTip,
                                 const std::function<void()>& clicked) {
  auto* const button = new QToolButton(this);
  button->setText(text);
  button->setToolTip(toolTip);
  button->setAccessibleName(toolTip);
  button->setFocusPolicy(Qt::StrongFocus);
  connect(button, &QToolButton::clicked, this, clicked);
  layout->addWidget(button);
  return button;
}

void TimeLine::MakeTransport(QHBoxLayout* layout) {
  const auto add = [&](QStyle::StandardPixmap icon, const QString& toolTip,
                       const std::function<void()>& clicked) {
    QToolButton* const button = AddButton(layout, {}, toolTip, clicked);
    button->setIcon(style()->standardIcon(icon));
    return button;
  };
  add(QStyle::SP_MediaSkipBackward, tr("To the in point"),
      [this] { Go(first_, EditPhase::kDone); });
  add(QStyle::SP_MediaSeekBackward, tr("One frame back"), [this] { Step(-1); });
  play_ = add(QStyle::SP_MediaPlay, tr("Play"), [this] { Play(!IsPlaying()); });
  add(QStyle::SP_MediaSeekForward, tr("One frame on"), [this] { Step(1); });
  add(QStyle::SP_MediaSkipForward, tr("To the out point"), [this] { Go(last_, EditPhase::kDone); });
  field_ = new QSpinBox(this);
  field_->setAccessibleName(tr("Frame"));
  field_->setKeyboardTracking(false);
  connect(field_, &QSpinBox::valueChanged, this,
          [this](int frame) { Go(frame, EditPhase::kDone); });
  time_ = new QLabel(this);
  layout->addWidget(field_);
  layout->addWidget(time_);
}

void TimeLine::MakeRangeButtons(QHBoxLayout* layout) {
  const auto set = [this](int first, int last) {
    SetRange(first, last);
    Q_EMIT RangeChanged(first_, last_);
  };
  AddButton(layout, tr("In"), tr("The range begins at this frame"),
            [this, set] { set(frame_, std::max(frame_, last_)); });
  AddButton(layout, tr("Out"), tr("The range ends at this frame"),
            [this, set] { set(std::min(first_, frame_), frame_); });
}

void TimeLine::MakeKeyButtons(QHBoxLayout* layout) {
  AddButton(layout, QStringLiteral("◂"), tr("To the key before"), [this] { GoToKey(false); });
  AddButton(layout, QStringLiteral("▸"), tr("To the next key"), [this] { GoToKey(true); });
  const auto add = [&](const QString& text, const QString& toolTip, look::Stretch stretch) {
    AddButton(layout, text, toolTip, [this, stretch] { tracks_->StretchSelected(stretch); });
  };
  add(tr("Linear"), tr("Selected keys: straight to the next one"), look::Stretch::kLinear);
  add(tr("Smooth"), tr("Selected keys: smoothly to the next one"), look::Stretch::kSmooth);
  add(tr("Hold"), tr("Selected keys: hold until the next one"), look::Stretch::kHold);
  add(tr("Eased"), tr("Selected keys: begin and end slowly"), look::Stretch::kEased);
  AddButton(layout, tr("Delete"), tr("Delete the selected keys"),
            [this] { tracks_->DeleteSelected(); });
}

}  // namespace vitrell::panel
