// Moving, copying, deleting and stretching keys.
#include "panel/time/key_edits.h"

#include <algorithm>

namespace vitrell::panel {
namespace {

// The usual gentle curve: both ends level, a third of the stretch long.
constexpr look::CubicEasing kGentle = {0.33, 0, 0.67, 1};

bool OnlyHolds(const look::Control& control) {
  return control.kind == look::ControlKind::kChoice || control.kind == look::ControlKind::kSwitch;
}

// Of keys at one frame the last one stays, as in look::Curve.
look::Keys Ordered(look::Keys keys, const look::TimeBase& base) {
  const auto frame = [&](const look::Key& key) { return key.time.Frame(base); };
  std::stable_sort(keys.begin(), keys.end(),
                   [&](const look::Key& a, const look::Key& b) { return frame(a) < frame(b); });
  const auto kept =
      std::unique(keys.rbegin(), keys.rend(),
                  [&](const look::Key& a, const look::Key& b) { return frame(a) == frame(b); });
  keys.erase(keys.begin(), kept.base());
  return keys;
}

look::Keys Moved(const look::Keys& keys, const KeyFrames& frames, double by, bool keepOriginals,
                 const look::TimeBase& base) {
  const double reach = ReachOf(frames, by, base);
  look::Keys others, moved;
  for (const look::Key& key : keys) {
    const bool isMoved = frames.contains(key.time.Frame(base));
    if (!isMoved || keepOriginals) others.push_back(key);
    if (!isMoved) continue;
    moved.push_back(key);
    moved.back().time.amount += key.time.seconds ? reach / base.framesPerSecond : reach;
  }
  others.insert(others.end(), moved.begin(), moved.end());
  return Ordered(std::move(others), base);
}

}  // namespace

KeyFrames FramesOf(const look::Keys& keys, const look::TimeBase& base) {
  KeyFrames frames;
  for (const look::Key& key : keys) frames.insert(key.time.Frame(base));
  return frames;
}

// Keys that stand outside the clip already do not hold the others.
double ReachOf(const KeyFrames& frames, double by, const look::TimeBase& base) {
  if (frames.empty()) return 0;
  const double down = std::min(0.0, -*frames.begin());
  const double up = std::max(0.0, base.length - 1 - *frames.rbegin());
  return std::clamp(by, down, up);
}

look::Keys MovedKeys(const look::Keys& keys, const KeyFrames& frames, double by,
                     const look::TimeBase& base) {
  return Moved(keys, frames, by, false, base);
}

look::Keys CopiedKeys(const look::Keys& keys, const KeyFrames& frames, double by,
                      const look::TimeBase& base) {
  return Moved(keys, frames, by, true, base);
}

look::Keys RemainingKeys(const look::Keys& keys, const KeyFrames& frames,
                         const look::TimeBase& base) {
  look::Keys remaining;
  for (const look::Key& key : keys) {
    if (!frames.contains(key.time.Frame(base))) remaining.push_back(key);
  }
  return Ordered(std::move(remaining), base);
}

look::Keys StretchedKeys(const look::Control& control, const look::Keys& keys,
                         const KeyFrames& frames, look::Stretch stretch,
                         const look::TimeBase& base) {
  look::Keys changed = keys;
  for (look::Key& key : changed) {
    if (OnlyHolds(control) || !frames.contains(key.time.Frame(base))) continue;
    key.stretch = stretch;
    if (stretch != look::Stretch::kEased) {
      key.easing.clear();
    } else if (key.easing.empty()) {
      key.easing = {kGentle};
    }
  }
  return Ordered(std::move(changed), base);
}

look::Keys KeysWithValue(const look::Control& control, const look::Keys& keys, double frame,
                         const look::Value& value, const look::TimeBase& base) {
  look::Keys changed = Ordered(keys, base);
  look::Key added;
  added.time.amount = frame;
  added.value = value;
  added.stretch = OnlyHolds(control) ? look::Stretch::kHold : look::Stretch::kLinear;
  for (look::Key& key : changed) {
    if (key.time.Frame(base) == frame) {
      key.value = value;
      return changed;
    }
    if (key.time.Frame(base) > frame) continue;
    added.stretch = key.stretch;
    added.easing = key.easing;
  }
  changed.push_back(added);
  return Ordered(std::move(changed), base);
}

}  // namespace vitrell::panel
