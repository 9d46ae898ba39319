// Moving, copying, deleting and stretching keys.
#include "panel/time/key_edits.h"

#include <gtest/gtest.h>

#include <string_view>

#include "look/animation_text.h"
#include "panel/effect_panel.h"

namespace vitrell::panel {
namespace {

const look::TimeBase kBase = {.framesPerSecond = 25, .length = 101};

const look::Control& Scale() { return *EffectPanel().Find("lens.scale"); }
look::Keys Keys(std::string_view text) { return look::ParseKeys(Scale(), text); }
std::string Text(const look::Keys& keys) { return look::FormatKeys(Scale(), keys); }

TEST(KeyEditsTest, MovedKeysKeepTheFormOfTheirTimes) {
  const look::Keys keys = Keys("0=1; 1s=2; -1=3");
  EXPECT_EQ(FramesOf(keys, kBase), (KeyFrames{0, 25, 100}));
  EXPECT_EQ(Text(MovedKeys(keys, {0}, 5, kBase)), "5=1; 1s=2; -1=3");
  EXPECT_EQ(Text(MovedKeys(keys, {25}, 25, kBase)), "0=1; 2s=2; -1=3");
  EXPECT_EQ(Text(MovedKeys(keys, {100}, -10, kBase)), "0=1; 1s=2; -11=3");
}

TEST(KeyEditsTest, KeysStayInTheClip) {
  const look::Keys keys = Keys("10=1; 20=2");
  EXPECT_EQ(Text(MovedKeys(keys, {10, 20}, -50, kBase)), "0=1; 10=2");
  EXPECT_EQ(Text(MovedKeys(keys, {10, 20}, 500, kBase)), "90=1; 100=2");
  EXPECT_EQ(ReachOf({10, 20}, 500, kBase), 80);
  EXPECT_EQ(ReachOf({10, 20}, -3, kBase), -3);
}

TEST(KeyEditsTest, AMovedKeyReplacesTheOneWhereItArrives) {
  EXPECT_EQ(Text(MovedKeys(Keys("10=1; 20=2; 30=3"), {10}, 10, kBase)), "20=1; 30=3");
  EXPECT_EQ(Text(MovedKeys(Keys("10=1; 20=2; 30=3"), {30}, -10, kBase)), "10=1; 20=3");
  EXPECT_EQ(Text(MovedKeys(Keys("10=1; 20=2"), {20}, -15, kBase)), "5=2; 10=1");
}

TEST(KeyEditsTest, CopiesLeaveTheirOriginals) {
  EXPECT_EQ(Text(CopiedKeys(Keys("10=1; 20~=2"), {20}, 30, kBase)), "10=1; 20~=2; 50~=2");
  EXPECT_EQ(Text(CopiedKeys(Keys("10=1; 20=2"), {10}, 10, kBase)), "10=1; 20=1");
}

TEST(KeyEditsTest, DeletedKeysAreGone) {
  EXPECT_EQ(Text(RemainingKeys(Keys("10=1; 20=2; 30=3"), {10, 30}, kBase)), "20=2");
  EXPECT_TRUE(RemainingKeys(Keys("10=1"), {10}, kBase).empty());
}

TEST(KeyEditsTest, StretchesOfTheNamedKeysChange) {
  const look::Keys keys = Keys("10=1; 20=2; 30=3");
  EXPECT_EQ(Text(StretchedKeys(Scale(), keys, {10, 20}, look::Stretch::kSmooth, kBase)),
            "10~=1; 20~=2; 30=3");
  EXPECT_EQ(Text(StretchedKeys(Scale(), keys, {30}, look::Stretch::kHold, kBase)),
            "10=1; 20=2; 30|=3");
  const look::Keys eased = StretchedKeys(Scale(), keys, {10}, look::Stretch::kEased, kBase);
  const look::Curve curve(Scale(), eased, kBase);
  // Slower than straight at first, half way in the middle.
  EXPECT_LT(std::get<double>(curve.At(12)), 1.15);
  EXPECT_NEAR(std::get<double>(curve.At(15)), 1.5, 1e-9);
  EXPECT_EQ(Text(StretchedKeys(Scale(), eased, {10}, look::Stretch::kLinear, kBase)), Text(keys));
}

TEST(KeyEditsTest, ChoicesOnlyHold) {
  const look::Control& type = *EffectPanel().Find("lens.type");
  const look::Keys keys = look::ParseKeys(type, "0|=Circle; 10|=Triangle");
  EXPECT_EQ(StretchedKeys(type, keys, {0}, look::Stretch::kLinear, kBase), keys);
  const look::Keys more = KeysWithValue(type, {}, 5, look::ChoiceValue{3}, kBase);
  EXPECT_EQ(more.at(0).stretch, look::Stretch::kHold);
}

TEST(KeyEditsTest, AValueGoesIntoTheKeyAtItsFrameOrIntoANewOne) {
  const look::Keys keys = Keys("10~=1; 1s=2");
  EXPECT_EQ(Text(KeysWithValue(Scale(), keys, 25, 7.0, kBase)), "10~=1; 1s=7");
  EXPECT_EQ(Text(KeysWithValue(Scale(), keys, 15, 7.0, kBase)), "10~=1; 15~=7; 1s=2");
  EXPECT_EQ(Text(KeysWithValue(Scale(), keys, 5, 7.0, kBase)), "5=7; 10~=1; 1s=2");
}

}  // namespace
}  // namespace vitrell::panel
