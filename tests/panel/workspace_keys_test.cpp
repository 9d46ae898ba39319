// Keys, their curve and playing, as they are used in the panel.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QToolButton>

#include "panel/time/curve_view.h"
#include "panel/workspace_fixture.h"

namespace vitrell::panel {
namespace {

class WorkspaceKeysTest : public WorkspaceTest {
 protected:
  WorkspaceKeysTest() {
    Use(RealModule(), 101);
    SetKeys("intensity", "0=20; 50=80");
    SetKeys("fast-blur.amount", "0=10; 50=40");
    ShowActive(work_->Time());
  }

  void SetKeys(const char* name, const char* keys) {
    Edited().SetKeys(At(name), look::ParseKeys(Named(name), keys), EditPhase::kDone);
  }
  KeyTracks* Tracks() { return work_->Time().findChild<KeyTracks*>(); }
  CurveView* Curve() { return work_->Time().findChild<CurveView*>(); }
  QPointF Mark(const char* name, double frame) { return Tracks()->PlaceOf(At(name), frame); }
  void Click(const char* button) {
    for (auto* const found : work_->Time().findChildren<QToolButton*>()) {
      if (found->text() == button) return found->click();
    }
    FAIL() << "no such button";
  }
  void Select(const char* name, double frame, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    PressMouse(Tracks(), Mark(name, frame), Qt::LeftButton, modifiers);
    ReleaseMouse(Tracks(), Mark(name, frame));
  }
  // Of all rows together.
  void ExpectOneStepBackTo(int steps) {
    EXPECT_EQ(Edited().Undo().count(), steps + 1);
    Edited().Undo().undo();
    EXPECT_EQ(KeysOf("intensity"), "0=20; 50=80");
    EXPECT_EQ(KeysOf("fast-blur.amount"), "0=10; 50=40");
  }
};

TEST_F(WorkspaceKeysTest, CopyingKeysIsOneStep) {
  const int steps = Edited().Undo().count();
  const QPointF mark = Mark("intensity", 50);
  Drag(Tracks(), {mark, mark + QPointF(20, 0), mark + QPointF(50, 0)}, Qt::LeftButton,
       Qt::AltModifier);
  EXPECT_EQ(KeysOf("intensity"), "0=20; 50=80; 60=80");
  ExpectOneStepBackTo(steps);
}

TEST_F(WorkspaceKeysTest, WhatIsDoneToKeysOfTwoControlsIsOneStep) {
  const int steps = Edited().Undo().count();
  const auto selectBoth = [this] {
    Select("intensity", 25);  // there is none: what was selected is not any more
    Select("intensity", 50);
    Select("fast-blur.amount", 50, Qt::ShiftModifier);
  };
  selectBoth();
  Click("Hold");
  EXPECT_EQ(KeysOf("intensity"), "0=20; 50|=80");
  EXPECT_EQ(KeysOf("fast-blur.amount"), "0=10; 50|=40");
  ExpectOneStepBackTo(steps);
  selectBoth();
  QTest::keyClick(Tracks(), Qt::Key_Delete);
  EXPECT_EQ(KeysOf("intensity"), "0=20");
  EXPECT_EQ(KeysOf("fast-blur.amount"), "0=10");
  ExpectOneStepBackTo(steps);
  selectBoth();
  QTest::keyClick(Tracks(), Qt::Key_Right);
  EXPECT_EQ(KeysOf("intensity"), "0=20; 51=80");
  EXPECT_EQ(KeysOf("fast-blur.amount"), "0=10; 51=40");
  ExpectOneStepBackTo(steps);
}

// The one whose row the keyboard is in.
TEST_F(WorkspaceKeysTest, TheCurveIsThatOfTheChosenControl) {
  ShowActive(work_->Controls());
  work_->Controls().Choose(At("intensity"));
  const QImage ofIntensity = Curve()->grab().toImage();
  const QPointF key = Curve()->PlaceOf(50, 80);
  const QPointF other = Curve()->PlaceOf(0, 20);
  Drag(Curve(), {key, {key.x(), (key.y() + other.y()) / 2}});
  EXPECT_EQ(KeysOf("intensity"), "0=20; 50=50");
  EXPECT_EQ(KeysOf("fast-blur.amount"), "0=10; 50=40");
  Edited().Undo().undo();
  work_->Controls().Choose(At("fast-blur.amount"));
  EXPECT_NE(Curve()->grab().toImage(), ofIntensity);
  work_->Controls().Choose(At("intensity"));
  EXPECT_EQ(Curve()->grab().toImage(), ofIntensity);
}

TEST_F(WorkspaceKeysTest, PlayingStaysBetweenInAndOutAndEndsWithTheExactFrame) {
  std::vector<double> shown;
  QObject::connect(work_.get(), &Workspace::Answered, [&](const RenderAnswer& answer) {
    shown.push_back(static_cast<double>(answer.frame->number));
  });
  work_->ShowFrame(40, EditPhase::kDone);
  Click("In");
  work_->ShowFrame(43, EditPhase::kDone);
  Click("Out");
  ASSERT_TRUE(WaitUntil([&] { return answer_.exact && answer_.frame->number == 43; }));
  shown.clear();
  work_->Time().Play(true);
  ASSERT_TRUE(WaitUntil([&] { return shown.size() > 8; }));
  work_->Time().Play(false);
  EXPECT_THAT(shown, testing::Each(testing::AllOf(testing::Ge(40), testing::Le(43))));
  const std::int64_t rest = work_->FrameIndex();
  EXPECT_TRUE(WaitUntil([&] { return answer_.exact && answer_.frame->number == rest; }));
}

class WorkspaceViewTest : public WorkspaceTest {
 protected:
  // A pixel of the picture, where the view shows it.
  QColor Shown(double x, double y) {
    const QPointF place = work_->View().Transform().ToView().map(QPointF(x, y));
    return work_->View().grab().toImage().pixelColor(place.toPoint());
  }
  static int Redness(const QColor& colour) {
    return 2 * colour.red() - colour.green() - colour.blue();
  }
};

TEST_F(WorkspaceViewTest, TheKeyLaysTheLensMaskOverThePicture) {
  Use(RealModule());
  ShowView();
  QTest::keyClick(&work_->View(), Qt::Key_H);
  const QColor inside = Shown(80, 45);
  const QColor outside = Shown(5, 5);
  QTest::keyClick(&work_->View(), Qt::Key_M);
  ASSERT_TRUE(WaitUntil([this] { return answer_.exact && !answer_.mask.isNull(); }));
  EXPECT_GT(Redness(Shown(5, 5)), Redness(outside));
  EXPECT_EQ(Shown(80, 45), inside);
  // It follows the lens.
  Edited().SetValue(At("lens.position"), look::PointValue{{5, false}, {5, false}},
                    EditPhase::kDone);
  ASSERT_TRUE(WaitUntil([&] {
    return answer_.exact && !answer_.mask.isNull() && qRed(answer_.mask.pixel(5, 5)) == 255;
  }));
  EXPECT_EQ(qRed(answer_.mask.pixel(150, 80)), 0);
  QTest::keyClick(&work_->View(), Qt::Key_M);
  ASSERT_TRUE(WaitUntil([&] { return answer_.exact && answer_.mask.isNull(); }));
}

}  // namespace
}  // namespace vitrell::panel
