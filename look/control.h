// The controls of the effect as its users name them, made from what the effect registered.
#ifndef VITRELL_LOOK_CONTROL_H_
#define VITRELL_LOOK_CONTROL_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "headless/parameters.h"

namespace vitrell::look {

// The host's angles and positions are signed 16.16 numbers.
constexpr double kFixedLimit = 32767.0;

// The control that chooses the lens, and its choice that shows a layer as the lens.
constexpr const char* kLensType = "lens.type";
constexpr const char* kCustomLens = "Custom";

enum class ControlKind { kNumber, kAngle, kSwitch, kChoice, kPoint, kColour, kLayer };

// One half of a position: pixels from the top left corner, or percent of the picture's size.
struct Coordinate {
  double value = 0;
  bool percent = false;
  bool operator==(const Coordinate&) const = default;
};

struct PointValue {
  Coordinate x;
  Coordinate y;
  bool operator==(const PointValue&) const = default;
};

struct ColourValue {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const ColourValue&) const = default;
};

// 1-based position in the control's choices.
struct ChoiceValue {
  int number = 1;
  bool operator==(const ChoiceValue&) const = default;
};

// The file of a layer's picture; empty for no layer.
struct LayerValue {
  std::string path;
  bool operator==(const LayerValue&) const = default;
};

// Number and angle (degrees) are doubles.
using Value = std::variant<double, bool, ChoiceValue, PointValue, ColourValue, LayerValue>;

struct Control {
  ControlKind kind = ControlKind::kNumber;
  int index = 0;       // in the effect's parameter list; the input layer is 0
  std::string name;    // "fast-blur.amount"
  std::string label;   // as the panel shows it: "Amount"
  long diskId = 0;     // under which projects store it
  Value defaultValue;  // its alternative follows from the kind
  std::vector<std::string> choices;
  double minimum = 0;  // valid range of numbers
  double maximum = 0;
  double sliderMinimum = 0;  // range of the panel's slider
  double sliderMaximum = 0;
  bool percent = false;   // the number's unit is percent
  bool pixels = false;    // the number is a length in pixels of the picture
  bool disabled = false;  // greyed out in the panel
};

// One line of the panel, from top to bottom: a group's title or a control, indented by depth.
struct PanelRow {
  int depth = 0;
  bool isGroup = false;
  std::string title;        // of a group
  bool collapsed = false;   // the group starts collapsed
  std::size_t control = 0;  // index in Panel::controls
};

struct Panel {
  std::vector<Control> controls;
  std::vector<PanelRow> rows;
  std::vector<headless::Parameter> parameters;  // what the panel was made of

  // Null for an unknown name.
  const Control* Find(std::string_view name) const;
};

// The panel of what the effect registered; `disabled` is as the parameters tell it now.
Panel MakePanel(const std::vector<headless::Parameter>& parameters);

// "Rectangle  --" -> "Rectangle --": runs of blanks become one, none at the ends.
std::string CollapseBlanks(std::string_view text);

// Tells that there is no such control, with the nearest names and the way to list all.
std::string UnknownNameMessage(const Panel& panel, std::string_view unknown);

}  // namespace vitrell::look

#endif  // VITRELL_LOOK_CONTROL_H_
