// Writes presets of random settings, one file each: random_presets FOLDER COUNT SEED.
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "headless/effect_host.h"
#include "look/preset.h"
#include "look/value_text.h"
#include "whole/dice.h"

namespace vitrell {
namespace {

using look::Control;
using look::ControlKind;
using whole::Dice;

// A number as somebody types it, seldom beyond the slider.
std::string RandomNumber(const Control& control, Dice& dice) {
  const bool isAngle = control.kind == ControlKind::kAngle;
  const double low = isAngle ? -400 : control.sliderMinimum;
  double high = isAngle ? 400 : control.sliderMaximum;
  if (!isAngle && dice.Chance(10)) high = std::min(control.maximum, 2 * high);
  const double strength = dice.Real(0, 1);
  char text[32];
  std::snprintf(text, sizeof(text), "%.*f", dice.Below(4),
                low + (high - low) * strength * strength);
  return text;
}

std::string RandomValue(const Control& control, Dice& dice) {
  switch (control.kind) {
    case ControlKind::kSwitch:
      return dice.Chance(50) ? "on" : "off";
    case ControlKind::kChoice:
      return std::to_string(1 + dice.Below(static_cast<int>(control.choices.size())));
    case ControlKind::kPoint:
      return std::to_string(dice.Between(-20, 120)) + "." + std::to_string(dice.Below(1000)) +
             "%," + std::to_string(dice.Between(0, 100)) + "%";
    case ControlKind::kColour:
      return std::to_string(dice.Below(256)) + "," + std::to_string(dice.Below(256)) + ",7";
    default:
      return RandomNumber(control, dice);
  }
}

// Most controls keep their default, so that single stages show.
void WritePreset(const look::Panel& panel, const std::filesystem::path& file, Dice& dice) {
  look::Settings settings(panel);
  for (const Control& control : panel.controls) {
    if (control.kind == ControlKind::kLayer || dice.Chance(45)) continue;
    settings.SetValue(control, look::ParseValue(control, RandomValue(control, dice)));
  }
  look::SavePreset(file, settings);
}

}  // namespace
}  // namespace vitrell

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "random_presets FOLDER COUNT SEED\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  vitrell::headless::EffectHost host(VITRELL_MODULE_PATH);
  const vitrell::look::Panel panel = vitrell::look::MakePanel(host.Parameters());
  vitrell::whole::Dice dice(std::strtoull(argv[3], nullptr, 10));
  for (int i = 0; i < std::atoi(argv[2]); ++i) {
    vitrell::WritePreset(panel, folder / (std::to_string(i) + ".json"), dice);
  }
  return 0;
}
