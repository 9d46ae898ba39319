// The blur chain: which blurs run in which pass, and which copies replace the others.
#include "blur/blur_dispatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "literal/blur/blur_dispatcher.h"
#include "pass/call_stage.h"

namespace vitrell {
namespace {

using testing::Each;
using testing::ElementsAre;

constexpr std::uint64_t kSeed = 31337;
constexpr A_long kWidth = 12;
constexpr A_long kHeight = 9;

LX_Info AllVisible() {
  LX_Info info = {};
  info.scaleWidth = info.scaleHeight = 1;
  info.irisSides = 3;
  info.irisAspectRatio = 1;
  info.fastBlurVisible = info.realisticVisible = info.opticalVisible = 1;
  info.trailVisible = info.directionalVisible = 1;
  return info;
}

std::vector<double> FullMask() { return std::vector<double>(kWidth * kHeight, 1.0); }

struct ChainResult {
  PF_Err error;
  Picture<PF_Pixel> w1;
  Picture<PF_Pixel> w2;
  std::vector<std::string> log;

  std::ptrdiff_t Count(const std::string& prefix) const {
    return std::count_if(log.begin(), log.end(),
                         [&](const std::string& line) { return line.rfind(prefix, 0) == 0; });
  }
};

Picture<PF_Pixel> Noise() {
  Picture<PF_Pixel> picture(kWidth, kHeight);
  picture.FillNoise(kSeed);
  return picture;
}

PF_Err UniformBlurs(const StageCall& call) { return RenderBlurEffect(call, BlurPass::kUniform); }
PF_Err MappedBlurs(const StageCall& call) { return RenderBlurEffect(call, BlurPass::kLensMapped); }

ChainResult Chain(const LX_Info& info, BlurPass pass,
                  const std::vector<double>& maskValues = FullMask()) {
  FakeHost host;
  const TestMask mask(maskValues);
  ChainResult result = {0, Noise(), Picture<PF_Pixel>(kWidth, kHeight), {}};
  result.error = CallStage(pass == BlurPass::kUniform ? UniformBlurs : MappedBlurs, host.inData(),
                           result.w1.get(), result.w2.get(), info);
  result.log = host.log;
  EXPECT_EQ(host.liveWorlds, 0);
  EXPECT_EQ(result.Count("acquire"), result.Count("release"));
  return result;
}

TEST(BlurDispatcherTest, AllOffCopiesInBothPasses) {
  const ChainResult zero = Chain(LX_Info{}, BlurPass::kUniform);
  EXPECT_EQ(zero.error, PF_Err_NONE);
  EXPECT_TRUE(zero.w2.SameBytes(Noise()));
  EXPECT_THAT(zero.log, ElementsAre("copy", "copy", "copy", "copy", "copy", "copy"));
  const ChainResult one = Chain(LX_Info{}, BlurPass::kLensMapped);
  EXPECT_EQ(one.error, PF_Err_NONE);
  EXPECT_TRUE(one.w2.SameBytes(Noise()));
  EXPECT_THAT(one.log, ElementsAre("copy", "copy", "copy"));
}

// Visible with an amount of 0, below 0 or NaN is off as well.
TEST(BlurDispatcherTest, AmountsMustBeAboveZero) {
  for (const float amount : {0.0F, -3.0F, std::numeric_limits<float>::quiet_NaN()}) {
    LX_Info info = AllVisible();
    info.fastBlurAmount = info.realisticAmount = info.opticalAmount = info.trailAmount = amount;
    const ChainResult result = Chain(info, BlurPass::kUniform);
    EXPECT_TRUE(result.w2.SameBytes(Noise())) << amount;
    EXPECT_THAT(result.log, Each("copy")) << amount;
  }
}

// With the lens as blur map the fast blur takes part in both passes, without it only in the
// uniform pass.
TEST(BlurDispatcherTest, KeepsTheMappedFastBlurInBothPasses) {
  LX_Info info = AllVisible();
  info.fastBlurAmount = 2;
  EXPECT_EQ(Chain(info, BlurPass::kUniform).Count("iterate8"), 6);
  EXPECT_EQ(Chain(info, BlurPass::kLensMapped).Count("iterate8"), 0);
  info.fastBlurUseLensAsBlurMap = 1;
  EXPECT_EQ(Chain(info, BlurPass::kUniform).Count("iterate8"), 6);
  EXPECT_EQ(Chain(info, BlurPass::kLensMapped).Count("iterate8"), 6);
  info.fastBlurUseLensAsBlurMap = 2;
  EXPECT_EQ(Chain(info, BlurPass::kLensMapped).Count("iterate8"), 0);
}

TEST(BlurDispatcherTest, RealisticBlurRunsInOnePassOnly) {
  LX_Info info = AllVisible();
  info.realisticAmount = 0.03F;
  const auto changes = [&](BlurPass pass) { return !Chain(info, pass).w2.SameBytes(Noise()); };
  EXPECT_TRUE(changes(BlurPass::kUniform));
  EXPECT_FALSE(changes(BlurPass::kLensMapped));
  info.realisticUseLensAsBlurMap = 1;
  EXPECT_FALSE(changes(BlurPass::kUniform));
  EXPECT_TRUE(changes(BlurPass::kLensMapped));
  info.realisticUseLensAsBlurMap = 2;  // Neither 0 nor 1.
  EXPECT_FALSE(changes(BlurPass::kUniform));
  EXPECT_FALSE(changes(BlurPass::kLensMapped));
}

// Length 1 at 45 degrees: (trunc(cos 135), trunc(sin 135)) = (0, 0), a single tap.
TEST(BlurDispatcherTest, DirectionalBlurOfOneTapIsACopy) {
  LX_Info info = AllVisible();
  info.directionalAmount = 0.99F;
  EXPECT_EQ(Chain(info, BlurPass::kUniform).Count("iterate8"), 0);
  info.directionalAmount = 1;
  info.directionalAngle = 0.7853981633974483;
  EXPECT_EQ(Chain(info, BlurPass::kUniform).Count("iterate8"), 0);
  EXPECT_TRUE(Chain(info, BlurPass::kUniform).w2.SameBytes(Noise()));
  info.directionalAngle = 0;
  EXPECT_EQ(Chain(info, BlurPass::kUniform).Count("iterate8"), 1);
  info.directionalVisible = 2;
  EXPECT_EQ(Chain(info, BlurPass::kUniform).Count("iterate8"), 0);
}

// Pulled to left + 1, top + 1, right - 2, bottom - 2.
TEST(BlurDispatcherTest, TrailCentreIsPulledInside) {
  const auto trailAt = [](int x, int y) {
    LX_Info info = AllVisible();
    info.trailAmount = 0.5F;
    info.trailCenterX = x;
    info.trailCenterY = y;
    const ChainResult result = Chain(info, BlurPass::kUniform);
    EXPECT_EQ(result.error, PF_Err_NONE);
    return result.w2;
  };
  EXPECT_TRUE(trailAt(0, 0).SameBytes(trailAt(1, 1)));
  EXPECT_TRUE(trailAt(-500, -2).SameBytes(trailAt(1, 1)));
  EXPECT_TRUE(trailAt(kWidth - 1, kHeight - 1).SameBytes(trailAt(kWidth - 2, kHeight - 2)));
  EXPECT_TRUE(trailAt(99, 4).SameBytes(trailAt(kWidth - 2, 4)));
  EXPECT_FALSE(trailAt(1, 1).SameBytes(trailAt(2, 2)));
  EXPECT_FALSE(trailAt(1, 1).SameBytes(trailAt(kWidth - 2, kHeight - 2)));
}

TEST(BlurDispatcherTest, TrailTakesTheLensPositionOnlyWhenTheBoxIsOne) {
  LX_Info info = AllVisible();
  info.trailAmount = 0.5F;
  info.positionX = 3;
  info.positionY = 3;
  info.trailCenterX = 8;
  info.trailCenterY = 5;
  const Picture<PF_Pixel> own = Chain(info, BlurPass::kUniform).w2;
  info.trailCenterOfLens = 2;
  EXPECT_TRUE(Chain(info, BlurPass::kUniform).w2.SameBytes(own));
  info.trailCenterOfLens = 1;
  EXPECT_FALSE(Chain(info, BlurPass::kUniform).w2.SameBytes(own));
}

// The distortion takes it whenever the box is not 0.
TEST(BlurDispatcherTest, KeepsTheDistortionsBoxTestedForNotZero) {
  LX_Info info = AllVisible();
  info.opticalAmount = 120;
  info.positionX = 3;
  info.positionY = 3;
  info.opticalCenterX = 8;
  info.opticalCenterY = 5;
  const Picture<PF_Pixel> own = Chain(info, BlurPass::kUniform).w2;
  info.opticalCenterOfLens = 1;
  const Picture<PF_Pixel> lens = Chain(info, BlurPass::kUniform).w2;
  EXPECT_FALSE(lens.SameBytes(own));
  info.opticalCenterOfLens = 2;
  EXPECT_TRUE(Chain(info, BlurPass::kUniform).w2.SameBytes(lens));
}

// Near 180 degrees the tangent grows without bound and the focal length falls toward 0. The
// expected image comes from the literal chain.
TEST(BlurDispatcherTest, DistortionNear180Degrees) {
  for (const float amount : {179.0F, 179.99F, 180.0F}) {
    LX_Info info = AllVisible();
    info.opticalAmount = amount;
    info.opticalCenterX = 6;
    info.opticalCenterY = 4;
    const ChainResult result = Chain(info, BlurPass::kUniform);
    EXPECT_EQ(result.error, PF_Err_NONE);

    literal::Settings settings;
    settings.opticalVisible = 1;
    settings.opticalAmount = amount;
    settings.opticalCenterX = 6;
    settings.opticalCenterY = 4;
    const Picture<PF_Pixel> noise = Noise();
    literal::World w1;
    w1.width = kWidth;
    w1.height = kHeight;
    w1.extent = {0, 0, kWidth, kHeight};
    for (A_long i = 0; i < kWidth * kHeight; ++i) {
      const PF_Pixel& pixel = noise.At(i % kWidth, i / kWidth);
      w1.pixels.push_back({{pixel.alpha, pixel.red, pixel.green, pixel.blue}});
    }
    literal::World w2 = w1;
    PF_ANSICallbacks maths = {};
    FillMaths(&maths);
    literal::BlurChain(settings,
                       {maths.sin, maths.cos, maths.tan, maths.atan, maths.sqrt, maths.pow},
                       {w1.extent, FullMask()}, 0, w1, w2);
    for (A_long i = 0; i < kWidth * kHeight; ++i) {
      const PF_Pixel& pixel = result.w2.At(i % kWidth, i / kWidth);
      const std::uint16_t(&c)[4] = w2.pixels[static_cast<std::size_t>(i)].channel;
      ASSERT_THAT((std::vector<int>{pixel.alpha, pixel.red, pixel.green, pixel.blue}),
                  ElementsAre(c[0], c[1], c[2], c[3]))
          << amount << " pixel " << i;
    }
  }
}

// The chain's result is what the host copies onto itself at the end, also with every engine on.
TEST(BlurDispatcherTest, KeepsTheSelfCopyAtTheEnd) {
  LX_Info info = AllVisible();
  info.fastBlurAmount = 1;
  info.opticalAmount = 30;
  info.trailAmount = 0.2F;
  info.directionalAmount = 2;
  const ChainResult result = Chain(info, BlurPass::kUniform);
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_EQ(result.log.back(), "copy");
  EXPECT_FALSE(result.w2.SameBytes(Noise()));
}

TEST(BlurDispatcherTest, WithoutABasicSuiteThrows) {
  FakeHost host;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  host.inData()->pica_basicP = nullptr;
  Picture<PF_Pixel> w1(2, 2);
  Picture<PF_Pixel> w2(2, 2);
  const LX_Info info = {};
  const RenderPlan plan = MakePlan(info);
  EXPECT_THROW((void)UniformBlurs(
                   {suites, {host.inData(), nullptr, w1.get(), w2.get()}, info, plan, nullptr}),
               PF_Err);
}

}  // namespace
}  // namespace vitrell
