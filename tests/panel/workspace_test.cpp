// Controls, handles, time line and picture tied to one document.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QToolButton>
#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

#include "headless/fakes/fake_effect.h"
#include "panel/workspace_fixture.h"

namespace vitrell::panel {
namespace {

namespace fakes = headless::fakes;
using testing::Contains;
using testing::HasSubstr;

TEST_F(WorkspaceTest, AChosenLensIsEditedGreysAndIsRendered) {
  Use(RealModule());
  ASSERT_TRUE(WaitUntil([this] { return answer_.exact; }));
  const std::uint64_t before = answer_.world->Checksum();
  ASSERT_TRUE(Row("lens.feather")->Editor()->isEnabled());
  auto* const type = In<QComboBox>("lens.type");
  QTest::keyClick(type, Qt::Key_Home);
  EXPECT_EQ(Edited().ValueOf(At("lens.type")), look::Value(look::ChoiceValue{1}));
  EXPECT_FALSE(Row("lens.feather")->Editor()->isEnabled());
  ASSERT_TRUE(WaitUntil([&] { return answer_.exact && answer_.world->Checksum() != before; }));
  Edited().Undo().undo();
  EXPECT_TRUE(Row("lens.feather")->Editor()->isEnabled());
  EXPECT_EQ(type->currentIndex(), 1);
}

// What a fresh host's panel procedure greys after the same choice.
TEST_F(WorkspaceTest, EveryLensTypeGreysWhatThePanelProcedureSays) {
  Use(RealModule());
  headless::EffectHost host(module_);
  auto* const type = In<QComboBox>("lens.type");
  ASSERT_EQ(type->count(), 6);
  std::set<std::vector<bool>> seen;
  for (int choice = 1; choice <= type->count(); ++choice) {
    QTest::keyClick(type, Qt::Key_Home);
    for (int i = 1; i < choice; ++i) QTest::keyClick(type, Qt::Key_Down);
    ASSERT_EQ(Edited().ValueOf(At("lens.type")), look::Value(look::ChoiceValue{choice}));
    const int index = Named("lens.type").index;
    host.SetPopup(index, choice);
    ASSERT_EQ(host.UserChangedParam(index), PF_Err_NONE);
    std::vector<bool> greyed;
    for (const look::Control& control : Edited().Panel().controls) {
      greyed.push_back(host.Parameters()[static_cast<std::size_t>(control.index)].Greyed());
      EXPECT_EQ(Row(control.name.c_str())->Editor()->isEnabled(), !greyed.back())
          << control.name << " with " << type->currentText().toStdString();
    }
    seen.insert(greyed);
  }
  EXPECT_GE(seen.size(), 3U);
}

TEST_F(WorkspaceTest, AStopwatchAndAnEditAtAnotherFrameMakeKeysThatShowAsMarks) {
  Use(RealModule(), 101);
  Type("intensity", "20");
  Row("intensity")->findChild<QToolButton*>()->click();
  EXPECT_EQ(KeysOf("intensity"), "0=20");
  work_->ShowFrame(50, EditPhase::kDone);
  Type("intensity", "80");
  EXPECT_EQ(KeysOf("intensity"), "0=20; 50=80");
  // The mark of the second key is where a hand can take it.
  auto* const tracks = work_->Time().findChild<KeyTracks*>();
  ShowActive(work_->Time());
  const QPointF mark = tracks->PlaceOf(At("intensity"), 50);
  Drag(tracks, {mark, mark + QPointF(30, 0), mark + QPointF(50, 0)});
  EXPECT_EQ(KeysOf("intensity"), "0=20; 60=80");
  EXPECT_EQ(Edited().Undo().count(), 4);
  Edited().Undo().undo();
  EXPECT_EQ(KeysOf("intensity"), "0=20; 50=80");
  Row("intensity")->findChild<QToolButton*>()->click();
  EXPECT_EQ(KeysOf("intensity"), "none");
  EXPECT_EQ(Edited().ValueOf(At("intensity")), look::Value(80.0));
}

TEST_F(WorkspaceTest, AFrameBetweenKeysIsTheOneOfTheCommonEvaluation) {
  Use(RealModule(), 11);
  Edited().SetKeys(At("lightness.amount"),
                   look::ParseKeys(Named("lightness.amount"), "0~=100; 7=-60"), EditPhase::kDone);
  work_->ShowFrame(3, EditPhase::kDone);
  const look::Settings expected = Edited().Settings().At(3, work_->Times());
  const double value = std::get<double>(expected.ValueOf(Named("lightness.amount")));
  EXPECT_LT(value, 99);
  EXPECT_GT(value, -59);
  EXPECT_EQ(In<ScrubField>("lightness.amount")->Value(), value);
  ASSERT_TRUE(WaitUntil([this] { return answer_.exact && answer_.frame->number == 3; }));
  headless::EffectHost host(module_);
  headless::WorldBuffer result(160, 90, false);
  expected.Apply(host, 160, 90);
  ASSERT_TRUE(host.Render(source_->Read(3)->world, result).Ok());
  EXPECT_EQ(headless::DescribeDifference(result, *answer_.world), "");
}

TEST_F(WorkspaceTest, PlayingShowsOneFrameAfterTheOther) {
  Use(RealModule(), 501);
  ASSERT_TRUE(WaitUntil([this] { return answer_.exact; }));
  std::vector<std::int64_t> shown;
  QObject::connect(work_.get(), &Workspace::Answered, [&](const RenderAnswer& answer) {
    if (shown.empty() || shown.back() != answer.frame->number) {
      shown.push_back(answer.frame->number);
    }
  });
  work_->Time().Play(true);
  ASSERT_TRUE(WaitUntil([&] { return shown.size() > 3; }));
  work_->Time().Play(false);
  for (std::size_t i = 1; i < shown.size(); ++i) EXPECT_GT(shown[i], shown[i - 1]);
  const std::int64_t rest = work_->FrameIndex();
  EXPECT_EQ(work_->Time().Frame(), rest);
  EXPECT_TRUE(WaitUntil([&] { return answer_.exact && answer_.frame->number == rest; }));
}

TEST_F(WorkspaceTest, APositionIsPickedInThePicture) {
  Use(RealModule());
  ShowView();
  Q_EMIT work_->Controls().PickPoint(At("lens.position"));
  const QPointF place = work_->View().Transform().ToView().map(QPointF(40.5, 30.5));
  PressMouse(&work_->View(), place);
  ReleaseMouse(&work_->View(), place);
  const auto point = std::get<look::PointValue>(Edited().ValueOf(At("lens.position")));
  ASSERT_TRUE(point.x.percent && point.y.percent);
  EXPECT_NEAR(point.x.value * 160 / 100, 40, 1);
  EXPECT_NEAR(point.y.value * 90 / 100, 30, 1);
}

TEST_F(WorkspaceTest, ADraggedHandleIsOneStepAndTheControlFollows) {
  Use(RealModule());
  ShowView();
  const QPointF middle = work_->View().Transform().ToView().map(QPointF(80.5, 45.5));
  Drag(&work_->View(), {middle, middle + QPointF(10, 6), middle + QPointF(30, 20)});
  EXPECT_TRUE(Edited().DiffersFromDefault(At("lens.position")));
  EXPECT_TRUE(Row("lens.position")->DiffersFromDefault());
  EXPECT_EQ(Edited().Undo().count(), 1);
  Edited().Undo().undo();
  EXPECT_FALSE(Row("lens.position")->DiffersFromDefault());
}

TEST_F(WorkspaceTest, AFailedRenderStandsOverThePictureAndNothingIsLost) {
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command& command) {
                           return command.params[1]->u.fs_d.value > 50
                                      ? PF_Err{PF_Err_OUT_OF_MEMORY}
                                      : PF_Err{PF_Err_NONE};
                         }}});
  Use(fakes::Module());
  ASSERT_TRUE(WaitUntil([this] { return answer_.exact; }));
  Edited().SetValue(0, 60.0, EditPhase::kDone);
  ASSERT_TRUE(WaitUntil([this] { return !answer_.message.isEmpty(); }));
  EXPECT_THAT(Signs(), Contains(HasSubstr("PF_Err_OUT_OF_MEMORY (4)")));
  EXPECT_EQ(Edited().ValueOf(0), look::Value(60.0));
  Edited().Undo().undo();
  ASSERT_TRUE(WaitUntil([this] { return answer_.message.isEmpty(); }));
  EXPECT_THAT(Signs(), testing::Not(Contains(HasSubstr("PF_Err"))));
}

