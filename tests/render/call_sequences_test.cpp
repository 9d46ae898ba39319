// Which host calls a render makes, with which worlds, in which order: lists written by hand.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "render/driver_case.h"

namespace vitrell {
namespace {

// Blur pass 0 with the fast blur alone: W1 = world1, W2 = world2.
CallList PassZeroWithFastBlur() {
  return Join({{"copy world1 -> world2"},
               FastRound("world2", "world1", "world3"),
               FastRound("world1", "world2", "world4"),
               FastRound("world2", "world1", "world5"),
               {"copy world1 -> world2",     // Distortion off.
                "copy world2 -> world1",     // Trail off.
                "copy world1 -> world2",     // Directional blur without a line.
                "copy world2 -> world2"}});  // The result onto itself.
}

CallList PassZeroOff() {
  return {"copy world1 -> world2", "copy world2 -> world1", "copy world1 -> world2",
          "copy world2 -> world1", "copy world1 -> world2", "copy world2 -> world2"};
}

// Lightness runs with amount 0 as well; colour wash and chromatic aberration are copies.
CallList DefaultTones() {
  return {"acquire_suite PF Iterate8 Suite 1", "iterate8 world2 -> world1 rows 0..4",
          "copy world1 -> world2", "copy world2 -> world1"};
}

CallList LensStage(const std::string& pass) {
  return {"acquire_suite PF World Suite 2", "get_pixel_format input", pass};
}

// The driver's own suites, in the order of acquisition.
CallList DriverSuites() {
  return {"release_suite PF Iterate8 Suite 1", "release_suite PF World Suite 2"};
}

CallList DefaultCalls() {
  return Join({Opening(), PassZeroWithFastBlur(), DefaultTones(), FinalBlend("world1", "world2"),
               LensStage("iterate8 world2 -> world1 rows 0..4"), Closing(), DriverSuites()});
}

// The same calls of a 16-bit render, whose temporary worlds are asked for with the flag 1 that the
// working worlds carry.
CallList Deep(CallList calls) {
  for (std::string& call : calls) {
    const auto replace = [&call](const std::string& from, const std::string& to) {
      if (const std::size_t at = call.find(from); at != std::string::npos) {
        call.replace(at, from.size(), to);
      }
    };
    replace("PF Iterate8 Suite", "PF iterate16 Suite");
    if (call.rfind("fill ", 0) == 0) call.replace(0, 4, "fill16");
    replace("iterate8 ", "iterate16 ");
    for (const char* const temporary : {"world3", "world4", "world5", "world6"}) {
      const std::string made = std::string("new_world ") + temporary + " 6x4 flags ";
      replace(made + "0", made + "1");
    }
  }
  return calls;
}

TEST(CallSequenceTest, Defaults) { EXPECT_EQ(DriverCase().Calls(), DefaultCalls()); }

TEST(CallSequenceTest, DefaultsIn16Bit) {
  EXPECT_EQ(DriverCase(true).Calls(), Deep(DefaultCalls()));
}

TEST(CallSequenceTest, TimeGoesToTheCheckout) {
  DriverCase test;
  test.options.currentTime = 48;
  test.options.timeStep = 2;
  test.options.totalTime = 480;
  test.options.timeScale = 24;
  EXPECT_EQ(test.Calls().front(), "checkout_param 3 time 48 step 2 scale 24");
}

// The pixel format is asked for although the lens stage is a copy.
TEST(CallSequenceTest, TypeNone) {
  DriverCase test;
  test.Set("lens.type", 1);
  EXPECT_EQ(test.Calls(),
            Join({Opening(), PassZeroWithFastBlur(), DefaultTones(), FinalBlend("world1", "world2"),
                  LensStage("copy world2 -> world1"), Closing(), DriverSuites()}));
}

TEST(CallSequenceTest, ScaleZeroCopiesTheLensAndTheFastBlur) {
  DriverCase test;
  test.Set("lens.scale", 0);
  EXPECT_EQ(test.Calls(),
            Join({Opening(), PassZeroOff(), DefaultTones(), FinalBlend("world1", "world2"),
                  LensStage("copy world2 -> world1"), Closing(), DriverSuites()}));
}

TEST(CallSequenceTest, AllStagesOff) {
  DriverCase test;
  test.AllOff();
  EXPECT_EQ(test.Calls(),
            Join({Opening(),
                  PassZeroOff(),
                  {"copy world2 -> world1", "copy world1 -> world2", "copy world2 -> world1"},
                  FinalBlend("world1", "world2"),
                  LensStage("copy world2 -> world1"),
                  Closing(),
                  {"release_suite PF World Suite 2"}}));
}

TEST(CallSequenceTest, CustomLayerIsCopiedFirstAndDisposedOfLast) {
  DriverCase test;
  test.AllOff().SetCustomLayer(0);
  EXPECT_EQ(
      test.Calls(),
      Join({{"checkout_param 3 time 0 step 1 scale 30", "abort", "new_world world1 9x5 flags 0",
             "copy custom -> world1", "checkin_param 3", "new_world world2 6x4 flags 0",
             "new_world world3 6x4 flags 0", "copy input -> world2",
             // Blur pass 0 from world2 into world3.
             "copy world2 -> world3", "copy world3 -> world2", "copy world2 -> world3",
             "copy world3 -> world2", "copy world2 -> world3", "copy world3 -> world3",
             "copy world3 -> world2", "copy world2 -> world3", "copy world3 -> world2"},
            FinalBlend("world2", "world3"),
            LensStage("acquire_suite PF Iterate8 Suite 1"),
            {"iterate8 world3 -> world2 rows 0..4", "copy world2 -> output", "dispose_world world2",
             "dispose_world world3", "dispose_world world1", "release_suite PF World Suite 2",
             "release_suite PF Iterate8 Suite 1"}}));
}

// The layer's flags go to new_world unchanged, where they mean something else: writeable (2) asks
// for a deep world, deep (1) for a cleared one. Either copy is taken as it comes.
TEST(CallSequenceTest, KeepsTheCustomCopyOfAnotherDepth) {
  for (const PF_WorldFlags flags : {PF_WorldFlag_WRITEABLE, PF_WorldFlag_DEEP}) {
    DriverCase test;
    test.AllOff().SetCustomLayer(flags);
    const CallList calls = test.Calls();
    EXPECT_EQ(
        CallList(calls.begin() + 2, calls.begin() + 6),
        CallList({"new_world world1 9x5 flags " + std::to_string(flags), "copy custom -> world1",
                  "checkin_param 3", "new_world world2 6x4 flags 0"}));
  }
}

// The temporary world of an 8-bit source that may be written to comes back in 16 bits. Nothing is
// read from it; only with the lens map on it is asked for once more, in the source's depth.
TEST(CallSequenceTest, TemporaryWorldIsAskedForOnceMoreForTheLensMapAlone) {
  DriverCase test;
  test.options.extraWorldFlags = PF_WorldFlag_WRITEABLE;
  const CallList uniform = test.Calls();
  EXPECT_EQ(CallList(uniform.begin() + 7, uniform.begin() + 9),
            CallList({"new_world world3 6x4 flags 2", "copy world2 -> world3"}));
  test.Set("fast-blur.amount", 10).Set("fast-blur.use-lens-as-blur-map", 1).Set("lens.feather", 10);
  const CallList mapped = test.Calls();
  EXPECT_EQ(CallList(mapped.begin() + 7, mapped.begin() + 11),
            CallList({"new_world world3 6x4 flags 2", "dispose_world world3",
                      "new_world world4 6x4 flags 0", "copy world2 -> world4"}));
}

// Amount 10, feather 10: 0.1 < 0.2. The blend waits for blur pass 1, in which the realistic blur is
// a copy and the fast blur runs once more.
TEST(CallSequenceTest, LensMappedFastBlurWithAWideFeather) {
  DriverCase test;
  test.Set("fast-blur.amount", 10).Set("fast-blur.use-lens-as-blur-map", 1).Set("lens.feather", 10);
  const CallList expected = Join({Opening(),
                                  PassZeroWithFastBlur(),
                                  DefaultTones(),
                                  LensStage("iterate8 world2 -> world1 rows 0..4"),
                                  {"copy world1 -> world2"},
                                  FastRound("world2", "world1", "world6"),
                                  FastRound("world1", "world2", "world7"),
                                  FastRound("world2", "world1", "world8"),
                                  {"copy world1 -> world2"},
                                  FinalBlend("world2", "world1"),
                                  Closing(),
                                  DriverSuites()});
  EXPECT_EQ(test.Calls(), expected);
}

// Amount 10, feather 5: 2 x 0.05 = 10 / 100 in single precision, so that the lens stage stands in
// for pass 1.
TEST(CallSequenceTest, LensMappedFastBlurWithANarrowFeather) {
  DriverCase test;
  test.Set("fast-blur.amount", 10).Set("fast-blur.use-lens-as-blur-map", 1).Set("lens.feather", 5);
  EXPECT_EQ(test.Calls(), DefaultCalls());
}

// Chromatic aberration and a lens-mapped blur: the blend runs before the lens and after pass 1.
TEST(CallSequenceTest, FinalBlendRunsTwiceWithChromaticAberration) {
  DriverCase test;
  test.Set("fast-blur.amount", 10).Set("fast-blur.use-lens-as-blur-map", 1).Set("lens.feather", 10);
  test.Set("chromatic-aberration.red-cyan", 50);
  CallList tones = DefaultTones();
  tones.back() = "iterate8 world2 -> world1 rows 0..4";
  const CallList expected = Join({Opening(),
                                  PassZeroWithFastBlur(),
                                  tones,
                                  FinalBlend("world1", "world2"),
                                  LensStage("iterate8 world2 -> world1 rows 0..4"),
                                  {"copy world1 -> world2"},
                                  FastRound("world2", "world1", "world6"),
                                  FastRound("world1", "world2", "world7"),
                                  FastRound("world2", "world1", "world8"),
                                  {"copy world1 -> world2"},
                                  FinalBlend("world2", "world1"),
                                  Closing(),
                                  DriverSuites()});
  EXPECT_EQ(test.Calls(), expected);
}

// Pass 1 with the realistic blur alone: without the fast blur the copies are W2 -> W1 and W2 onto
// itself. In pass 0 it is a copy.
TEST(CallSequenceTest, KeepsTheSelfCopyOfALensMappedPassWithoutFastBlur) {
  DriverCase test;
  test.AllOff().Set("lens.type", 2).Set("realistic-blur.visible", 1);
  test.Set("realistic-blur.amount", 3).Set("realistic-blur.use-lens-as-blur-map", 1);
  const CallList calls = test.Calls();
  EXPECT_EQ(CallList(calls.begin() + 6, calls.begin() + 12), PassZeroOff());
  const CallList ending =
      Join({{"acquire_suite PF Iterate8 Suite 1", "iterate8 world1 -> world2 rows 0..4",
             "release_suite PF Iterate8 Suite 1", "copy world2 -> world1", "copy world2 -> world2"},
            FinalBlend("world2", "world1"),
            Closing(),
            {"release_suite PF World Suite 2", "release_suite PF Iterate8 Suite 1"}});
  ASSERT_GE(calls.size(), ending.size());
  EXPECT_EQ(CallList(calls.end() - static_cast<std::ptrdiff_t>(ending.size()), calls.end()),
            ending);
}

TEST(CallSequenceTest, TrailFillsIteratesSmoothsAndCopies) {
  DriverCase test;
  test.AllOff().Set("trail.visible", 1).Set("trail.amount", 50);
  const CallList calls = test.Calls();
  const CallList passZero =
      Join({{"copy world1 -> world2", "copy world2 -> world1", "copy world1 -> world2",
             "fill world1 0,0,0,0 in 0,0,6,4", "acquire_suite PF Iterate8 Suite 1",
             "iterate8 world2 -> world1 rows 0..4"},
            FastRound("world1", "world2", "world3"),
            {"release_suite PF Iterate8 Suite 1", "copy world1 -> world2", "copy world1 -> world2",
             "copy world2 -> world2", "copy world2 -> world1"}});
  EXPECT_EQ(
      CallList(calls.begin() + 6, calls.begin() + 6 + static_cast<std::ptrdiff_t>(passZero.size())),
      passZero);
}

TEST(CallSequenceTest, DistortionAndDirectionalBlurIterate) {
  DriverCase test;
  test.AllOff().Set("optical-distortion.visible", 1).Set("optical-distortion.amount", 60);
  test.Set("directional-blur.visible", 1).Set("directional-blur.amount", 2);
  const CallList calls = test.Calls();
  const CallList passZero = {"copy world1 -> world2",
                             "copy world2 -> world1",
                             "acquire_suite PF Iterate8 Suite 1",
                             "iterate8 world1 -> world2 rows 0..4",
                             "release_suite PF Iterate8 Suite 1",
                             "copy world2 -> world1",
                             "acquire_suite PF Iterate8 Suite 1",
                             "iterate8 world1 -> world2 rows 0..4",
                             "release_suite PF Iterate8 Suite 1",
                             "copy world2 -> world2"};
  EXPECT_EQ(CallList(calls.begin() + 6, calls.begin() + 16), passZero);
}

// Both blurs by the lens: pass 1 runs both engines, the realistic one from world1 into world2.
TEST(CallSequenceTest, BothMapsOn) {
  DriverCase test;
  test.Set("fast-blur.amount", 10).Set("fast-blur.use-lens-as-blur-map", 1).Set("lens.feather", 10);
  test.Set("realistic-blur.visible", 1).Set("realistic-blur.amount", 3);
  test.Set("realistic-blur.use-lens-as-blur-map", 1);
  const CallList expected =
      Join({Opening(),
            PassZeroWithFastBlur(),
            DefaultTones(),
            LensStage("iterate8 world2 -> world1 rows 0..4"),
            {"acquire_suite PF Iterate8 Suite 1", "iterate8 world1 -> world2 rows 0..4",
             "release_suite PF Iterate8 Suite 1"},
            FastRound("world2", "world1", "world6"),
            FastRound("world1", "world2", "world7"),
            FastRound("world2", "world1", "world8"),
            {"copy world1 -> world2"},
            FinalBlend("world2", "world1"),
            Closing(),
            DriverSuites()});
  EXPECT_EQ(test.Calls(), expected);
}

CallList CallsWithEverythingOn(bool deep) {
  DriverCase test(deep);
  for (const char* const group : {"realistic-blur", "optical-distortion", "trail",
                                  "directional-blur", "color", "chromatic-aberration"}) {
    test.Set(std::string(group) + ".visible", 1);
  }
  test.Set("realistic-blur.amount", 3).Set("optical-distortion.amount", 60);
  test.Set("trail.amount", 50).Set("directional-blur.amount", 2).Set("color.opacity", 50);
  test.Set("chromatic-aberration.red-cyan", 50);
  return test.Calls();
}

// Every stage that does not follow the lens, from the first to the last.
CallList EverythingOnCalls() {
  const CallList passZero =
      Join({{"fill world2 0,0,0,0 in 0,0,6,4"},  // Realistic blur, on the render thread.
            FastRound("world2", "world1", "world3"),
            FastRound("world1", "world2", "world4"),
            FastRound("world2", "world1", "world5"),
            {"acquire_suite PF Iterate8 Suite 1", "iterate8 world1 -> world2 rows 0..4",
             "release_suite PF Iterate8 Suite 1"},  // Distortion.
            {"fill world1 0,0,0,0 in 0,0,6,4", "acquire_suite PF Iterate8 Suite 1",
             "iterate8 world2 -> world1 rows 0..4"},  // Trail.
            FastRound("world1", "world2", "world6"),
            {"release_suite PF Iterate8 Suite 1", "copy world1 -> world2"},
            {"acquire_suite PF Iterate8 Suite 1", "iterate8 world1 -> world2 rows 0..4",
             "release_suite PF Iterate8 Suite 1"},  // Directional blur.
            {"copy world2 -> world2"}});
  const CallList tones = {"acquire_suite PF Iterate8 Suite 1",
                          "iterate8 world2 -> world1 rows 0..4",   // Lightness.
                          "iterate8 world1 -> world2 rows 0..4",   // Colour.
                          "iterate8 world2 -> world1 rows 0..4"};  // Chromatic aberration.
  return Join({Opening(), passZero, tones, FinalBlend("world1", "world2"),
               LensStage("iterate8 world2 -> world1 rows 0..4"), Closing(), DriverSuites()});
}

TEST(CallSequenceTest, EverythingOn) {
  EXPECT_EQ(CallsWithEverythingOn(false), EverythingOnCalls());
}

TEST(CallSequenceTest, EverythingOnIn16Bit) {
  EXPECT_EQ(CallsWithEverythingOn(true), Deep(EverythingOnCalls()));
}

// 8-bit working worlds in a 16-bit project: the copies convert, every pass is an 8-bit one.
TEST(CallSequenceTest, ShallowWorkingWorldsOfADeepRender) {
  DriverCase test(true);
  test.options.newWorldDepth = headless::NewWorldDepth::kEightBit;
  EXPECT_EQ(test.Calls(), DefaultCalls());
}

}  // namespace
}  // namespace vitrell
