// `vitrell keys`.
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <variant>

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

using OrderedJson = nlohmann::ordered_json;

OrderedJson JsonOf(const look::Control& control, const look::Value& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* on = std::get_if<bool>(&value)) return *on;
  return look::FormatValue(control, value);
}

const char* NameOf(look::Stretch stretch) {
  switch (stretch) {
    case look::Stretch::kLinear:
      return "linear";
    case look::Stretch::kSmooth:
      return "smooth";
    case look::Stretch::kHold:
      return "hold";
    case look::Stretch::kEased:
      break;
  }
  return "eased";
}

std::string ListAsJson(const look::Settings& settings, const look::TimeBase& base,
                       const look::FrameRange& range) {
  OrderedJson controls = OrderedJson::array();
  for (const look::Control& control : settings.GetPanel().controls) {
    const look::Keys* const keys = settings.KeysOf(control);
    if (keys == nullptr) continue;
    OrderedJson list = OrderedJson::array();
    for (const look::Key& key : *keys) {
      list.push_back({{"frame", key.time.Frame(base)},
                      {"value", JsonOf(control, key.value)},
                      {"stretch", NameOf(key.stretch)}});
    }
    controls.push_back({{"name", control.name}, {"keys", list}});
  }
  const OrderedJson json = {{"framesPerSecond", base.framesPerSecond},
                            {"first", range.first},
                            {"last", range.last},
                            {"controls", controls}};
  return json.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

void List(const look::Settings& settings) {
  for (const look::Control& control : settings.GetPanel().controls) {
    const look::Keys* const keys = settings.KeysOf(control);
    if (keys == nullptr) continue;
    std::printf("%s: %s\n", control.name.c_str(), Printable(TextOf(control, *keys)).c_str());
  }
  if (settings.Moves()) return;
  std::printf(
      "No control has keys. Give some, for example --set fast-blur.amount=\"0=0; 50=40\".\n");
}

}  // namespace

void RunKeys(const KeysArguments& arguments) {
  CheckStandardInput("", arguments.effect);
  if (!arguments.plot.empty()) media::CheckTarget(arguments.plot, arguments.force);
  const std::unique_ptr<headless::EffectHost> host = OpenEffect(arguments.effect.effect);
  const look::Panel panel = look::MakePanel(host->Parameters());
  const look::Settings settings = MakeSettings(panel, arguments.effect);
  const look::TimeBase base = TimeBaseOf(settings, arguments.effect);
  const look::FrameRange range = look::RangeOfKeys(settings, base);
  if (arguments.json) {
    std::fputs(ListAsJson(settings, base, range).c_str(), stdout);
  } else {
    List(settings);
  }
  if (arguments.plot.empty()) return;
  media::WriteTextFile(arguments.plot, look::PlotCurves(settings, base, range));
  if (arguments.json) return;
  std::printf("%s: frames %s to %s\n", Printable(arguments.plot).c_str(),
              look::FormatNumber(range.first).c_str(), look::FormatNumber(range.last).c_str());
}

}  // namespace vitrell::cli
