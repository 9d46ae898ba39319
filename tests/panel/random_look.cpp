// Throwing dice for each kind of control.
#include "panel/random_look.h"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vitrell::panel {
namespace {

std::uint8_t RandomByte(whole::Dice& dice) { return static_cast<std::uint8_t>(dice.Below(256)); }

look::Coordinate RandomCoordinate(whole::Dice& dice, bool percent) {
  return {percent ? dice.Real(-20, 120) : dice.Between(-50, 400), percent};
}

}  // namespace

look::Value RandomValue(whole::Dice& dice, const look::Control& control) {
  switch (control.kind) {
    case look::ControlKind::kNumber:
      return dice.Real(control.sliderMinimum, control.sliderMaximum);
    case look::ControlKind::kAngle:
      return dice.Real(-720, 720);
    case look::ControlKind::kSwitch:
      return dice.Chance(50);
    case look::ControlKind::kChoice:
      return look::ChoiceValue{dice.Between(1, static_cast<int>(control.choices.size()))};
    case look::ControlKind::kPoint: {
      const bool percent = dice.Chance(50);
      return look::PointValue{RandomCoordinate(dice, percent), RandomCoordinate(dice, percent)};
    }
    case look::ControlKind::kColour:
      return look::ColourValue{RandomByte(dice), RandomByte(dice), RandomByte(dice)};
    case look::ControlKind::kLayer:
      break;
  }
  return look::LayerValue{};
}

int PositionOf(const look::Panel& panel, const char* name) {
  const look::Control* control = panel.Find(name);
  if (control == nullptr) throw std::runtime_error(std::string("no control ") + name);
  return static_cast<int>(control - panel.controls.data());
}

}  // namespace vitrell::panel
