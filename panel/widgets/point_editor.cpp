// Fields, unit and picking of one position.
#include "panel/widgets/point_editor.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "panel/widgets/icons.h"
#include "panel/widgets/scrub_field.h"

namespace vitrell::panel {
namespace {

constexpr int kFieldWidth = 72;
// The order of the units in their box.
constexpr int kPercent = 0;
constexpr int kPixels = 1;
// A position in percent keeps a hundredth of a pixel in pictures of up to 100,000 pixels.
constexpr double kPercentGrid = 1e5;
constexpr double kPixelGrid = 1e2;

look::Coordinate Converted(const look::Coordinate& from, bool percent, int side) {
  if (from.percent == percent || side <= 0) return from;
  const double value = percent ? from.value * 100 / side : from.value * side / 100;
  const double grid = percent ? kPercentGrid : kPixelGrid;
  return {std::clamp(std::round(value * grid) / grid, -look::kFixedLimit, look::kFixedLimit),
          percent};
}

}  // namespace

PointEditor::PointEditor(const look::Control& control, const QString& spokenName, QWidget* parent)
    : ValueEditor(parent),
      control_(control),
      x_(MakeField(tr("%1, x").arg(spokenName))),
      y_(MakeField(tr("%1, y").arg(spokenName))),
      unit_(new QComboBox(this)),
      pick_(new QToolButton(this)) {
  unit_->addItems({QStringLiteral("%"), QStringLiteral("px")});
  unit_->setAccessibleName(tr("%1, unit").arg(spokenName));
  unit_->setToolTip(tr("Percent of the picture, or pixels"));
  unit_->setEnabled(false);  // until the picture's size is known
  IgnoreWheelWithoutFocus(unit_);
  pick_->setIcon(PickIcon());
  pick_->setFocusPolicy(Qt::StrongFocus);
  pick_->setAccessibleName(tr("%1, pick in the picture").arg(spokenName));
  pick_->setToolTip(tr("Pick in the picture"));
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(x_);
  layout->addWidget(y_);
  layout->addWidget(unit_);
  layout->addWidget(pick_);
  layout->addStretch(1);
  setFocusProxy(x_);
  connect(x_, &ScrubField::Edited, this, [this](double x, EditPhase phase) {
    Set({{x, point_.x.percent}, point_.y}, phase);
  });
  connect(y_, &ScrubField::Edited, this, [this](double y, EditPhase phase) {
    Set({point_.x, {y, point_.y.percent}}, phase);
  });
  connect(unit_, &QComboBox::activated, this, [this](int unit) { ChooseUnit(unit == kPercent); });
  connect(pick_, &QToolButton::clicked, this, &ValueEditor::PickPoint);
}

ScrubField* PointEditor::MakeField(const QString& spokenName) {
  auto* const field = new ScrubField(CoordinateStyle(control_, point_.x.percent, 0), this);
  field->setAccessibleName(spokenName);
  field->setFixedWidth(kFieldWidth);
  connect(field, &ScrubField::Refused, this, &ValueEditor::Refused);
  return field;
}

void PointEditor::ShowValue(const look::Value& value) {
  const look::PointValue before = point_;
  point_ = std::get<look::PointValue>(value);
  if (before.x.percent != point_.x.percent || before.y.percent != point_.y.percent) ShowStyles();
  x_->ShowValue(point_.x.value);
  y_->ShowValue(point_.y.value);
  const bool mixed = point_.x.percent != point_.y.percent;
  const QSignalBlocker quiet(unit_);
  unit_->setCurrentIndex(mixed ? -1 : point_.x.percent ? kPercent : kPixels);
}

void PointEditor::SetPictureSize(const QSize& size) {
  picture_ = size;
  unit_->setEnabled(!size.isEmpty());
  ShowStyles();
}

void PointEditor::ShowStyles() {
  x_->ChangeStyle(CoordinateStyle(control_, point_.x.percent, picture_.width()));
  y_->ChangeStyle(CoordinateStyle(control_, point_.y.percent, picture_.height()));
}

void PointEditor::Set(const look::PointValue& point, EditPhase phase) {
  ShowValue(point);
  Q_EMIT Edited(point, phase);
}

void PointEditor::ChooseUnit(bool percent) {
  const look::PointValue converted = {Converted(point_.x, percent, picture_.width()),
                                      Converted(point_.y, percent, picture_.height())};
  if (converted != point_) Set(converted, EditPhase::kDone);
}

}  // namespace vitrell::panel
