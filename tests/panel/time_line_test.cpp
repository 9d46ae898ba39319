// The time line: frames, range, keys as marks, and the curve.
#include "panel/time/time_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QImage>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "look/animation_text.h"
#include "panel/effect_panel.h"
#include "panel/hand.h"
#include "panel/time/curve_view.h"
#include "panel/time/key_tracks.h"
#include "panel/time/time_ruler.h"

namespace vitrell::panel {
namespace {

using testing::ElementsAre;
using testing::Pair;

// A clip of 101 frames, 5 pixels apart.
class TimeLineTest : public testing::Test {
 protected:
  TimeLineTest() {
    line_.setFixedSize(kTrackLabelWidth + 2 * kTrackMargin + 500, 400);
    QObject::connect(&line_, &TimeLine::FrameChosen,
                     [this](int frame, EditPhase phase) { frames_.emplace_back(frame, phase); });
    QObject::connect(&line_, &TimeLine::KeysEdited,
                     [this](int control, const look::Keys& keys, EditPhase phase) {
                       const look::Control& edited =
                           EffectPanel().controls[static_cast<std::size_t>(control)];
                       edits_.push_back(edited.name + ": " +
                                        (keys.empty() ? "none" : look::FormatKeys(edited, keys)) +
                                        (phase == EditPhase::kDragging ? "..." : ""));
                       shown_[control] = keys;
                       line_.ShowKeys(control, keys);
                     });
    line_.SetClip({.framesPerSecond = 25, .length = 101});
    Show("lens.scale", "10=100; 20=200");
    Show("intensity", "50=0; 60=100");
    ShowActive(line_);
  }

  void Show(const char* name, const char* keys) {
    line_.ShowKeys(ControlOf(name), look::ParseKeys(*EffectPanel().Find(name), keys));
  }
  TimeRuler* Ruler() { return line_.findChild<TimeRuler*>(); }
  KeyTracks* Tracks() { return line_.findChild<KeyTracks*>(); }
  CurveView* Curve() { return line_.findChild<CurveView*>(); }
  static double X(double frame) { return kTrackLabelWidth + kTrackMargin + 5 * frame; }
  QPointF Key(const char* name, double frame) { return Tracks()->PlaceOf(ControlOf(name), frame); }
  void Click(const QString& button) {
    for (auto* const found : line_.findChildren<QToolButton*>()) {
      if (found->text() == button || found->toolTip() == button) return found->click();
    }
    FAIL() << "no such button";
  }

