// Index and time.
#include "cli/video_keys.h"

#include <algorithm>
#include <cmath>

namespace vitrell::cli {
namespace {

// Containers round time stamps, to a millisecond at the coarsest; a frame that is farther from its
// place than this part of a frame is there on purpose.
constexpr double kRounding = 0.25;

bool IsInSeconds(const look::Keys& keys) {
  return std::any_of(keys.begin(), keys.end(),
                     [](const look::Key& key) { return key.time.seconds; });
}

}  // namespace

look::Settings SettingsOfFrame(const look::Settings& settings, const look::TimeBase& base,
                               double index, double seconds) {
  if (!settings.Moves()) return settings;
  look::Settings values = settings.At(index, base);
  const double place = seconds * base.framesPerSecond;
  if (std::abs(place - index) <= kRounding) return values;
  const look::Settings timed = settings.At(place, base);
  for (const look::Control& control : settings.GetPanel().controls) {
    const look::Keys* keys = settings.KeysOf(control);
    if (keys != nullptr && IsInSeconds(*keys)) values.SetValue(control, timed.ValueOf(control));
  }
  return values;
}

}  // namespace vitrell::cli
