// Writing the panel down.
#include "cli/listing.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "look/value_text.h"

namespace vitrell::cli {
namespace {

using OrderedJson = nlohmann::ordered_json;

std::string Padded(std::string text, std::size_t width) {
  if (text.size() < width) text.append(width - text.size(), ' ');
  return text;
}

std::string ValueWithUnit(const look::Control& control, const look::Value& value) {
  return look::FormatValue(control, value) + look::UnitSuffix(control);
}

bool IsDefault(const look::Control& control, const look::Value& value) {
  return value == control.defaultValue;
}

// "0 to 32768, slider 0 to 127".
std::string RangeWithSlider(const look::Control& control) {
  std::string range = look::DescribeRange(control);
  if (control.kind == look::ControlKind::kNumber &&
      (control.sliderMinimum != control.minimum || control.sliderMaximum != control.maximum)) {
    range += ", slider " + look::FormatNumber(control.sliderMinimum) + " to " +
             look::FormatNumber(control.sliderMaximum);
  }
  return range;
}

const char* KindName(look::ControlKind kind) {
  switch (kind) {
    case look::ControlKind::kNumber:
      return "number";
    case look::ControlKind::kAngle:
      return "angle";
    case look::ControlKind::kSwitch:
      return "switch";
    case look::ControlKind::kChoice:
      return "choice";
    case look::ControlKind::kPoint:
      return "point";
    case look::ControlKind::kColour:
      return "colour";
    case look::ControlKind::kLayer:
      return "layer";
  }
  return "";
}

OrderedJson JsonOfValue(const look::Control& control, const look::Value& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* on = std::get_if<bool>(&value)) return *on;
  return look::FormatValue(control, value);
}

OrderedJson JsonOfControl(const look::Control& control, const look::Value& value) {
  OrderedJson json = {{"name", control.name},
                      {"label", control.label},
                      {"kind", KindName(control.kind)},
                      {"value", JsonOfValue(control, value)},
                      {"default", JsonOfValue(control, control.defaultValue)}};
  if (control.kind == look::ControlKind::kNumber) {
    json["minimum"] = control.minimum;
    json["maximum"] = control.maximum;
    json["sliderMinimum"] = control.sliderMinimum;
    json["sliderMaximum"] = control.sliderMaximum;
  }
  if (control.percent) json["unit"] = "percent";
  if (control.kind == look::ControlKind::kAngle) json["unit"] = "degrees";
  if (control.kind == look::ControlKind::kChoice) json["choices"] = control.choices;
  json["greyedOut"] = control.disabled;
  json["index"] = control.index;
  json["diskId"] = control.diskId;
  return json;
}

// The panel's rows as lists within lists: a group's controls are its member "controls".
OrderedJson JsonOfRows(const look::Settings& settings) {
  const look::Panel& panel = settings.GetPanel();
  OrderedJson rows = OrderedJson::array();
  std::vector<OrderedJson*> lists = {&rows};  // The list of each depth that is still open.
  for (const look::PanelRow& row : panel.rows) {
    lists.resize(static_cast<std::size_t>(row.depth) + 1);
    OrderedJson& list = *lists.back();
    if (row.isGroup) {
      list.push_back({{"group", row.title}, {"startsCollapsed", row.collapsed}});
      OrderedJson& controls = list.back()["controls"] = OrderedJson::array();
      lists.push_back(&controls);
    } else {
      const look::Control& control = panel.controls[row.control];
      list.push_back(JsonOfControl(control, settings.ValueOf(control)));
    }
  }
  return rows;
}

// A bar would end the table's cell.
std::string MarkdownCell(const std::string& text) {
  std::string cell;
  for (const char c : text) {
    if (c == '|') cell += '\\';
    cell += c;
  }
  return cell;
}

std::string MarkdownRow(const look::Settings& settings, const look::Control& control) {
  const look::Value& value = settings.ValueOf(control);
  std::string row = "| " + MarkdownCell(control.label) + " | `" + control.name + "` | ";
  row += MarkdownCell(ValueWithUnit(control, control.defaultValue)) + " | ";
  row += MarkdownCell(RangeWithSlider(control)) + " | ";
  if (!IsDefault(control, value)) row += MarkdownCell(ValueWithUnit(control, value));
  return row + (control.disabled ? " | greyed out |\n" : " | |\n");
}

struct Widths {
  std::size_t name = 0;
  std::size_t value = 0;
};

Widths ColumnWidths(const look::Settings& settings) {
  constexpr std::size_t kMaxValueWidth = 24;
  Widths widths;
  for (const look::PanelRow& row : settings.GetPanel().rows) {
    if (row.isGroup) continue;
    const look::Control& control = settings.GetPanel().controls[row.control];
    const std::size_t indent = 2 * static_cast<std::size_t>(row.depth);
    widths.name = std::max(widths.name, indent + control.name.size());
    const std::size_t value = ValueWithUnit(control, settings.ValueOf(control)).size();
    widths.value = std::max(widths.value, std::min(value, kMaxValueWidth));
  }
  return widths;
}

std::string TextOfControl(const look::Settings& settings, const look::PanelRow& row,
                          const Widths& widths) {
  const look::Control& control = settings.GetPanel().controls[row.control];
  const look::Value& value = settings.ValueOf(control);
  const std::string indent(2 * static_cast<std::size_t>(row.depth), ' ');
  std::string line = control.disabled ? "- " : "  ";
  line += Padded(indent + control.name, widths.name) + "  ";
  line += Padded(ValueWithUnit(control, value), widths.value) + "  ";
  line += RangeWithSlider(control);
  if (!IsDefault(control, value)) {
    line += "; default " + ValueWithUnit(control, control.defaultValue);
  }
  return line + (control.disabled ? "; greyed out\n" : "\n");
}

}  // namespace

std::string ListAsText(const look::Settings& settings) {
  const Widths widths = ColumnWidths(settings);
  std::string text = "  " + Padded("NAME", widths.name) + "  " + Padded("VALUE", widths.value) +
                     "  WHAT IT TAKES\n";
  for (const look::PanelRow& row : settings.GetPanel().rows) {
    if (row.isGroup) {
      text += "  " + std::string(2 * static_cast<std::size_t>(row.depth), ' ') + row.title + "\n";
    } else {
      text += TextOfControl(settings, row, widths);
    }
  }
  return text;
}

std::string ListAsJson(const look::Settings& settings) {
  const OrderedJson json = {{"controls", JsonOfRows(settings)}};
  return json.dump(2, ' ', false, OrderedJson::error_handler_t::replace) + "\n";
}

std::string ListAsMarkdown(const look::Settings& settings) {
  std::string text;
  std::string title = "Top level";
  int level = 0;
  bool inTable = false;
  for (const look::PanelRow& row : settings.GetPanel().rows) {
    if (row.isGroup || row.depth < level) {
      title = row.isGroup ? row.title : "Top level";
      level = row.depth + (row.isGroup ? 1 : 0);
      text += (text.empty() ? "" : "\n") + std::string(row.depth == 0 ? "## " : "### ") + title;
      text += "\n";
      inTable = false;
    }
    if (row.isGroup) continue;
    if (!inTable) {
      text += "\n| Control | Name | Default | Takes | Set to | |\n|---|---|---|---|---|---|\n";
    }
    inTable = true;
    text += MarkdownRow(settings, settings.GetPanel().controls[row.control]);
  }
  return text;
}

}  // namespace vitrell::cli
