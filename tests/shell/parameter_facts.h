// What must be registered for each parameter, written down by hand.
#ifndef VITRELL_TESTS_SHELL_PARAMETER_FACTS_H_
#define VITRELL_TESTS_SHELL_PARAMETER_FACTS_H_

#include "host/host_api.h"

namespace vitrell {

struct ParameterFact {
  int id;
  PF_ParamType type;
  const char* name;
  const char* text;  // A checkbox's label, a popup's choices.
  double validMin, validMax, sliderMin, sliderMax;
  double value;  // Default.
  int precision;
  bool percent;
  int choices;
};

constexpr PF_ParamType kLayer = PF_Param_LAYER;
constexpr PF_ParamType kGroup = PF_Param_GROUP_START;
constexpr PF_ParamType kEnd = PF_Param_GROUP_END;
constexpr PF_ParamType kPopup = PF_Param_POPUP;
constexpr PF_ParamType kCheck = PF_Param_CHECKBOX;
constexpr PF_ParamType kSlider = PF_Param_FLOAT_SLIDER;
constexpr PF_ParamType kPoint = PF_Param_POINT;
constexpr PF_ParamType kAngle = PF_Param_ANGLE;
constexpr PF_ParamType kColor = PF_Param_COLOR;

// Index 0 is the input layer, which the host adds itself.
inline constexpr ParameterFact kParameterFacts[65] = {
    {0, kLayer, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {1, kGroup, "I. LENS", "", 0, 0, 0, 0, 0, 0, false, 0},
    {2, kPopup, "Type", "None|Circle|Rectangle  --|Rectangle  l|Triangle|Custom", 0, 0, 0, 0, 2, 0,
     false, 6},
    {3, kLayer, "Custom Layer", "", 0, 0, 0, 0, 0, 0, false, 0},
    {4, kPopup, "Placement", "Center Map|Stretch Map to Fit", 0, 0, 0, 0, 1, 0, false, 2},
    {5, kCheck, "", "invert Alpha", 0, 0, 0, 0, 0, 0, false, 0},
    {6, kSlider, "Feather", "", 0, 1000, 0, 500, 0, 1, true, 0},
    {7, kPoint, "Position", "", 0, 0, 0, 0, 0, 0, false, 0},
    {8, kSlider, "Scale", "", 0, 400, 0, 400, 100, 1, true, 0},
    {9, kSlider, "Scale Width", "", 0, 400, 0, 400, 100, 1, true, 0},
    {10, kSlider, "Scale Height", "", 0, 400, 0, 400, 100, 1, true, 0},
    {11, kAngle, "Rotation", "", 0, 0, 0, 0, 0, 0, false, 0},
    {12, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {13, kGroup, "II. BLUR", "", 0, 0, 0, 0, 0, 0, false, 0},
    {14, kGroup, "Fast Blur", "", 0, 0, 0, 0, 0, 0, false, 0},
    {15, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {16, kSlider, "Amount", "", 0, 32768, 0, 127, 20, 1, false, 0},
    {17, kCheck, "", "Use Lens as Blur Map", 0, 0, 0, 0, 0, 0, false, 0},
    {18, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {19, kGroup, "Realistic Blur  [very slow]", "", 0, 0, 0, 0, 0, 0, false, 0},
    {20, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {21, kSlider, "Amount", "", 0, 500, 0, 100, 0, 1, false, 0},
    {22, kPopup, "Iris Sides", "Triangle|Square|Pentagon|Hexagon|Heptagon|Octagon|Nonagon|Decagon",
     0, 0, 0, 0, 3, 0, false, 8},
    {23, kSlider, "Iris Roundness", "", 0, 100, 0, 100, 0, 1, true, 0},
    {24, kSlider, "Iris Aspect Ratio", "", 0, 4, 0, 4, 1, 2, false, 0},
    {23, kAngle, "Iris Rotation", "", 0, 0, 0, 0, 0, 0, false, 0},
    {26, kCheck, "", "Use Lens as Blur Map", 0, 0, 0, 0, 0, 0, false, 0},
    {27, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {28, kGroup, "Optical Distortion", "", 0, 0, 0, 0, 0, 0, false, 0},
    {29, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {30, kSlider, "Amount", "", 0, 180, 0, 180, 0, 1, false, 0},
    {31, kCheck, "", "Center of the Lens", 0, 0, 0, 0, 1, 0, false, 0},
    {32, kPoint, "Center", "", 0, 0, 0, 0, 0, 0, false, 0},
    {33, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {34, kGroup, "Trail", "", 0, 0, 0, 0, 0, 0, false, 0},
    {35, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {36, kSlider, "Amount", "", 0, 100, 0, 100, 0, 1, true, 0},
    {37, kCheck, "", "Center of the Lens", 0, 0, 0, 0, 1, 0, false, 0},
    {38, kPoint, "Center", "", 0, 0, 0, 0, 0, 0, false, 0},
    {39, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {40, kGroup, "Directional Blur", "", 0, 0, 0, 0, 0, 0, false, 0},
    {41, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {42, kSlider, "Amount", "", 0, 65536, 0, 20, 0, 1, false, 0},
    {43, kAngle, "Direction", "", 0, 0, 0, 0, 0, 0, false, 0},
    {44, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {45, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {46, kGroup, "III. OTHER", "", 0, 0, 0, 0, 0, 0, false, 0},
    {47, kGroup, "Lightness", "", 0, 0, 0, 0, 0, 0, false, 0},
    {48, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {49, kSlider, "Amount", "", -100, 100, -100, 100, 0, 1, true, 0},
    {50, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {51, kGroup, "Color", "", 0, 0, 0, 0, 0, 0, false, 0},
    {52, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {53, kColor, "Color", "", 0, 0, 0, 0, 0, 0, false, 0},
    {54, kSlider, "Opacity", "", 0, 100, 0, 100, 0, 1, true, 0},
    {55, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {56, kGroup, "Chromatic Aberration", "", 0, 0, 0, 0, 0, 0, false, 0},
    {57, kCheck, "", "Visible", 0, 0, 0, 0, 1, 0, false, 0},
    {58, kSlider, "Red/Cyan", "", 0, 100, 0, 100, 0, 1, true, 0},
    {59, kSlider, "Green/Magenta", "", 0, 100, 0, 100, 0, 1, true, 0},
    {60, kSlider, "Blue/Yellow", "", 0, 100, 0, 100, 0, 1, true, 0},
    {61, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {62, kEnd, "", "", 0, 0, 0, 0, 0, 0, false, 0},
    {63, kSlider, "INTENSITY", "", 0, 100, 0, 100, 100, 1, true, 0},
    {64, kPopup, "MODE", "Normal|Add|Screen|Multiply", 0, 0, 0, 0, 1, 0, false, 4},
};

}  // namespace vitrell

#endif  // VITRELL_TESTS_SHELL_PARAMETER_FACTS_H_
