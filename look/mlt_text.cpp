// Animation strings of MLT.
#include "look/mlt_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "look/animation_text.h"
#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::look {
namespace {

// Linux passes arguments of up to 128 KiB, which hold the parameter's name, too.
constexpr std::size_t kLongestText = 130000;
constexpr double kMostFrames = 1e6;  // eleven hours

// What stands alone, or behind the "=" of a key.
std::string StillText(const Frei0rParameter& parameter, const Settings& settings) {
  const Control& control = settings.GetPanel().controls[parameter.control];
  const Value& value = settings.ValueOf(control);
  if (const auto* on = std::get_if<bool>(&value)) return *on ? "1" : "0";
  if (parameter.kind == Frei0rKind::kColour) return FormatValue(control, value);
  return Frei0rText(parameter, settings);
}

// MLT's times are whole frames from 0 on, or below 0 from the end.
bool TakesTime(const KeyTime& time, const TimeBase& base) {
  const double frame = time.Frame(base);
  const bool staysFromEnd = time.fromEnd && base.length <= 0;
  return frame == std::floor(frame) && (staysFromEnd ? frame < 0 : frame >= 0);
}

bool TakesKeys(const Control& control, const Keys& keys, const TimeBase& base) {
  return FitsText(keys) && std::all_of(keys.begin(), keys.end(), [&](const Key& key) {
           const bool moves = key.stretch != Stretch::kHold;
           return TakesTime(key.time, base) && (control.kind != ControlKind::kColour || !moves);
         });
}

std::string FrameText(double frame) { return std::to_string(static_cast<std::int64_t>(frame)); }

std::string KeysText(const Frei0rParameter& parameter, const Settings& settings, const Keys& keys,
                     const TimeBase& base) {
  const Control& control = settings.GetPanel().controls[parameter.control];
  Settings still = settings;
  std::string text;
  for (const Key& key : keys) {
    still.SetValue(control, key.value);
    if (!text.empty()) text += ';';
    text += FrameText(key.time.Frame(base));
    if (key.stretch == Stretch::kSmooth) text += '~';
    if (key.stretch == Stretch::kHold) text += '|';
    text += '=' + StillText(parameter, still);
  }
  return text;
}

[[noreturn]] void Fail(const Control& control, const std::string& why) {
  throw Failure(kWrongUsage, control.name + ": " + why);
}

// One held value for each frame, but for those that repeat the one before.
std::string FramesText(const Frei0rParameter& parameter, const Settings& settings, const Keys& keys,
                       const TimeBase& base) {
  const Control& control = settings.GetPanel().controls[parameter.control];
  double first = keys.front().time.Frame(base);
  double last = first;
  for (const Key& key : keys) {
    if (key.time.fromEnd && base.length <= 0) {
      Fail(control, "these keys count from the end, which is not known. Give --length FRAMES.");
    }
    first = std::min(first, key.time.Frame(base));
    last = std::max(last, key.time.Frame(base));
  }
  first = std::max(std::floor(first), 0.0);
  last = std::max(std::ceil(last), first);
  const auto tooLong = [&] {
    Fail(control,
         "MLT needs one value for each frame of this curve, more than one argument holds. Use "
         "fewer frames, or keys on whole frames without easing.");
  };
  if (last - first > kMostFrames) tooLong();
  const Curve curve(control, keys, base);
  Settings still = settings;
  std::string text;
  std::string before;
  const int frames = static_cast<int>(last - first) + 1;
  for (int i = 0; i < frames; ++i) {
    const double frame = first + i;
    still.SetValue(control, curve.At(frame));
    const std::string value = StillText(parameter, still);
    if (value == before) continue;
    text += (text.empty() ? "" : ";") + FrameText(frame) + "|=" + value;
    before = value;
    if (text.size() > kLongestText) tooLong();
  }
  return text;
}

}  // namespace

std::string MltText(const Frei0rParameter& parameter, const Settings& settings,
                    const TimeBase& base) {
  const Control& control = settings.GetPanel().controls[parameter.control];
  const Keys* const keys = settings.KeysOf(control);
  if (keys == nullptr) return StillText(parameter, settings);
  return TakesKeys(control, *keys, base) ? KeysText(parameter, settings, *keys, base)
                                         : FramesText(parameter, settings, *keys, base);
}

}  // namespace vitrell::look
