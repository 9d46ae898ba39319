// The one look that shows the mask.
#include "panel/model/mask_settings.h"

#include <algorithm>
#include <string>

namespace vitrell::panel {
namespace {

constexpr const char* kLensGroup = "lens.";
constexpr const char* kStageSwitch = ".visible";

struct Wanted {
  const char* name;
  look::Value value;
};

// White with full opacity, laid over the picture as it is.
const Wanted kWash[] = {{"color.visible", true},
                        {"color.color", look::ColourValue{255, 255, 255}},
                        {"color.opacity", 100.0},
                        {"intensity", 100.0},
                        {"mode", look::ChoiceValue{1}}};

}  // namespace

std::optional<look::Settings> MaskSettings(const look::Settings& settings) {
  const look::Panel& panel = settings.GetPanel();
  look::Settings mask(panel);
  for (const look::Control& control : panel.controls) {
    if (control.name.starts_with(kLensGroup)) {
      mask.SetValue(control, settings.ValueOf(control));
    } else if (control.name.ends_with(kStageSwitch)) {
      mask.SetValue(control, false);
    }
  }
  for (const Wanted& wanted : kWash) {
    const look::Control* control = panel.Find(wanted.name);
    if (control == nullptr || control->defaultValue.index() != wanted.value.index()) return {};
    mask.SetValue(*control, wanted.value);
  }
  return mask;
}

headless::WorldBuffer BlackWorld(const headless::WorldBuffer& like) {
  headless::WorldBuffer black(like.Width(), like.Height(), like.Deep(),
                              {.fresh = headless::FreshPixels::kZero});
  for (int y = 0; y < black.Height(); ++y) {
    for (int x = 0; x < black.Width(); ++x) {
      if (black.Deep()) {
        black.At16(x, y).alpha = 32768;
      } else {
        black.At8(x, y).alpha = 255;
      }
    }
  }
  return black;
}

}  // namespace vitrell::panel
