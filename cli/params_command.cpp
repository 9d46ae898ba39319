// `vitrell params`.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/frei0r_text.h"
#include "cli/listing.h"
#include "cli/printable.h"
#include "cli/render_checks.h"
#include "look/preset.h"

namespace vitrell::cli {
namespace {

// Any size will do: the panel shows positions as they were given.
constexpr int kNominalWidth = 1920;
constexpr int kNominalHeight = 1080;

std::string ListingOf(const ParamsArguments& arguments, const look::Settings& settings) {
  if (arguments.frei0r && arguments.markdown) return Frei0rAsMarkdown(settings);
  if (arguments.frei0r) return Frei0rForFfmpeg(settings);
  if (arguments.json) return ListAsJson(settings);
  return arguments.markdown ? ListAsMarkdown(settings) : ListAsText(settings);
}

// `--frei0r FILE` is short for `--frei0r --preset FILE`, the last of the presets.
EffectArguments WithHostsPreset(const ParamsArguments& arguments) {
  EffectArguments effect = arguments.effect;
  if (!arguments.hostsPreset.empty()) effect.presets.push_back(arguments.hostsPreset);
  return effect;
}

}  // namespace

void RunParams(const ParamsArguments& arguments) {
  const EffectArguments effect = WithHostsPreset(arguments);
  CheckStandardInput("", effect);
  const std::unique_ptr<headless::EffectHost> host = OpenEffect(effect.effect);
  look::Panel panel = look::MakePanel(host->Parameters());
  look::Settings moving = MakeSettings(panel, effect);
  if (!arguments.savePreset.empty()) {
    CheckPresetTarget(arguments.savePreset, arguments.force);
    // A preset tells one width for all its lengths.
    const std::vector<double> widths = moving.WidthsMadeFor();
    const double width = widths.empty() ? 0 : widths.front();
    moving.FitTo(width);
    for (const std::string& note : look::SavePreset(arguments.savePreset, moving, width)) {
      std::fprintf(stderr, "vitrell: note: %s\n", Printable(note).c_str());
    }
    std::printf("%s: %zu controls\n", Printable(arguments.savePreset).c_str(),
                panel.controls.size());
    return;
  }
  if (arguments.mlt) {
    const std::string text = Frei0rForMelt(moving, {effect.framesPerSecond, effect.length});
    std::fputs(Printable(text, true).c_str(), stdout);
    return;
  }
  if (arguments.frei0r && !arguments.markdown && moving.Moves()) {
    std::fprintf(stderr,
                 "vitrell: note: FFmpeg's filter takes no keys; it gets the values of one "
                 "frame (--at).\n");
  }
  const look::Settings settings = SettingsAt(moving, effect);
  settings.Apply(*host, kNominalWidth, kNominalHeight);
  const PF_Err error = host->UpdatePanel();
  if (error != PF_Err_NONE) {
    throw Failure(kFailed,
                  "the effect could not update its panel: " + headless::DescribeError(error) + ".");
  }
  for (look::Control& control : panel.controls) {
    control.disabled = host->Parameters().at(static_cast<std::size_t>(control.index)).Greyed();
  }
  std::fputs(Printable(ListingOf(arguments, settings), true).c_str(), stdout);
}

}  // namespace vitrell::cli
