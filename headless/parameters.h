// The parameters as an effect registered them: their properties, tree and names.
#ifndef VITRELL_HEADLESS_PARAMETERS_H_
#define VITRELL_HEADLESS_PARAMETERS_H_

#include <string>
#include <string_view>
#include <vector>

#include "host/host_api.h"

namespace vitrell::headless {

// One entry of the host's parameter array. Index 0 is the input layer, which the host adds itself.
struct Parameter {
  int index = 0;
  A_long diskId = 0;
  PF_ParamType type = PF_Param_LAYER;
  std::string name;                  // As registered: empty for checkboxes and group ends.
  std::string label;                 // The text beside a checkbox.
  std::vector<std::string> choices;  // Of a popup; its value is a 1-based position.
  std::vector<int> groups;           // Indices of the enclosing group starts, outermost first.

  // The lower-case, hyphenated name, prefixed by that of the innermost group: "fast-blur.amount",
  // "intensity". Roman numerals and bracketed remarks are dropped. Empty for the input layer and
  // for group starts and ends. Unique: a second control of the same name gets the suffix "-2".
  std::string path;

  // Sliders only.
  double validMin = 0, validMax = 0;
  double sliderMin = 0, sliderMax = 0;
  int precision = 0;     // Decimals shown.
  bool percent = false;  // Shown with a percent sign.

  // The registered default in the control's own unit: the number of a slider, the 1-based choice of
  // a popup, 0 or 1 of a checkbox, degrees of an angle.
  double defaultNumber = 0;
  double defaultXPercent = 0, defaultYPercent = 0;  // Points: percent of the layer.
  PF_Pixel defaultColor{};

  PF_ParamFlags flags = 0;  // Current; the panel procedure may add the collapse bit.
  PF_ParamUIFlags uiFlagsAtSetup = 0;
  PF_ParamUIFlags uiFlags = 0;  // Current.

  bool IsControl() const { return !path.empty(); }
  bool Greyed() const { return (uiFlags & PF_PUI_DISABLED) != 0; }
  bool StartsCollapsed() const { return (flags & PF_ParamFlag_START_COLLAPSED) != 0; }
  // The text that a user sees: the name, or a checkbox's label.
  const std::string& Title() const { return name.empty() ? label : name; }
};

// A point given in percent of the layer's width and height.
struct PointPercent {
  double x = 0, y = 0;
};

// Converts to 16.16 fixed point as the host does: times 65536, rounded half away from zero. Values
// out of range become the nearest end of the range, NaN becomes 0.
PF_Fixed ToFixed(double value);

// "Realistic Blur  [very slow]" -> "realistic-blur", "II. BLUR" -> "blur", "Red/Cyan" ->
// "red-cyan".
std::string PathWord(std::string_view title);

// Describes one registered record.
Parameter DescribeRecord(int index, const PF_ParamDef& record);

// Sets `groups` and `path` of a whole list in panel order.
void ArrangeTree(std::vector<Parameter>& parameters);

// The paths most similar to `path`, best first, at most `count`.
std::vector<std::string> NearestPaths(const std::vector<Parameter>& parameters,
                                      std::string_view path, std::size_t count);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_PARAMETERS_H_
