// Keys as one line of text.
#include "look/animation_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::look {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr double kLongestTime = 1e9;     // In frames or seconds.
constexpr std::size_t kMostDigits = 18;  // So that FormatNumber writes no exponent.

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Digits with or without a fraction, and nothing else.
std::optional<double> ReadAmount(std::string_view text) {
  if (text.empty() || text.size() > kMostDigits ||
      text.find_first_not_of("0123456789.") != std::string_view::npos) {
    return std::nullopt;
  }
  double amount = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), amount, std::chars_format::fixed);
  if (error != std::errc() || end != text.data() + text.size() || amount > kLongestTime) {
    return std::nullopt;
  }
  return amount;
}

// "HH:MM:SS.mmm" in seconds.
std::optional<double> ReadClock(std::string_view text) {
  double seconds = 0;
  for (int part = 0; part < 3; ++part) {
    const std::size_t colon = text.find(':');
    if ((colon == std::string_view::npos) != (part == 2)) return std::nullopt;
    const std::string_view digits = text.substr(0, colon);
    const std::optional<double> amount = ReadAmount(digits);
    if (!amount || (part > 0 && *amount >= 60)) return std::nullopt;
    if (part < 2 && digits.find('.') != std::string_view::npos) return std::nullopt;
    seconds = seconds * 60 + *amount;
    if (part < 2) text.remove_prefix(colon + 1);
  }
  return seconds;
}

std::optional<KeyTime> ReadTime(std::string_view text) {
  KeyTime time;
  time.fromEnd = text.starts_with('-');
  if (time.fromEnd) text.remove_prefix(1);
  std::optional<double> amount = ReadClock(text);
  time.seconds = amount || text.ends_with('s');
  if (!amount) {
    if (time.seconds) text.remove_suffix(1);
    amount = ReadAmount(text);
  }
  if (!amount) return std::nullopt;
  time.amount = time.fromEnd ? -*amount : *amount;
  return time;
}

struct KeyText {
  KeyTime time;
  Stretch stretch = Stretch::kLinear;
  std::string_view value;
};

std::optional<KeyText> SplitKey(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  std::string_view time = TrimBlanks(text.substr(0, equals));
  KeyText key;
  if (time.ends_with('~')) key.stretch = Stretch::kSmooth;
  if (time.ends_with('|')) key.stretch = Stretch::kHold;
  if (key.stretch != Stretch::kLinear) time.remove_suffix(1);
  const std::optional<KeyTime> read = ReadTime(TrimBlanks(time));
  if (!read) return std::nullopt;
  key.time = *read;
  key.value = TrimBlanks(text.substr(equals + 1));
  return key;
}

std::string FormatTime(const KeyTime& time) {
  const std::string sign = time.fromEnd && time.amount == 0 ? "-" : "";
  return sign + FormatNumber(time.amount) + (time.seconds ? "s" : "");
}

}  // namespace

bool HoldsKeys(const Control& control, std::string_view text) {
  return control.kind != ControlKind::kLayer && text.find('=') != std::string_view::npos;
}

Keys ParseKeys(const Control& control, std::string_view text) {
  Keys keys;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(';'), text.size());
    const std::string_view item = TrimBlanks(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (item.empty()) continue;
    const std::optional<KeyText> key = SplitKey(item);
    if (!key) {
      throw ValueError("\"" + std::string(item) +
                       "\" is no key. Give TIME=VALUE, TIME~=VALUE (smooth) or TIME|=VALUE (hold), "
                       "where TIME is a frame, seconds such as 1.5s, or 00:00:01.500.");
    }
    keys.push_back({key->time, ParseValue(control, key->value), key->stretch});
  }
  if (keys.empty()) throw ValueError("there is no key. Give TIME=VALUE, for example 0=10; 50=20.");
  CheckKeys(control, keys);
  return keys;
}

std::string FormatKeys(const Control& control, const Keys& keys) {
  std::string text;
  for (const Key& key : keys) {
    if (!text.empty()) text += "; ";
    text += FormatTime(key.time);
    if (key.stretch == Stretch::kSmooth) text += '~';
    if (key.stretch == Stretch::kHold) text += '|';
    text += '=' + FormatValue(control, key.value);
  }
  return text;
}

bool FitsText(const Keys& keys) {
  return std::all_of(keys.begin(), keys.end(),
                     [](const Key& key) { return key.stretch != Stretch::kEased && !key.path; });
}

}  // namespace vitrell::look