TEST_F(WorkspaceTest, AMisbehavingEffectIsToldAndItsPictureShown) {
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command& command) -> PF_Err {
                           static_cast<void>(fakes::Acquire<void>(command, kPFAnsiSuite, 1));
                           return PF_Err_NONE;
                         }}});
  Use(fakes::Module());
  ASSERT_TRUE(WaitUntil([this] { return !complaints_.empty(); }));
  EXPECT_THAT(complaints_.front(), HasSubstr("The effect misbehaved"));
  EXPECT_FALSE(answer_.image.isNull());
}

// The effect hears no abort and goes on until the test has made its changes, or for ten seconds.
TEST_F(WorkspaceTest, ChangesDoNotWaitForARender) {
  static std::atomic<bool> begun;
  static std::atomic<bool> released;
  begun = released = false;
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command&) -> PF_Err {
                           begun = true;
                           for (int i = 0; i < 1000 && !released; ++i) {
                             std::this_thread::sleep_for(std::chrono::milliseconds(10));
                           }
                           return PF_Err_NONE;
                         }}});
  Use(fakes::Module());
  ASSERT_TRUE(WaitUntil([] { return begun.load(); }));
  for (int i = 1; i <= 50; ++i) {
    Edited().SetValue(0, 1.0 * i, EditPhase::kDragging);
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(answer_.request, 0U) << "the first render has ended: the changes waited for it";
  released = true;
  ASSERT_TRUE(WaitUntil([this] { return answer_.exact; }));
}

}  // namespace
}  // namespace vitrell::panel
