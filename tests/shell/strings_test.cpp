// The string table, text by text.
#include "shell/strings.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace vitrell {
namespace {

// Record 2 has its own test: only its first line is fixed.
constexpr const char* kTexts[] = {
    "",
    "Vitrell",
    nullptr,
    "I. LENS",
    "II. BLUR",
    "Fast Blur",
    "Realistic Blur  [very slow]",
    "Optical Distortion",
    "Trail",
    "Directional Blur",
    "III. OTHER",
    "Lightness",
    "Color",
    "Chromatic Aberration",
    "PRESET",
    "Amount",
    "Type",
    "Feather",
    "Position",
    "Center",
    "Rotation",
    "Iris Sides",
    "Iris Roundness",
    "Iris Aspect Ratio",
    "Iris Rotation",
    "Direction",
    "Color",
    "Opacity",
    "Red/Cyan",
    "Green/Magenta",
    "Blue/Yellow",
    "INTENSITY",
    "MODE",
    "Visible",
    "Scale",
    "Scale Width",
    "Scale Height",
    "Custom Layer",
    "Placement",
    "invert Alpha",
    "Uniform Scale",
    "Center of the Lens",
    "Use Lens as Blur Map",
    "Use Lens as Blur Map",
    "None|Test",
    "None|Circle|Rectangle  --|Rectangle  l|Triangle|Custom",
    "Center Map|Stretch Map to Fit",
    "Normal|Add|Screen|Multiply",
    "Triangle|Square|Pentagon|Hexagon|Heptagon|Octagon|Nonagon|Decagon",
};

TEST(StringsTest, EveryRecordHoldsItsText) {
  ASSERT_EQ(std::size(kTexts), 49U);
  ASSERT_EQ(std::size(g_strs), 49U);
  for (int id = 0; id < 49; ++id) {
    EXPECT_EQ(g_strs[id].id, id);
    if (kTexts[id] != nullptr) {
      EXPECT_EQ(std::string(GetStringPtr(id)), kTexts[id]) << "record " << id;
    }
  }
}

TEST(StringsTest, TextsAre256CharactersOfTheTable) {
  EXPECT_EQ(sizeof(g_strs[0].text), 256U);
  EXPECT_EQ(GetStringPtr(17), g_strs[17].text);
}

TEST(StringsTest, FirstIsEmpty) { EXPECT_STREQ(GetStringPtr(0), ""); }

TEST(StringsTest, KeepsTheTwoSpacesOfTheRealisticBlur) {
  EXPECT_STREQ(GetStringPtr(6), "Realistic Blur  [very slow]");
}

TEST(StringsTest, KeepsTheSmallLetterOfInvertAlpha) {
  EXPECT_STREQ(GetStringPtr(39), "invert Alpha");
}

// Version, maker, an empty line, two contact lines.
TEST(StringsTest, AboutTextHasFiveLines) {
  const std::string about = GetStringPtr(2);
  std::vector<std::string> lines(1);
  for (const char letter : about) {
    if (letter == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += letter;
    }
  }
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0], "Version 1.0.5");
  EXPECT_FALSE(lines[1].empty());
  EXPECT_EQ(lines[2], "");
  EXPECT_NE(lines[3].find('@'), std::string::npos);
  EXPECT_NE(lines[4].find("http"), std::string::npos);
  EXPECT_EQ(about.find('\r'), std::string::npos);
}

}  // namespace
}  // namespace vitrell
