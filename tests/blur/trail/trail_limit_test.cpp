// The longest ray that the trail takes.
#include <gtest/gtest.h>

#include "blur/trail/trail.h"
#include "host/fake_host.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

// The centre is pulled to column 1, so that the farthest ray has one point less than the world has
// columns. Without rows there is no pixel to visit.
PF_Err Trail(A_long width) {
  FakeHost host;
  LX_Info info = {};
  info.trailVisible = 1;
  info.trailAmount = 0.001F;
  PF_LayerDef world = {};
  world.width = width;
  world.extent_hint = {0, 0, width, 0};
  PF_LayerDef destination = world;
  return CallStage(RunTrail, host.inData(), &world, &destination, info);
}

TEST(TrailLimitTest, ARayOf16777216PointsIsCastAndOneBeyondIsNot) {
  EXPECT_EQ(Trail((1 << 24) + 1), PF_Err_NONE);
  EXPECT_EQ(Trail((1 << 24) + 2), PF_Err_OUT_OF_MEMORY);
}

}  // namespace
}  // namespace vitrell
