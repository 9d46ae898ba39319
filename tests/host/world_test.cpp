// Worlds made, copied and filled through the host.
#include "host/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/fake_host.h"
#include "host/picture.h"

namespace vitrell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

PF_LayerDef Source(A_long width, A_long height, PF_WorldFlags flags) {
  PF_LayerDef source = {};
  source.width = width;
  source.height = height;
  source.world_flags = flags;
  return source;
}

TEST(OwnedWorldTest, DisposesAtTheEndOfItsLife) {
  FakeHost host;
  {
    OwnedWorld world(host.inData());
    ASSERT_EQ(world.Create(5, 4, PF_NewWorldFlag_NONE), PF_Err_NONE);
    EXPECT_TRUE(world.HasData());
    EXPECT_EQ(host.liveWorlds, 1);
  }
  EXPECT_THAT(host.log, ElementsAre("new_world 5x4 flags 0", "dispose"));
  EXPECT_EQ(host.liveWorlds, 0);
}

TEST(OwnedWorldTest, WithoutAWorldDisposesOfNothing) {
  FakeHost host;
  { const OwnedWorld world(host.inData()); }
  EXPECT_THAT(host.log, IsEmpty());
}

TEST(OwnedWorldTest, FailingCallThatLeavesJunkDisposesOfNothing) {
  FakeHost host;
  host.newWorldAnswers = {{.error = 4, .junk = true}};
  {
    OwnedWorld world(host.inData());
    EXPECT_EQ(world.Create(5, 4, PF_NewWorldFlag_NONE), 4);
    EXPECT_FALSE(world.HasData());
    EXPECT_EQ(world.get()->width, 0);
    EXPECT_EQ(world.get()->world_flags, 0);
  }
  EXPECT_THAT(host.log, ElementsAre("new_world 5x4 flags 0"));
}

TEST(OwnedWorldTest, DisposingTwiceAsksTheHostOnce) {
  FakeHost host;
  OwnedWorld world(host.inData());
  ASSERT_EQ(world.Create(1, 1, PF_NewWorldFlag_NONE), PF_Err_NONE);
  world.Dispose();
  world.Dispose();
  EXPECT_THAT(host.log, ElementsAre("new_world 1x1 flags 0", "dispose"));
}

TEST(OwnedWorldTest, CreateLikePassesTheSourcesFlagsUnchanged) {
  FakeHost host;
  host.newWorldAnswers = {{.deep = true}};
  OwnedWorld world(host.inData());
  ASSERT_EQ(world.CreateLike(Source(7, 3, PF_WorldFlag_DEEP | 0x01000000)), PF_Err_NONE);
  EXPECT_THAT(host.log, ElementsAre("new_world 7x3 flags 16777217"));
  EXPECT_TRUE(IsDeep(*world.get()));
}

// A deep world's flag is bit 0, which asks new_world for cleared pixels; deep pixels are bit 1.
TEST(OwnedWorldTest, CreateLikeAsksOnceMoreForADeepWorld) {
  FakeHost host;
  OwnedWorld world(host.inData());
  ASSERT_EQ(world.CreateLike(Source(7, 3, PF_WorldFlag_DEEP)), PF_Err_NONE);
  EXPECT_THAT(host.log, ElementsAre("new_world 7x3 flags 1", "dispose", "new_world 7x3 flags 2"));
  EXPECT_TRUE(IsDeep(*world.get()));
  EXPECT_EQ(host.liveWorlds, 1);
}

// A shallow world that may be written to has bit 1, which asks for a deep one.
TEST(OwnedWorldTest, CreateLikeAsksOnceMoreForAShallowWorld) {
  FakeHost host;
  OwnedWorld world(host.inData());
  ASSERT_EQ(world.CreateLike(Source(7, 3, PF_WorldFlag_WRITEABLE)), PF_Err_NONE);
  EXPECT_THAT(host.log, ElementsAre("new_world 7x3 flags 2", "dispose", "new_world 7x3 flags 0"));
  EXPECT_FALSE(IsDeep(*world.get()));
}

TEST(OwnedWorldTest, CreateLikeAnswersTheFirstCallsCode) {
  FakeHost host;
  host.newWorldAnswers = {{.error = 4, .junk = true}};
  OwnedWorld world(host.inData());
  EXPECT_EQ(world.CreateLike(Source(7, 3, PF_WorldFlag_DEEP)), 4);
  EXPECT_THAT(host.log, ElementsAre("new_world 7x3 flags 1"));
}

TEST(OwnedWorldTest, CreateLikeAnswers516WhenTheSecondCallFails) {
  FakeHost host;
  host.newWorldAnswers = {{.deep = false}, {.error = 4, .junk = true}};
  OwnedWorld world(host.inData());
  EXPECT_EQ(world.CreateLike(Source(7, 3, PF_WorldFlag_DEEP)), 516);
  EXPECT_FALSE(world.HasData());
  EXPECT_EQ(host.liveWorlds, 0);
}

TEST(OwnedWorldTest, CreateLikeAnswers516WhenTheDepthStaysWrong) {
  FakeHost host;
  host.newWorldAnswers = {{.deep = false}, {.deep = false}};
  OwnedWorld world(host.inData());
  EXPECT_EQ(world.CreateLike(Source(7, 3, PF_WorldFlag_DEEP)), 516);
  EXPECT_FALSE(world.HasData());
  EXPECT_THAT(host.log,
              ElementsAre("new_world 7x3 flags 1", "dispose", "new_world 7x3 flags 2", "dispose"));
  EXPECT_EQ(host.liveWorlds, 0);
}

TEST(WorldTest, CopiesWholeWorldsAndAnswersTheHostsCode) {
  FakeHost host;
  host.failures["copy"][2] = 515;
  Picture<PF_Pixel> from(3, 2);
  from.FillNoise(1);
  Picture<PF_Pixel> to(3, 2);
  EXPECT_EQ(CopyWorld(host.inData(), from.get(), to.get()), PF_Err_NONE);
  EXPECT_TRUE(from.SameBytes(to));
  EXPECT_EQ(CopyWorld(host.inData(), from.get(), to.get()), 515);
  EXPECT_THAT(host.log, ElementsAre("copy", "copy"));
}

TEST(WorldTest, FillsTheExtentHintByTheWorldsDepth) {
  FakeHost host;
  host.failures["fill"][2] = 512;
  Picture<PF_Pixel> shallow(9, 9);
  shallow.get()->extent_hint = {1, 2, 5, 6};
  Picture<PF_Pixel16> deep(9, 9);
  EXPECT_EQ(FillTransparent(host.inData(), shallow.get()), PF_Err_NONE);
  EXPECT_EQ(FillTransparent(host.inData(), deep.get()), 512);
  EXPECT_THAT(host.log, ElementsAre("fill 0,0,0,0 in 1,2,5,6", "fill16 0,0,0,0 in 0,0,9,9"));
}

TEST(WorldTest, ExtentLinesAreBottomLessTop) {
  PF_LayerDef world = Source(9, 9, 0);
  world.extent_hint = {0, -3, 9, 4};
  EXPECT_EQ(ExtentLines(world), 7);
}

}  // namespace
}  // namespace vitrell
