// Keys as the host puts them on the clipboard.
#include "look/clipboard_keys.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "look/failure.h"
#include "look/value_text.h"

namespace vitrell::look {
namespace {

constexpr std::string_view kFirstLine = "Adobe After Effects 8.0 Keyframe Data";
constexpr std::string_view kLastLine = "End of Keyframe Data";

using Fields = std::vector<std::string_view>;

std::string_view TakeLine(std::string_view* text) {
  const std::size_t end = std::min(text->find_first_of("\r\n"), text->size());
  const std::string_view line = text->substr(0, end);
  const bool both = text->substr(end, 2) == "\r\n";
  text->remove_prefix(std::min(end + (both ? 2 : 1), text->size()));
  return line;
}

// Without the empty fields at the end, which the lines of keys have.
Fields SplitAtTabs(std::string_view line) {
  Fields fields;
  for (std::size_t begin = 0; begin <= line.size();) {
    const std::size_t end = std::min(line.find('\t', begin), line.size());
    fields.push_back(line.substr(begin, end - begin));
    begin = end + 1;
  }
  while (!fields.empty() && fields.back().empty()) fields.pop_back();
  return fields;
}

std::optional<double> ReadNumber(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
    return std::nullopt;
  }
  return number;
}

// "Amount #12" -> "Amount", 12.
std::pair<std::string_view, int> SplitNumber(std::string_view name) {
  const std::size_t mark = name.rfind(" #");
  if (mark == std::string_view::npos) return {name, 0};
  return {name.substr(0, mark), static_cast<int>(ReadNumber(name.substr(mark + 2)).value_or(0))};
}

const Control* FindControl(const Panel& panel, std::string_view effectName, const Fields& path) {
  if (path.size() != 3 || path[0] != "Effects" || SplitNumber(path[1]).first != effectName) {
    return nullptr;
  }
  const auto [label, number] = SplitNumber(path[2]);
  const Control* found = nullptr;
  int count = 0;
  for (const Control& control : panel.controls) {
    if (CollapseBlanks(control.label) != CollapseBlanks(label)) continue;
    if (control.index == number) return &control;
    found = &control;
    ++count;
  }
  return count == 1 ? found : nullptr;
}

std::string ColourText(const std::vector<double>& numbers) {
  // Alpha comes first.
  std::string text;
  for (std::size_t i = numbers.size() - 3; i < numbers.size(); ++i) {
    if (!text.empty()) text += ',';
    text += FormatNumber(std::floor(numbers[i] + 0.5));
  }
  return text;
}

Value ValueOf(const Control& control, const std::vector<double>& numbers) {
  const std::size_t needed = control.kind == ControlKind::kPoint    ? 2
                             : control.kind == ControlKind::kColour ? 3
                                                                    : 1;
  if (numbers.size() < needed) throw ValueError("a key has too few numbers.");
  if (control.kind == ControlKind::kColour) return ParseValue(control, ColourText(numbers));
  if (control.kind == ControlKind::kPoint) {
    return ParseValue(control, FormatNumber(numbers[0]) + "," + FormatNumber(numbers[1]));
  }
  if (control.kind == ControlKind::kNumber || control.kind == ControlKind::kAngle) {
    return CheckedNumber(control, numbers[0]);
  }
  return ParseValue(control, FormatNumber(numbers[0]));
}

// A line of a block: an empty field, the frame, and the value's numbers.
std::optional<Key> ReadKey(const Control& control, const Fields& fields) {
  std::vector<double> numbers;
  for (std::size_t i = 1; i < fields.size(); ++i) {
    const std::optional<double> number = ReadNumber(fields[i]);
    if (!number) return std::nullopt;  // The names of the columns.
    numbers.push_back(*number);
  }
  if (numbers.empty() || std::abs(numbers[0]) > kFarthestFrame) return std::nullopt;
  Key key;
  key.time.amount = numbers[0];
  numbers.erase(numbers.begin());
  key.value = ValueOf(control, numbers);
  const bool jumps = control.kind == ControlKind::kChoice || control.kind == ControlKind::kSwitch;
  if (jumps) key.stretch = Stretch::kHold;
  return key;
}

void ReadHeader(const Fields& fields, ClipboardKeys* result) {
  if (fields.size() != 3) return;
  const double number = ReadNumber(fields[2]).value_or(0);
  if (fields[1] == "Units Per Second") result->framesPerSecond = number;
  if (fields[1] == "Source Width") result->sourceWidth = number;
  if (fields[1] == "Source Height") result->sourceHeight = number;
}

std::string Joined(const Fields& path) {
  std::string text;
  for (const std::string_view part : path) {
    if (!text.empty()) text += " / ";
    text += part;
  }
  return text;
}

// Reads lines of keys until the next block; the panel's control is null for an unmatched block.
class BlockReader {
 public:
  BlockReader(const Panel& panel, std::string_view effectName, ClipboardKeys* result)
      : panel_(panel), effectName_(effectName), result_(result) {}

  void Read(const Fields& fields) {
    if (!fields[0].empty()) {
      Begin(fields);
    } else if (!inBlock_) {
      ReadHeader(fields, result_);
    } else if (control_ != nullptr) {
      const std::optional<Key> key = ReadKey(*control_, fields);
      if (key) result_->keys.back().second.push_back(*key);
    }
  }

 private:
  void Begin(const Fields& path) {
    inBlock_ = true;
    control_ = FindControl(panel_, effectName_, path);
    if (control_ == nullptr) {
      result_->unmatched.push_back(Joined(path));
    } else {
      result_->keys.emplace_back(control_, Keys());
    }
  }

  const Panel& panel_;
  std::string_view effectName_;
  ClipboardKeys* result_;
  const Control* control_ = nullptr;
  bool inBlock_ = false;
};

}  // namespace

ClipboardKeys ReadClipboardKeys(const Panel& panel, std::string_view effectName,
                                std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (!TakeLine(&text).starts_with(kFirstLine)) {
    throw ValueError("the first line must be \"" + std::string(kFirstLine) +
                     "\". Copy keyframes in the timeline and paste them into a text file.");
  }
  ClipboardKeys result;
  BlockReader reader(panel, effectName, &result);
  while (true) {
    if (text.empty()) {
      throw ValueError("the last line, \"" + std::string(kLastLine) +
                       "\", is missing. Copy and paste all of the text.");
    }
    const std::string_view line = TakeLine(&text);
    if (line.starts_with(kLastLine)) break;
    const Fields fields = SplitAtTabs(line);
    if (!fields.empty()) reader.Read(fields);
  }
  const auto isEmpty = [](const auto& entry) { return entry.second.empty(); };
  result.keys.erase(std::remove_if(result.keys.begin(), result.keys.end(), isEmpty),
                    result.keys.end());
  for (const auto& [control, keys] : result.keys) CheckKeys(*control, keys);
  return result;
}

}  // namespace vitrell::look
