// The gestures of a number field.
#include "panel/widgets/scrub_field.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "panel/effect_panel.h"
#include "panel/hand.h"

namespace vitrell::panel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr EditPhase kDragging = EditPhase::kDragging;
constexpr EditPhase kDone = EditPhase::kDone;

// The lens's scale: 0 to 400 %, in steps of 1.
class ScrubFieldTest : public testing::Test {
 protected:
  ScrubFieldTest() {
    layout_.addWidget(&other_);
    layout_.addWidget(&field_);
    field_.ShowValue(100);
    QObject::connect(&field_, &ScrubField::Edited,
                     [this](double value, EditPhase phase) { edits_.emplace_back(value, phase); });
    QObject::connect(&field_, &ScrubField::Refused,
                     [this](const QString& message) { refused_.push_back(message); });
    ShowActive(window_);
    other_.setFocus();
  }

  QLineEdit* Text() { return field_.findChild<QLineEdit*>(); }
  void Scrub(const std::vector<double>& way, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    std::vector<QPointF> points = {{50, 8}};
    for (const double x : way) points.emplace_back(50 + x, 8);
    Drag(Text(), points, Qt::LeftButton, modifiers);
  }
  // Selects the text by a click and types over it.
  void Type(const char* text) {
    Drag(Text(), {{50, 8}});
    QTest::keyClicks(&field_, text);
  }

  QWidget window_;
  QVBoxLayout layout_{&window_};
  QLineEdit other_;
  ScrubField field_{StyleOf(*EffectPanel().Find("lens.scale"))};
  std::vector<std::pair<double, EditPhase>> edits_;
  std::vector<QString> refused_;
};

TEST_F(ScrubFieldTest, APixelIsAStep) {
  Scrub({4, 10});
  EXPECT_THAT(edits_, ElementsAre(Pair(104, kDragging), Pair(110, kDragging), Pair(110, kDone)));
  EXPECT_EQ(Text()->text(), "110 %");
}

TEST_F(ScrubFieldTest, ShiftIsCoarseAndCtrlIsFine) {
  Scrub({5}, Qt::ShiftModifier);
  EXPECT_EQ(field_.Value(), 150);
  Scrub({-7}, Qt::ControlModifier);
  EXPECT_EQ(field_.Value(), 149.3);
}

TEST_F(ScrubFieldTest, TheModifierMayChangeDuringADrag) {
  PressMouse(Text(), {50, 8});
  MoveMouse(Text(), {54, 8});
  MoveMouse(Text(), {56, 8}, Qt::LeftButton, Qt::ShiftModifier);
  MoveMouse(Text(), {59, 8}, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_EQ(field_.Value(), 124.3);
}

TEST_F(ScrubFieldTest, ADragStopsAtTheRangeAndTurnsRoundAtOnce) {
  Scrub({1000, 995});
  EXPECT_THAT(edits_, ElementsAre(Pair(400, kDragging), Pair(395, kDragging), Pair(395, kDone)));
}

TEST_F(ScrubFieldTest, EscapeEndsADragWithTheNumberBefore) {
  PressMouse(Text(), {50, 8});
  MoveMouse(Text(), {60, 8});
  QTest::keyClick(&field_, Qt::Key_Escape);
  MoveMouse(Text(), {70, 8});
  ReleaseMouse(Text(), {70, 8});
  EXPECT_THAT(edits_, ElementsAre(Pair(110, kDragging), Pair(100, kDone)));
}

TEST_F(ScrubFieldTest, AClickSelectsTheTextForTyping) {
  Type("12.5%");
  EXPECT_THAT(edits_, IsEmpty());
  QTest::keyClick(&field_, Qt::Key_Return);
  EXPECT_THAT(edits_, ElementsAre(Pair(12.5, kDone)));
  EXPECT_EQ(Text()->text(), "12.5 %");
}

TEST_F(ScrubFieldTest, LeavingTheFieldFinishesTyping) {
  Type("30");
  other_.setFocus();
  EXPECT_THAT(edits_, ElementsAre(Pair(30, kDone)));
}

TEST_F(ScrubFieldTest, AWrongTextIsToldAndStaysUntilTheFieldIsLeft) {
  Type("500");
  QTest::keyClick(&field_, Qt::Key_Return);
  ASSERT_EQ(refused_.size(), 1U);
  EXPECT_THAT(refused_[0].toStdString(), testing::HasSubstr("0 to 400 %"));
  EXPECT_EQ(Text()->text(), "500");
  other_.setFocus();
  EXPECT_EQ(Text()->text(), "100 %");
  EXPECT_THAT(edits_, IsEmpty());
}

TEST_F(ScrubFieldTest, EscapeEndsTyping) {
  Type("7");
  QTest::keyClick(&field_, Qt::Key_Escape);
  other_.setFocus();
  EXPECT_THAT(edits_, IsEmpty());
  EXPECT_EQ(Text()->text(), "100 %");
}

TEST_F(ScrubFieldTest, ATextThatIsTypedStaysWhenAValueIsShown) {
  Type("7");
  field_.ShowValue(60);
  EXPECT_EQ(Text()->text(), "7");
  QTest::keyClick(&field_, Qt::Key_Escape);
  EXPECT_EQ(Text()->text(), "60 %");
}

TEST_F(ScrubFieldTest, MoreDigitsThanShownSurviveAFocus) {
  field_.ShowValue(100.0 / 3);
  field_.setFocus();
  QTest::keyClick(&field_, Qt::Key_Return);
  other_.setFocus();
  EXPECT_THAT(edits_, IsEmpty());
  EXPECT_EQ(field_.Value(), 100.0 / 3);
}

TEST_F(ScrubFieldTest, KeysStep) {
  field_.setFocus();
  QTest::keyClick(&field_, Qt::Key_Up);
  QTest::keyClick(&field_, Qt::Key_PageUp);
  QTest::keyClick(&field_, Qt::Key_Up, Qt::ShiftModifier);
  QTest::keyClick(&field_, Qt::Key_Down, Qt::ControlModifier);
  QTest::keyClick(&field_, Qt::Key_PageDown);
  EXPECT_THAT(edits_, ElementsAre(Pair(101, kDone), Pair(111, kDone), Pair(121, kDone),
                                  Pair(120.9, kDone), Pair(110.9, kDone)));
}

TEST_F(ScrubFieldTest, TheWheelStepsOnlyWithTheKeyboardsFocus) {
  TurnWheel(&field_, {50, 8}, 2);
  EXPECT_THAT(edits_, IsEmpty());
  field_.setFocus();
  TurnWheel(&field_, {50, 8}, 2);
  TurnWheel(&field_, {50, 8}, -1, Qt::ShiftModifier);
  EXPECT_THAT(edits_, ElementsAre(Pair(102, kDone), Pair(92, kDone)));
}

TEST_F(ScrubFieldTest, AGreyedFieldIsNotScrubbed) {
  field_.setEnabled(false);
  Scrub({4, 10});
  EXPECT_THAT(edits_, IsEmpty());
}

}  // namespace
}  // namespace vitrell::panel
