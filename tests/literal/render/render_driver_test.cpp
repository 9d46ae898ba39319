// The literal render's decisions and the host's copy against numbers worked out by hand.
#include "literal/render/render_driver.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

TEST(LiteralRenderDriverTest, PlanFollowsFeatherInSinglePrecision) {
  Settings settings;
  settings.fastBlurVisible = 1;
  settings.fastBlurUseLensAsBlurMap = 1;
  settings.fastBlurAmount = 10;
  settings.feather = 0.1F;
  EXPECT_TRUE(MakePlan(settings).mappedBlurs);
  EXPECT_FALSE(MakePlan(settings).blendBeforeLens);
  EXPECT_FALSE(MakePlan(settings).useBlurMap);
  settings.feather = 5.0F / 100.0F;
  EXPECT_FALSE(MakePlan(settings).mappedBlurs);
  EXPECT_TRUE(MakePlan(settings).blendBeforeLens);
  EXPECT_TRUE(MakePlan(settings).useBlurMap);
  EXPECT_EQ(MakePlan(settings).blurMapAmount, static_cast<double>(0.1F));
}

TEST(LiteralRenderDriverTest, HostCopyConvertsWhiteToWhite) {
  World shallow = MakeWorld(2, 1, false, [](std::int32_t, std::int32_t column) -> std::uint16_t {
    return column == 0 ? 255 : 1;
  });
  World deep = shallow;
  deep.deep = true;
  HostCopy(shallow, deep);
  EXPECT_EQ(deep.pixels[0].channel[1], 32768);
  EXPECT_EQ(deep.pixels[1].channel[1], 129);  // 128.5 is 128.50196.
  deep.pixels[1].channel[1] = 65000;
  HostCopy(deep, shallow);
  EXPECT_EQ(shallow.pixels[1].channel[1], 255);
}

}  // namespace
}  // namespace vitrell::literal
