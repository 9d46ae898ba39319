// The effect's constant string table.
#ifndef VITRELL_SHELL_STRINGS_H_
#define VITRELL_SHELL_STRINGS_H_

#include <cstdint>

namespace vitrell {

// Positions in the string table.
enum StringId : std::int32_t {
  STR_EMPTY = 0,
  STR_PRODUCT_NAME,
  STR_ABOUT,
  STR_LENS_GROUP,
  STR_BLUR_GROUP,
  STR_FAST_GROUP,
  STR_REALISTIC_GROUP,
  STR_OPTICAL_GROUP,
  STR_TRAIL_GROUP,
  STR_DIRECTIONAL_GROUP,
  STR_OTHER_GROUP,
  STR_LIGHTNESS_GROUP,
  STR_COLOR_GROUP,
  STR_CHROMATIC_GROUP,
  STR_PRESET,
  STR_AMOUNT,
  STR_TYPE,
  STR_FEATHER,
  STR_POSITION,
  STR_CENTER,
  STR_ROTATION,
  STR_IRIS_SIDES,
  STR_IRIS_ROUNDNESS,
  STR_IRIS_ASPECT_RATIO,
  STR_IRIS_ROTATION,
  STR_DIRECTION,
  STR_COLOR,
  STR_OPACITY,
  STR_RED_CYAN,
  STR_GREEN_MAGENTA,
  STR_BLUE_YELLOW,
  STR_INTENSITY,
  STR_MODE,
  STR_VISIBLE,
  STR_SCALE,
  STR_SCALE_WIDTH,
  STR_SCALE_HEIGHT,
  STR_CUSTOM_LAYER,
  STR_PLACEMENT,
  STR_INVERT_ALPHA,
  STR_UNIFORM_SCALE,
  STR_CENTER_OF_THE_LENS,
  STR_FAST_BLUR_MAP,
  STR_REALISTIC_BLUR_MAP,
  STR_PRESET_CHOICES,
  STR_TYPE_CHOICES,
  STR_PLACEMENT_CHOICES,
  STR_MODE_CHOICES,
  STR_IRIS_SIDES_CHOICES,
  STR_COUNT,
};

struct StringRecord {
  std::int32_t id;  // The record's own position in the table.
  char text[256];
};

// The double spaces and the lower-case "invert" are intended: users know these texts.
inline constexpr StringRecord g_strs[STR_COUNT] = {
    {STR_EMPTY, ""},
    {STR_PRODUCT_NAME, "Vitrell"},
    {STR_ABOUT,
     "Version 1.0.5\nVitrell project\n\nhello@vitrell.example.com\nhttps://vitrell.example.com"},
    {STR_LENS_GROUP, "I. LENS"},
    {STR_BLUR_GROUP, "II. BLUR"},
    {STR_FAST_GROUP, "Fast Blur"},
    {STR_REALISTIC_GROUP, "Realistic Blur  [very slow]"},
    {STR_OPTICAL_GROUP, "Optical Distortion"},
    {STR_TRAIL_GROUP, "Trail"},
    {STR_DIRECTIONAL_GROUP, "Directional Blur"},
    {STR_OTHER_GROUP, "III. OTHER"},
    {STR_LIGHTNESS_GROUP, "Lightness"},
    {STR_COLOR_GROUP, "Color"},
    {STR_CHROMATIC_GROUP, "Chromatic Aberration"},
    {STR_PRESET, "PRESET"},
    {STR_AMOUNT, "Amount"},
    {STR_TYPE, "Type"},
    {STR_FEATHER, "Feather"},
    {STR_POSITION, "Position"},
    {STR_CENTER, "Center"},
    {STR_ROTATION, "Rotation"},
    {STR_IRIS_SIDES, "Iris Sides"},
    {STR_IRIS_ROUNDNESS, "Iris Roundness"},
    {STR_IRIS_ASPECT_RATIO, "Iris Aspect Ratio"},
    {STR_IRIS_ROTATION, "Iris Rotation"},
    {STR_DIRECTION, "Direction"},
    {STR_COLOR, "Color"},
    {STR_OPACITY, "Opacity"},
    {STR_RED_CYAN, "Red/Cyan"},
    {STR_GREEN_MAGENTA, "Green/Magenta"},
    {STR_BLUE_YELLOW, "Blue/Yellow"},
    {STR_INTENSITY, "INTENSITY"},
    {STR_MODE, "MODE"},
    {STR_VISIBLE, "Visible"},
    {STR_SCALE, "Scale"},
    {STR_SCALE_WIDTH, "Scale Width"},
    {STR_SCALE_HEIGHT, "Scale Height"},
    {STR_CUSTOM_LAYER, "Custom Layer"},
    {STR_PLACEMENT, "Placement"},
    {STR_INVERT_ALPHA, "invert Alpha"},
    {STR_UNIFORM_SCALE, "Uniform Scale"},
    {STR_CENTER_OF_THE_LENS, "Center of the Lens"},
    {STR_FAST_BLUR_MAP, "Use Lens as Blur Map"},
    {STR_REALISTIC_BLUR_MAP, "Use Lens as Blur Map"},
    {STR_PRESET_CHOICES, "None|Test"},
    {STR_TYPE_CHOICES, "None|Circle|Rectangle  --|Rectangle  l|Triangle|Custom"},
    {STR_PLACEMENT_CHOICES, "Center Map|Stretch Map to Fit"},
    {STR_MODE_CHOICES, "Normal|Add|Screen|Multiply"},
    {STR_IRIS_SIDES_CHOICES, "Triangle|Square|Pentagon|Hexagon|Heptagon|Octagon|Nonagon|Decagon"},
};

// The text of a record. id is used as an index without a check.
const char* GetStringPtr(int id);

}  // namespace vitrell

#endif  // VITRELL_SHELL_STRINGS_H_
