// Keys as JSON, in the form of Lottie's animated properties.
#include "look/animation_json.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::look {
namespace {

using Json = nlohmann::ordered_json;

double NumberOf(const Json& json, const char* name) {
  if (!json.is_number()) throw ValueError(std::string("\"") + name + "\" must be a number.");
  return json.get<double>();
}

// A number, or a list of at least one.
std::vector<double> NumbersOf(const Json& json, const char* name) {
  std::vector<double> numbers;
  if (json.is_number()) return {json.get<double>()};
  if (json.is_array() && !json.empty()) {
    for (const Json& element : json) numbers.push_back(NumberOf(element, name));
    return numbers;
  }
  throw ValueError(std::string("\"") + name + "\" must be a number or a list of numbers.");
}

std::string ChannelText(double share) {
  if (!(share >= 0 && share <= 1)) {
    throw ValueError("a colour's red, green and blue must be from 0 to 1.");
  }
  return FormatNumber(std::floor(share * 255 + 0.5));
}

Value ValueOfNumbers(const Control& control, const std::vector<double>& numbers) {
  const std::size_t needed = control.kind == ControlKind::kPoint    ? 2
                             : control.kind == ControlKind::kColour ? 3
                                                                    : 1;
  if (numbers.size() < needed) throw ValueError("\"s\" has too few numbers.");
  if (control.kind == ControlKind::kColour) {
    return ParseValue(control, ChannelText(numbers[0]) + "," + ChannelText(numbers[1]) + "," +
                                   ChannelText(numbers[2]));
  }
  if (control.kind == ControlKind::kPoint) {
    return ParseValue(control, FormatNumber(numbers[0]) + "," + FormatNumber(numbers[1]));
  }
  if (control.kind == ControlKind::kNumber || control.kind == ControlKind::kAngle) {
    return CheckedNumber(control, numbers[0]);
  }
  return ParseValue(control, FormatNumber(numbers[0]));
}

// "o" and "i" of a key: {"x": ..., "y": ...} with a number for all components or one for each.
std::vector<CubicEasing> EasingOf(const Json& key) {
  if (!key.contains("o") || !key.contains("i")) return {};
  std::vector<std::vector<double>> parts;
  for (const char* handle : {"o", "i"}) {
    for (const char* axis : {"x", "y"}) {
      const Json& object = key[handle];
      if (!object.is_object() || !object.contains(axis)) {
        throw ValueError(R"("o" and "i" must be objects with "x" and "y".)");
      }
      parts.push_back(NumbersOf(object[axis], axis));
    }
  }
  std::vector<CubicEasing> easing;
  for (std::size_t c = 0; c < parts[0].size(); ++c) {
    const auto at = [&](std::size_t part) {
      return parts[part][std::min(c, parts[part].size() - 1)];
    };
    const CubicEasing curve = {at(0), at(1), at(2), at(3)};
    if (!(curve.x1 >= 0 && curve.x1 <= 1 && curve.x2 >= 0 && curve.x2 <= 1)) {
      throw ValueError(R"("x" of "o" and "i" must be from 0 to 1.)");
    }
    easing.push_back(curve);
  }
  return easing;
}

PathPosition TangentOf(const Json& key, const char* name) {
  const std::vector<double> numbers = NumbersOf(key[name], name);
  if (numbers.size() < 2) throw ValueError(R"("to" and "ti" need two numbers.)");
  return {numbers[0], numbers[1]};
}

std::optional<PathTangents> PathOf(const Control& control, const Json& key) {
  if (control.kind != ControlKind::kPoint || !key.contains("to") || !key.contains("ti")) return {};
  const PathTangents tangents = {TangentOf(key, "to"), TangentOf(key, "ti")};
  if (tangents == PathTangents{}) return {};
  return tangents;
}

Key KeyOf(const Control& control, const Json& json, const Json* end) {
  if (!json.is_object() || !json.contains("t")) {
    throw ValueError(R"(each of "k" must be an object with "t", the key's frame.)");
  }
  const Json* value = json.contains("s") ? &json["s"] : end;
  if (value == nullptr) throw ValueError("a key has no value \"s\".");
  Key key;
  key.time.amount = NumberOf(json["t"], "t");
  if (!(std::abs(key.time.amount) <= kFarthestFrame)) throw ValueError("\"t\" is too far away.");
  key.value = ValueOfNumbers(control, NumbersOf(*value, "s"));
  if (json.contains("h") && NumberOf(json["h"], "h") == 1) {
    key.stretch = Stretch::kHold;
    return key;
  }
  key.easing = EasingOf(json);
  key.path = PathOf(control, json);
  if (!key.easing.empty()) key.stretch = Stretch::kEased;
  return key;
}

Json NumbersFromValue(const Value& value) {
  if (const auto* number = std::get_if<double>(&value)) return Json::array({*number});
  if (const auto* on = std::get_if<bool>(&value)) return Json::array({*on ? 1 : 0});
  if (const auto* choice = std::get_if<ChoiceValue>(&value)) return Json::array({choice->number});
  if (const auto* point = std::get_if<PointValue>(&value)) {
    return Json::array({point->x.value, point->y.value});
  }
  const auto& colour = std::get<ColourValue>(value);
  return Json::array({colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0});
}

Json HandleFromEasing(const std::vector<CubicEasing>& easing, double CubicEasing::*x,
                      double CubicEasing::*y) {
  Json handle = {{"x", Json::array()}, {"y", Json::array()}};
  for (const CubicEasing& curve : easing) {
    handle["x"].push_back(curve.*x);
    handle["y"].push_back(curve.*y);
  }
  return handle;
}

}  // namespace

Keys KeysFromJson(const Control& control, const Json& object) {
  if (!object.contains("k")) throw ValueError("an object of keys needs \"k\".");
  const Json& list = object["k"];
  if (!object.contains("a") || object["a"] == 0) {
    return {{{}, ValueOfNumbers(control, NumbersOf(list, "k")), Stretch::kHold}};
  }
  if (!list.is_array() || list.empty()) throw ValueError("\"k\" must be a list of keys.");
  Keys keys;
  const Json* end = nullptr;
  for (const Json& json : list) {
    keys.push_back(KeyOf(control, json, end));
    end = json.contains("e") ? &json["e"] : nullptr;
  }
  CheckKeys(control, keys);
  return keys;
}

Json JsonFromKeys(const Keys& keys) {
  Json list = Json::array();
  for (const Key& key : keys) {
    Json json = {{"t", key.time.amount}, {"s", NumbersFromValue(key.value)}};
    if (key.stretch == Stretch::kHold) json["h"] = 1;
    if (key.stretch == Stretch::kEased) {
      json["o"] = HandleFromEasing(key.easing, &CubicEasing::x1, &CubicEasing::y1);
      json["i"] = HandleFromEasing(key.easing, &CubicEasing::x2, &CubicEasing::y2);
    }
    if (key.path) {
      json["to"] = {key.path->leaving.x, key.path->leaving.y};
      json["ti"] = {key.path->arriving.x, key.path->arriving.y};
    }
    list.push_back(json);
  }
  return {{"a", 1}, {"k", list}};
}

}  // namespace vitrell::look
