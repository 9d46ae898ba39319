// Slider and field of one number.
#include "panel/widgets/number_editor.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <algorithm>
#include <cmath>

#include "look/value_text.h"
#include "panel/widgets/scrub_field.h"

namespace vitrell::panel {
namespace {

constexpr int kLeastFieldWidth = 84;
constexpr int kPageTicks = 10;

}  // namespace

NumberEditor::NumberEditor(const look::Control& control, const QString& spokenName, QWidget* parent)
    : ValueEditor(parent),
      control_(control),
      step_(StepFor(control.sliderMaximum - control.sliderMinimum)),
      slider_(new QSlider(Qt::Horizontal, this)),
      field_(new ScrubField(StyleOf(control), this)) {
  const double range = std::max(control.sliderMaximum - control.sliderMinimum, step_);
  slider_->setRange(0, static_cast<int>(std::ceil(range / step_)));
  slider_->setPageStep(kPageTicks);
  slider_->setAccessibleName(spokenName);
  slider_->setAccessibleDescription(
      tr("slider, %1 to %2")
          .arg(ShortNumber(control.sliderMinimum), ShortNumber(control.sliderMaximum)));
  IgnoreWheelWithoutFocus(slider_);
  field_->setAccessibleName(spokenName);
  field_->setAccessibleDescription(QString::fromStdString(look::DescribeRange(control)));
  field_->setToolTip(QString::fromStdString(look::DescribeRange(control)));
  field_->setMinimumWidth(kLeastFieldWidth);
  field_->setMaximumWidth(kLeastFieldWidth);

  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(field_);
  layout->addWidget(slider_, 1);
  setFocusProxy(field_);
  // Coming from outside, Tab goes to the field and from there on: what was made before it would be
  // left out.
  setTabOrder(field_, slider_);

  connect(slider_, &QSlider::valueChanged, this, &NumberEditor::SliderChanged);
  connect(slider_, &QSlider::sliderReleased, this,
          [this] { Q_EMIT Edited(field_->Value(), EditPhase::kDone); });
  connect(field_, &ScrubField::Edited, this,
          [this](double number, EditPhase phase) { Q_EMIT Edited(number, phase); });
  connect(field_, &ScrubField::Refused, this, &ValueEditor::Refused);
}

void NumberEditor::SliderChanged(int tick) {
  const double number = OnGrid(control_.sliderMinimum + tick * step_, step_);
  const double within =
      std::clamp(std::min(number, control_.sliderMaximum), control_.minimum, control_.maximum);
  field_->ShowValue(within);
  Q_EMIT Edited(within, slider_->isSliderDown() ? EditPhase::kDragging : EditPhase::kDone);
}

void NumberEditor::ShowValue(const look::Value& value) {
  const double number = std::get<double>(value);
  field_->ShowValue(number);
  if (slider_->isSliderDown()) return;
  const double within = std::clamp(number, control_.sliderMinimum, control_.sliderMaximum);
  const QSignalBlocker quiet(slider_);
  slider_->setValue(static_cast<int>(std::round((within - control_.sliderMinimum) / step_)));
}

}  // namespace vitrell::panel