  TimeLine line_{EffectPanel()};
  std::vector<std::pair<int, EditPhase>> frames_;
  std::vector<std::string> edits_;
  std::map<int, look::Keys> shown_;  // after an edit
};

TEST_F(TimeLineTest, TheRulerIsScrubbed) {
  Drag(Ruler(), {{X(30), 25}, {X(31.4), 25}, {X(200), 25}});
  EXPECT_THAT(frames_, ElementsAre(Pair(30, EditPhase::kDragging), Pair(31, EditPhase::kDragging),
                                   Pair(100, EditPhase::kDragging), Pair(100, EditPhase::kDone)));
}

TEST_F(TimeLineTest, KeysAndButtonsStep) {
  Ruler()->setFocus();
  QTest::keyClick(Ruler(), Qt::Key_Right);
  QTest::keyClick(Ruler(), Qt::Key_Right, Qt::ShiftModifier);
  QTest::keyClick(Ruler(), Qt::Key_Left);
  Click("One frame on");
  Click("To the out point");
  line_.findChild<QSpinBox*>()->setValue(7);
  std::vector<int> frames;
  for (const auto& [frame, phase] : frames_) frames.push_back(frame);
  EXPECT_THAT(frames, ElementsAre(1, 11, 10, 11, 100, 7));
}

TEST_F(TimeLineTest, InAndOutAreSetByBracketsKeysAndButtons) {
  std::vector<std::pair<int, int>> ranges;
  QObject::connect(&line_, &TimeLine::RangeChanged,
                   [&](int first, int last) { ranges.emplace_back(first, last); });
  Drag(Ruler(), {{X(0), 4}, {X(10), 4}});
  EXPECT_THAT(ranges.back(), Pair(10, 100));
  line_.ShowFrame(80);
  QTest::keyClick(Ruler(), Qt::Key_O);
  EXPECT_THAT(ranges.back(), Pair(10, 80));
  line_.ShowFrame(90);
  Click("In");
  EXPECT_THAT(ranges.back(), Pair(90, 90));
}

TEST_F(TimeLineTest, PlayingStaysInTheRangeAndEndsWithAFrame) {
  line_.SetRange(40, 42);
  line_.Play(true);
  EXPECT_TRUE(QTest::qWaitFor([&] { return frames_.size() >= 4; }, 30000));
  line_.Play(false);
  for (const auto& [frame, phase] : frames_) {
    EXPECT_GE(frame, 40);
    EXPECT_LE(frame, 42);
  }
  EXPECT_EQ(frames_.back().second, EditPhase::kDone);
  EXPECT_FALSE(line_.IsPlaying());
}

TEST_F(TimeLineTest, AKeyIsDragged) {
  const QPointF key = Key("lens.scale", 10);
  Drag(Tracks(), {key, key + QPointF(15, 0)});
  EXPECT_THAT(edits_, ElementsAre("lens.scale: 13=100; 20=200...", "lens.scale: 13=100; 20=200"));
}

// As one step: all but the last row say that more follows.
TEST_F(TimeLineTest, SelectedKeysOfAllRowsMoveTogether) {
  PressMouse(Tracks(), Key("lens.scale", 20));
  ReleaseMouse(Tracks(), Key("lens.scale", 20));
  PressMouse(Tracks(), Key("intensity", 50), Qt::LeftButton, Qt::ShiftModifier);
  ReleaseMouse(Tracks(), Key("intensity", 50));
  QTest::keyClick(Tracks(), Qt::Key_Right);
  QTest::keyClick(Tracks(), Qt::Key_Right);
  EXPECT_THAT(edits_, ElementsAre("lens.scale: 10=100; 21=200...", "intensity: 51=0; 60=100",
                                  "lens.scale: 10=100; 22=200...", "intensity: 52=0; 60=100"));
}

TEST_F(TimeLineTest, AltCopies) {
  const QPointF key = Key("intensity", 60);
  Drag(Tracks(), {key, key + QPointF(100, 0)}, Qt::LeftButton, Qt::AltModifier);
  EXPECT_EQ(edits_.back(), "intensity: 50=0; 60=100; 80=100");
}

TEST_F(TimeLineTest, KeysAreStretchedAndDeletedByKeyboardAndButtons) {
  Tracks()->setFocus();
  QTest::keyClick(Tracks(), Qt::Key_Down);
  QTest::keyClick(Tracks(), Qt::Key_Right, Qt::ControlModifier);
  Click("Smooth");
  EXPECT_EQ(edits_.back(), "lens.scale: 10~=100; 20=200");
  Click("Hold");
  EXPECT_EQ(edits_.back(), "lens.scale: 10|=100; 20=200");
  QTest::keyClick(Tracks(), Qt::Key_Delete);
  EXPECT_EQ(edits_.back(), "lens.scale: 20=200");
  QTest::keyClick(Tracks(), Qt::Key_Right, Qt::ControlModifier);
  Click("Delete");
  EXPECT_EQ(edits_.back(), "lens.scale: none");
}

TEST_F(TimeLineTest, KeysAreStretchedByEveryButton) {
  line_.Choose(ControlOf("lens.scale"));
  Tracks()->setFocus();
  QTest::keyClick(Tracks(), Qt::Key_Right, Qt::ControlModifier);
  const auto stretchAfter = [this](const char* button) {
    Click(button);
    return shown_.at(ControlOf("lens.scale")).front().stretch;
  };
  EXPECT_EQ(stretchAfter("Smooth"), look::Stretch::kSmooth);
  EXPECT_EQ(stretchAfter("Hold"), look::Stretch::kHold);
  EXPECT_EQ(stretchAfter("Eased"), look::Stretch::kEased);
  EXPECT_EQ(stretchAfter("Linear"), look::Stretch::kLinear);
}

TEST_F(TimeLineTest, ARowThatIsChosenIsScrolledTo) {
  for (const look::Control& control : EffectPanel().controls) {
    if (control.kind == look::ControlKind::kNumber) Show(control.name.c_str(), "0=1; 5=2");
  }
  line_.setFixedHeight(260);
  QApplication::processEvents();
  const auto isVisible = [this](const char* name) {
    return Tracks()->visibleRegion().contains(Key(name, 0).toPoint());
  };
  line_.Choose(ControlOf("lens.feather"));
  EXPECT_TRUE(isVisible("lens.feather"));
  EXPECT_FALSE(isVisible("intensity"));
  Tracks()->setFocus();
  for (int i = 0; i < 20; ++i) QTest::keyClick(Tracks(), Qt::Key_Down);
  EXPECT_TRUE(isVisible("intensity"));
  EXPECT_FALSE(isVisible("lens.feather"));
}

TEST_F(TimeLineTest, TheButtonsGoFromKeyToKey) {
  Click("To the next key");
  Click("To the next key");
  Click("To the next key");
  Click("To the key before");
  line_.Choose(ControlOf("intensity"));
  Click("To the next key");
  std::vector<int> frames;
  for (const auto& [frame, phase] : frames_) frames.push_back(frame);
  EXPECT_THAT(frames, ElementsAre(10, 20, 50, 20, 50));
}

TEST_F(TimeLineTest, TheCurvesKeysAreDraggedUpAndDown) {
  line_.Choose(ControlOf("lens.scale"));
  const QPointF key = Curve()->PlaceOf(10, 100);
  const QPointF other = Curve()->PlaceOf(20, 200);
  Drag(Curve(), {key, {key.x(), (key.y() + other.y()) / 2}});
  EXPECT_THAT(edits_, ElementsAre("lens.scale: 10=150; 20=200...", "lens.scale: 10=150; 20=200"));
}

TEST_F(TimeLineTest, TheCurveIsThatOfTheRenders) {
  Show("lens.scale", "0=0; 50=100; 100=0");
  line_.Choose(ControlOf("lens.scale"));
  const QImage image = Curve()->grab().toImage();
  const auto drawn = [&](double frame, double value) {
    const QPoint place = Curve()->PlaceOf(frame, value).toPoint();
    for (int y = -2; y <= 2; ++y) {
      if (image.pixel(place + QPoint(0, y)) != image.pixel(image.width() - 3, 3)) return true;
    }
    return false;
  };
  for (const double frame : {10.0, 25.0, 75.0, 90.0}) {
    EXPECT_TRUE(drawn(frame, 100 - 2 * std::abs(frame - 50))) << frame;
    EXPECT_FALSE(drawn(frame, 50 - std::abs(frame - 50) / 2)) << frame;
  }
}

}  // namespace
}  // namespace vitrell::panel
