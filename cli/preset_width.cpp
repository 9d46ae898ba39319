// Comparing widths.
#include "cli/preset_width.h"

#include <cmath>

#include "cli/failure.h"
#include "look/value_text.h"

namespace vitrell::cli {

void CheckFit(const RenderArguments& arguments, const look::Settings& settings) {
  if (!arguments.fit) return;
  if (arguments.effect.presets.empty()) {
    throw Failure(kWrongUsage, "--fit: needs a --preset, whose lengths it scales.");
  }
  if (settings.WidthsMadeFor().empty()) {
    throw Failure(
        kFailed,
        "--fit: no preset has a length in pixels and tells the width of its picture. Add "
        "\"picture-width\": 1920 to the preset, with the right number, or leave --fit out.");
  }
}

void FitPresets(bool fit, int width, look::Settings& settings, Notes& notes) {
  if (fit) {
    for (const std::string& name : settings.FitTo(width)) {
      notes.Advise("--fit: " + name + " would leave its range and got the end of it.");
    }
    return;
  }
  for (const double madeFor : settings.WidthsMadeFor()) {
    if (std::abs(width - madeFor) < madeFor / 2) continue;
    notes.Advise("a preset was made for a picture " + look::FormatNumber(madeFor) +
                 " pixels wide, and this one has " + std::to_string(width) +
                 ": its lengths in pixels stay as they are. --fit scales them.");
  }
}

}  // namespace vitrell::cli
