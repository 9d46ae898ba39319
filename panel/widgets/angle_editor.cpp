// Dial and field of one angle.
#include "panel/widgets/angle_editor.h"

#include <QDial>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <algorithm>
#include <cmath>

#include "look/value_text.h"
#include "panel/widgets/scrub_field.h"

namespace vitrell::panel {
namespace {

constexpr int kDialTurn = 360;
constexpr int kHalfTurn = 180;
constexpr int kDialSize = 40;
constexpr int kFieldWidth = 120;

// A dial that wraps has its least position at the bottom.
int DialPosition(double degrees) {
  const double position = std::fmod(std::round(degrees) + kHalfTurn, kDialTurn);
  return static_cast<int>(position < 0 ? position + kDialTurn : position);
}

}  // namespace

AngleEditor::AngleEditor(const look::Control& control, const QString& spokenName, QWidget* parent)
    : ValueEditor(parent), dial_(new QDial(this)), field_(new ScrubField(StyleOf(control), this)) {
  dial_->setRange(0, kDialTurn - 1);
  dial_->setWrapping(true);
  dial_->setFixedSize(kDialSize, kDialSize);
  dial_->setAccessibleName(spokenName);
  dial_->setAccessibleDescription(tr("dial, 180 stands for 0 degrees"));
  IgnoreWheelWithoutFocus(dial_);
  field_->setAccessibleName(spokenName);
  field_->setAccessibleDescription(tr("whole turns and degrees, such as 2x +30"));
  field_->setToolTip(tr("Degrees such as 750, or whole turns and degrees such as 2x +30"));
  field_->setFixedWidth(kFieldWidth);

  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(field_);
  layout->addWidget(dial_);
  layout->addStretch(1);
  setFocusProxy(field_);
  // Coming from outside, Tab goes to the field and from there on: what was made before it would be
  // left out.
  setTabOrder(field_, dial_);

  connect(dial_, &QDial::valueChanged, this, &AngleEditor::DialTurned);
  connect(dial_, &QDial::sliderReleased, this,
          [this] { Q_EMIT Edited(field_->Value(), EditPhase::kDone); });
  connect(field_, &ScrubField::Edited, this, [this](double degrees, EditPhase phase) {
    ShowDial(degrees);
    Q_EMIT Edited(degrees, phase);
  });
  connect(field_, &ScrubField::Refused, this, &ValueEditor::Refused);
}

// By the shorter way round, so that whole turns go on over the top.
void AngleEditor::DialTurned(int position) {
  int turned = position - DialPosition(field_->Value());
  if (turned > kHalfTurn) turned -= kDialTurn;
  if (turned < -kHalfTurn) turned += kDialTurn;
  const double degrees =
      std::clamp(std::round(field_->Value()) + turned, -look::kFixedLimit, look::kFixedLimit);
  field_->ShowValue(degrees);
  Q_EMIT Edited(degrees, dial_->isSliderDown() ? EditPhase::kDragging : EditPhase::kDone);
}

void AngleEditor::ShowValue(const look::Value& value) {
  const double degrees = std::get<double>(value);
  field_->ShowValue(degrees);
  if (!dial_->isSliderDown()) ShowDial(degrees);
}

void AngleEditor::ShowDial(double degrees) {
  const QSignalBlocker quiet(dial_);
  dial_->setValue(DialPosition(degrees));
}

}  // namespace vitrell::panel
