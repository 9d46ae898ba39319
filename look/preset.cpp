// Reading and writing presets.
#include "look/preset.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

#include "look/animation_json.h"
#include "look/animation_text.h"
#include "look/failure.h"
#include "look/text_file.h"
#include "look/value_text.h"
#include "media/output_file.h"
#include "media/standard_streams.h"

namespace vitrell::look {
namespace {

using Json = nlohmann::ordered_json;

// No control's name: those have no such word before the dot.
constexpr const char* kWidthKey = "picture-width";
// Far beyond every picture.
constexpr double kMostWidth = 1e6;

[[noreturn]] void Fail(const std::filesystem::path& file, const std::string& cause) {
  throw Failure(kFailed, "preset " + media::ShownSource(file) + ": " + cause);
}

// "[json.exception.parse_error.101] parse error at line 2, column 3: ..." without the bracket.
std::string WithoutPrefix(const std::string& message) {
  const std::size_t end = message.find("] ");
  return end == std::string::npos ? message : message.substr(end + 2);
}

Json ParseObject(const std::filesystem::path& file) {
  Json json;
  try {
    json = Json::parse(ReadTextFile(file, "preset"));
  } catch (const Json::exception& error) {
    Fail(file, "is not valid JSON: " + WithoutPrefix(error.what()) +
                   ". Correct the file, or write a fresh one with --save-preset.");
  }
  if (!json.is_object()) {
    Fail(file,
         "must be one JSON object of names and values, such as {\"fast-blur.amount\": 35}. Correct "
         "the file, or write a fresh one with --save-preset.");
  }
  return json;
}

// [960, 540] or [255, 136, 0] as the text that --set takes.
std::string JoinNumbers(const Json& array) {
  std::string text;
  for (const Json& element : array) {
    if (!element.is_number()) throw ValueError("the list may only hold numbers.");
    if (!text.empty()) text += ',';
    text += FormatNumber(element.get<double>());
  }
  return text;
}

Value ValueFromJson(const Control& control, const Json& json) {
  const bool isNumber = control.kind == ControlKind::kNumber || control.kind == ControlKind::kAngle;
  if (json.is_number()) {
    const double number = json.get<double>();
    if (isNumber) return CheckedNumber(control, number);
    if (control.kind == ControlKind::kChoice) return ParseValue(control, FormatNumber(number));
  }
  if (json.is_number_integer() && control.kind == ControlKind::kSwitch) {
    return ParseValue(control, json.dump());
  }
  if (json.is_boolean() && control.kind == ControlKind::kSwitch) return json.get<bool>();
  if (json.is_string()) return ParseValue(control, json.get<std::string>());
  if (json.is_null() && control.kind == ControlKind::kLayer) return LayerValue{};
  if (json.is_array() &&
      (control.kind == ControlKind::kPoint || control.kind == ControlKind::kColour)) {
    return ParseValue(control, JoinNumbers(json));
  }
  // A list may be nested a hundred thousand times, too deep to print.
  const std::string given =
      json.is_structured() ? "the " + std::string(json.type_name()) : json.dump();
  throw ValueError(given + " is of the wrong type. Give " + DescribeRange(control) + ".");
}

// Empty for a value that stands still.
Keys KeysOf(const Control& control, const Json& json) {
  if (json.is_object()) return KeysFromJson(control, json);
  if (!json.is_string()) return {};
  const auto text = json.get<std::string>();
  return HoldsKeys(control, text) ? ParseKeys(control, text) : Keys();
}

Json JsonOfKeys(const Control& control, const Keys& keys) {
  return FitsText(keys) ? Json(FormatKeys(control, keys)) : JsonFromKeys(keys);
}

Json JsonFromValue(const Control& control, const Value& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* on = std::get_if<bool>(&value)) return *on;
  const auto* layer = std::get_if<LayerValue>(&value);
  if (layer != nullptr && layer->path.empty()) return nullptr;
  return FormatValue(control, value);
}

// Layers are named relative to the folder of the preset, so that both can move together.
Value RelativeLayer(const Value& value, const std::filesystem::path& folder) {
  const auto* layer = std::get_if<LayerValue>(&value);
  if (layer == nullptr || layer->path.empty()) return value;
  std::error_code ignored;
  const std::filesystem::path absolute = std::filesystem::absolute(layer->path, ignored);
  const std::string relative = absolute.lexically_proximate(folder).string();
  // The bare word means that there is no layer.
  return LayerValue{relative == "none" ? "./none" : relative};
}

// 0 where the preset tells none.
double ReadWidth(const std::filesystem::path& file, const Json& object) {
  const auto found = object.find(kWidthKey);
  if (found == object.end()) return 0;
  const double width = found->is_number() ? found->get<double>() : 0;
  if (width >= 1 && width <= kMostWidth) return width;
  Fail(file,
       "key \"" + std::string(kWidthKey) +
           "\" must be the width of a picture in pixels, such as 1920. Correct or remove it.");
}

}  // namespace

void LoadPreset(const std::filesystem::path& file, Settings& settings) {
  const Json object = ParseObject(file);
  const double width = ReadWidth(file, object);
  for (const auto& [key, json] : object.items()) {
    if (key == kWidthKey) continue;
    const Control* control = settings.GetPanel().Find(key);
    if (control == nullptr) {
      Fail(file, UnknownNameMessage(settings.GetPanel(), key) + " Correct or remove this key.");
    }
    try {
      if (const Keys keys = KeysOf(*control, json); !keys.empty()) {
        settings.SetKeys(*control, keys);
        settings.SetMadeFor(*control, width);
        continue;
      }
      Value value = ValueFromJson(*control, json);
      auto* layer = std::get_if<LayerValue>(&value);
      if (layer != nullptr && !layer->path.empty()) {
        layer->path = (file.parent_path() / layer->path).lexically_normal().string();
      }
      settings.SetValue(*control, value);
      settings.SetMadeFor(*control, width);
    } catch (const ValueError& error) {
      Fail(file, "key \"" + key + "\": " + error.what());
    }
  }
  settings.SetRestMadeFor(width);
}

std::string PresetText(const std::filesystem::path& file, const Settings& settings,
                       double pictureWidth) {
  std::error_code ignored;
  const std::filesystem::path folder = std::filesystem::absolute(file, ignored).parent_path();
  Json json = Json::object();
  if (pictureWidth == std::floor(pictureWidth)) {
    // "960" rather than "960.0".
    if (pictureWidth != 0) json[kWidthKey] = static_cast<std::int64_t>(pictureWidth);
  } else {
    json[kWidthKey] = pictureWidth;
  }
  for (const Control& control : settings.GetPanel().controls) {
    const Value value = RelativeLayer(settings.ValueOf(control), folder);
    const Keys* const keys = settings.KeysOf(control);
    json[control.name] =
        keys != nullptr ? JsonOfKeys(control, *keys) : JsonFromValue(control, value);
  }
  // File names need not be UTF-8; what is not is replaced rather than refused.
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::vector<std::string> SavePreset(const std::filesystem::path& file, const Settings& settings,
                                    double pictureWidth) {
  return media::WriteTextFile(file, PresetText(file, settings, pictureWidth));
}

}  // namespace vitrell::look
