// The one per-pixel pass: depth, progress, errors.
#include "host/pixel_pass.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "host/fake_host.h"
#include "host/picture.h"

namespace vitrell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <typename Pixel>
PF_Err AddOneToRed(void* /*refcon*/, A_long /*x*/, A_long /*y*/, Pixel* in, Pixel* out) {
  *out = *in;
  out->red = static_cast<decltype(out->red)>(in->red + 1);
  return PF_Err_NONE;
}

constexpr PixelCallbacks kAddOne = {AddOneToRed<PF_Pixel>, AddOneToRed<PF_Pixel16>};

template <typename Pixel>
class PixelPassTest : public testing::Test {};
using Depths = testing::Types<PF_Pixel, PF_Pixel16>;
TYPED_TEST_SUITE(PixelPassTest, Depths);

TYPED_TEST(PixelPassTest, RunsTheCallbackOfTheDestinationsDepth) {
  FakeHost host;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  Picture<TypeParam> src(3, 2);
  src.Fill({1, 20, 3, 4});
  Picture<TypeParam> dst(3, 2);
  int refcon = 0;
  EXPECT_EQ(RunPixelPass(suites, host.inData(), src.get(), dst.get(), 77, kAddOne, &refcon),
            PF_Err_NONE);
  EXPECT_EQ(dst.At(2, 1).red, 21);
  EXPECT_EQ(dst.At(0, 0).red, 21);
  EXPECT_EQ(host.lastRefcon, &refcon);
  EXPECT_EQ(host.lastSource, src.get());
  EXPECT_EQ(host.lastDestination, dst.get());
  EXPECT_TRUE(host.lastAreaNull);
  if (std::is_same_v<TypeParam, PF_Pixel16>) {
    EXPECT_THAT(host.log, ElementsAre("acquire PF iterate16 Suite 1", "iterate16 0..77"));
  } else {
    EXPECT_THAT(host.log, ElementsAre("acquire PF Iterate8 Suite 1", "iterate8 0..77"));
  }
}

TYPED_TEST(PixelPassTest, AnswersTheHostsCode) {
  FakeHost host;
  host.failures["iterate"][1] = 517;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  Picture<TypeParam> src(1, 1);
  Picture<TypeParam> dst(1, 1);
  EXPECT_EQ(RunPixelPass(suites, host.inData(), src.get(), dst.get(), 1, kAddOne, nullptr), 517);
}

TEST(PixelPassDepthTest, WorldsOfDifferingDepthsAreRefusedWithoutACall) {
  FakeHost host;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  Picture<PF_Pixel> shallow(2, 2);
  Picture<PF_Pixel16> deep(2, 2);
  EXPECT_EQ(RunPixelPass(suites, host.inData(), shallow.get(), deep.get(), 2, kAddOne, nullptr),
            516);
  EXPECT_EQ(RunPixelPass(suites, host.inData(), deep.get(), shallow.get(), 2, kAddOne, nullptr),
            516);
  EXPECT_THAT(host.log, IsEmpty());
}

// A refcon made for one depth never meets the callback of the other.
TEST(PixelPassDepthTest, ACallbackOfOneDepthRefusesTheOther) {
  FakeHost host;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  Picture<PF_Pixel> shallow(2, 2);
  Picture<PF_Pixel16> deep(2, 2);
  const PixelCallbacks of8 = CallbackOfDepth(AddOneToRed<PF_Pixel>);
  const PixelCallbacks of16 = CallbackOfDepth(AddOneToRed<PF_Pixel16>);
  EXPECT_EQ(RunPixelPass(suites, host.inData(), deep.get(), deep.get(), 2, of8, nullptr), 516);
  EXPECT_EQ(RunPixelPass(suites, host.inData(), shallow.get(), shallow.get(), 2, of16, nullptr),
            516);
  EXPECT_THAT(host.log, IsEmpty());
}

TEST(PixelPassDepthTest, MissingSuiteThrows) {
  FakeHost host;
  host.refusedSuites = {kPFIterate16Suite};
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  Picture<PF_Pixel16> world(1, 1);
  EXPECT_THROW(
      (void)RunPixelPass(suites, host.inData(), world.get(), world.get(), 1, kAddOne, nullptr),
      PF_Err);
}

}  // namespace
}  // namespace vitrell
