// `vitrell keys`.
#include <cstdio>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/effect_finder.h"
#include "cli/printable.h"
#include "cli/render_checks.h"
#include "look/animation_text.h"
#include "look/curve_plot.h"
#include "look/value_text.h"
#include "media/output_file.h"

namespace vitrell::cli {
namespace {

std::string TextOf(const look::Control& control, const look::Keys& keys) {
  const std::string text = look::FormatKeys(control, keys);
  return look::FitsText(keys) ? text : text + "  (eased)";
}

}  // namespace

void RunKeys(const KeysArguments& arguments) {
  CheckStandardInput("", arguments.effect.presets);
  if (!arguments.plot.empty()) media::CheckTarget(arguments.plot, arguments.force);
  const std::unique_ptr<headless::EffectHost> host = OpenEffect(arguments.effect.effect);
  const look::Panel panel = look::MakePanel(host->Parameters());
  const look::Settings settings = MakeSettings(panel, arguments.effect);
  const look::TimeBase base = TimeBaseOf(settings, arguments.effect);
  const look::FrameRange range = look::RangeOfKeys(settings, base);
  for (const look::Control& control : panel.controls) {
    const look::Keys* const keys = settings.KeysOf(control);
    if (keys == nullptr) continue;
    std::printf("%s: %s\n", control.name.c_str(), Printable(TextOf(control, *keys)).c_str());
  }
  if (!settings.Moves()) {
    std::printf(
        "No control has keys. Give some, for example --set fast-blur.amount=\"0=0; 50=40\".\n");
  }
  if (arguments.plot.empty()) return;
  media::WriteTextFile(arguments.plot, look::PlotCurves(settings, base, range));
  std::printf("%s: frames %s to %s\n", Printable(arguments.plot).c_str(),
              look::FormatNumber(range.first).c_str(), look::FormatNumber(range.last).c_str());
}

}  // namespace vitrell::cli
