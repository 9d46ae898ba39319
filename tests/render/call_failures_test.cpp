// Each host call of a render fails in turn: its code is returned or ignored as specified,
// everything is released, and the next render is exact.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "render/driver_case.h"

namespace vitrell {
namespace {

using headless::CallKind;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr PF_Err kCode = 777;
constexpr PF_Err kMissingSuite = 516;
constexpr PF_Err kIgnored = 0;

// What a render answers when this call fails.
struct Step {
  const char* call;
  PF_Err answer;
};

// A default render, call by call.
constexpr Step kDefaultRender[] = {
    {"checkout_param 3 time 0 step 1 scale 30", kIgnored},
    {"abort", kIgnored},
    {"checkin_param 3", kCode},
    {"new_world world1 6x4 flags 0", kCode},
    {"new_world world2 6x4 flags 0", kCode},
    {"copy input -> world1", kCode},
    {"copy world1 -> world2", kCode},
    // The first two rounds of the fast blur are ignored.
    {"new_world world3 6x4 flags 0", kIgnored},
    {"copy world2 -> world3", kIgnored},
    {"acquire_suite PF Iterate8 Suite 1", kMissingSuite},
    {"iterate8 world2 -> world1 rows 0..4", kIgnored},
    {"iterate8 world1 -> world2 rows 0..4", kIgnored},
    {"copy world2 -> world1", kIgnored},
    {"dispose_world world3", kIgnored},
    {"release_suite PF Iterate8 Suite 1", kIgnored},
    {"new_world world4 6x4 flags 0", kIgnored},
    {"copy world1 -> world4", kIgnored},
    {"acquire_suite PF Iterate8 Suite 1", kMissingSuite},
    {"iterate8 world1 -> world2 rows 0..4", kIgnored},
    {"iterate8 world2 -> world1 rows 0..4", kIgnored},
    {"copy world1 -> world2", kIgnored},
    {"dispose_world world4", kIgnored},
    {"release_suite PF Iterate8 Suite 1", kIgnored},
    // Of the third, the temporary copy and the horizontal pass.
    {"new_world world5 6x4 flags 0", kCode},
    {"copy world2 -> world5", kIgnored},
    {"acquire_suite PF Iterate8 Suite 1", kMissingSuite},
    {"iterate8 world2 -> world1 rows 0..4", kIgnored},
    {"iterate8 world1 -> world2 rows 0..4", kCode},
    {"copy world2 -> world1", kCode},
    {"dispose_world world5", kIgnored},
    {"release_suite PF Iterate8 Suite 1", kIgnored},
    {"copy world1 -> world2", kIgnored},  // Stands for the distortion.
    {"copy world2 -> world1", kCode},
    {"copy world1 -> world2", kCode},
    {"copy world2 -> world2", kCode},
    // Tones.
    {"acquire_suite PF Iterate8 Suite 1", kMissingSuite},
    {"iterate8 world2 -> world1 rows 0..4", kCode},
    {"copy world1 -> world2", kCode},
    {"copy world2 -> world1", kCode},
    // Failures of the final blend are not reported.
    {"acquire_suite PF World Suite 2", kMissingSuite},
    {"get_pixel_format input", kIgnored},
    {"release_suite PF World Suite 2", kIgnored},
    {"acquire_suite PF Iterate8 Suite 1", kMissingSuite},
    {"iterate8 world1 -> world2 rows 0..4", kIgnored},
    {"release_suite PF Iterate8 Suite 1", kIgnored},
    // Lens stage, output, clean-up.
    {"acquire_suite PF World Suite 2", kMissingSuite},
    {"get_pixel_format input", kCode},
    {"iterate8 world2 -> world1 rows 0..4", kCode},
    {"copy world1 -> output", kCode},
    {"dispose_world world1", kIgnored},
    {"dispose_world world2", kIgnored},
    {"release_suite PF Iterate8 Suite 1", kIgnored},
    {"release_suite PF World Suite 2", kIgnored},
};

// Everything is released, except that an abort request deliberately leaves the parameter checked
// out.
std::vector<std::string> Complaints(const std::string& failed) {
  if (failed == "abort") {
    return {"During RENDER the effect did not check in parameter 3."};
  }
  return {};
}

TEST(CallFailureTest, EveryCallOfADefaultRender) {
  DriverCase test;
  const headless::WorldBuffer exact = test.Picture();
  int n = 0;
  for (const Step& step : kDefaultRender) {
    SCOPED_TRACE("call " + std::to_string(++n) + ": " + step.call);
    test.host().GetFaults().FailNth(CallKind::kAny, n, kCode);
    const headless::RenderResult failed = test.Render();
    EXPECT_EQ(failed.error, step.answer);
    EXPECT_EQ(failed.complaints, Complaints(step.call));
    const std::string text = failed.calls.at(static_cast<std::size_t>(n) - 1).text;
    const std::string name = std::string(step.call).substr(0, std::string(step.call).find(' '));
    EXPECT_EQ(text.substr(0, name.size()), name);
    test.host().GetFaults().Clear();
    EXPECT_TRUE(headless::SamePixels(exact, test.Picture()));
  }
  EXPECT_EQ(test.Calls().size(), std::size(kDefaultRender));
}

// The same in 16 bits, where only the suites' and passes' names differ.
TEST(CallFailureTest, EveryCallOfADeepRender) {
  DriverCase test(true);
  const headless::WorldBuffer exact = test.Picture();
  int n = 0;
  for (const Step& step : kDefaultRender) {
    SCOPED_TRACE("call " + std::to_string(++n) + ": " + step.call);
    test.host().GetFaults().FailNth(CallKind::kAny, n, kCode);
    const headless::RenderResult failed = test.Render();
    EXPECT_EQ(failed.error, step.answer);
    EXPECT_EQ(failed.complaints, Complaints(step.call));
    test.host().GetFaults().Clear();
    EXPECT_TRUE(headless::SamePixels(exact, test.Picture()));
  }
}

// The calls of a render in which the nth call of a kind fails. Checks that everything is released.
CallList CallsWithFailure(DriverCase& test, CallKind kind, int n, PF_Err answer) {
  test.host().GetFaults().FailNth(kind, n, kCode);
  const headless::RenderResult result = test.Render();
  EXPECT_EQ(result.error, answer);
  EXPECT_THAT(result.complaints, IsEmpty());
  test.host().GetFaults().Clear();
  return headless::CallTexts(result.calls);
}

// --- The custom layer ---

// Without an abort request and a check-in: the render goes on without a custom image.
TEST(CallFailureTest, FailingCheckoutMeansNoCustomImage) {
  DriverCase test;
  test.AllOff().SetCustomLayer(0);
  const headless::WorldBuffer withImage = test.Picture();
  const CallList calls = CallsWithFailure(test, CallKind::kCheckoutParam, 1, PF_Err_NONE);
  EXPECT_EQ(calls[0], "checkout_param 3 time 0 step 1 scale 30 fails with 777");
  EXPECT_EQ(calls[1], "new_world world1 6x4 flags 0");
  // Without an image there is no lens: the unprocessed image everywhere.
  EXPECT_TRUE(headless::SamePixels(test.output(), test.input()));
  EXPECT_TRUE(headless::SamePixels(test.Picture(), withImage));
}

// It only skips the check-in; the copy is made all the same.
TEST(CallFailureTest, KeepsTheCustomLayerCheckedOutAfterAnAbortRequest) {
  DriverCase test;
  test.AllOff().SetCustomLayer(0);
  const headless::WorldBuffer exact = test.Picture();
  test.host().GetFaults().FailNth(CallKind::kAbort, 1, 517);
  const headless::RenderResult result = test.Render();
  EXPECT_EQ(result.error, PF_Err_NONE);
  EXPECT_TRUE(headless::SamePixels(test.output(), exact));
  const CallList calls = headless::CallTexts(result.calls);
  EXPECT_EQ(calls[1], "abort fails with 517");
  EXPECT_EQ(calls[2], "new_world world1 9x5 flags 0");
  EXPECT_EQ(calls[3], "copy custom -> world1");
  EXPECT_EQ(calls[4], "new_world world2 6x4 flags 0");
  EXPECT_THAT(result.complaints,
              ElementsAre("During RENDER the effect did not check in parameter 3."));
}

TEST(CallFailureTest, FailingCustomWorldEndsTheRenderAfterTheCheckIn) {
  for (const auto record :
       {headless::FailedWorldRecord::kCleared, headless::FailedWorldRecord::kJunk}) {
    DriverCase test;
    test.SetCustomLayer(0);
    test.host().GetFaults().SetFailedWorldRecord(record);
    EXPECT_THAT(CallsWithFailure(test, CallKind::kNewWorld, 1, kCode),
                ElementsAre("checkout_param 3 time 0 step 1 scale 30", "abort",
                            "new_world 9x5 flags 0 fails with 777", "checkin_param 3"));
  }
}

TEST(CallFailureTest, FailingCustomCopyEndsTheRenderAfterTheCheckIn) {
  DriverCase test;
  test.SetCustomLayer(0);
  EXPECT_THAT(CallsWithFailure(test, CallKind::kCopy, 1, kCode),
              ElementsAre("checkout_param 3 time 0 step 1 scale 30", "abort",
                          "new_world world1 9x5 flags 0", "copy custom -> world1 fails with 777",
                          "checkin_param 3", "dispose_world world1"));
}

TEST(CallFailureTest, FailingCustomCopyUnderAnAbortRequest) {
  DriverCase test;
  test.SetCustomLayer(0);
  test.host().GetFaults().FailNth(CallKind::kAbort, 1, 517);
  test.host().GetFaults().FailNth(CallKind::kCopy, 1, kCode);
  const headless::RenderResult result = test.Render();
  EXPECT_EQ(result.error, kCode);
  EXPECT_THAT(headless::CallTexts(result.calls),
              ElementsAre("checkout_param 3 time 0 step 1 scale 30", "abort fails with 517",
                          "new_world world1 9x5 flags 0", "copy custom -> world1 fails with 777",
                          "dispose_world world1"));
}

// --- The working worlds and the first copy ---

TEST(CallFailureTest, FailingWorldA) {
  for (const auto record :
       {headless::FailedWorldRecord::kCleared, headless::FailedWorldRecord::kJunk}) {
    DriverCase test;
    test.host().GetFaults().SetFailedWorldRecord(record);
    EXPECT_THAT(CallsWithFailure(test, CallKind::kNewWorld, 1, kCode),
                ElementsAre("checkout_param 3 time 0 step 1 scale 30", "abort", "checkin_param 3",
                            "new_world 6x4 flags 0 fails with 777"));
    test.Picture();
  }
}

TEST(CallFailureTest, FailingWorldBDisposesOfA) {
  for (const auto record :
       {headless::FailedWorldRecord::kCleared, headless::FailedWorldRecord::kJunk}) {
    DriverCase test;
    test.host().GetFaults().SetFailedWorldRecord(record);
    EXPECT_THAT(CallsWithFailure(test, CallKind::kNewWorld, 2, kCode),
                ElementsAre("checkout_param 3 time 0 step 1 scale 30", "abort", "checkin_param 3",
                            "new_world world1 6x4 flags 0", "new_world 6x4 flags 0 fails with 777",
                            "dispose_world world1"));
    test.Picture();
  }
}

TEST(CallFailureTest, FailingFirstCopyDisposesOfAllWorlds) {
  DriverCase test;
  test.SetCustomLayer(0);
  EXPECT_THAT(CallsWithFailure(test, CallKind::kCopy, 2, kCode),
              ElementsAre("checkout_param 3 time 0 step 1 scale 30", "abort",
                          "new_world world1 9x5 flags 0", "copy custom -> world1",
                          "checkin_param 3", "new_world world2 6x4 flags 0",
                          "new_world world3 6x4 flags 0", "copy input -> world2 fails with 777",
                          "dispose_world world2", "dispose_world world3", "dispose_world world1"));
}

// The failures leave the output alone, also twice in a row.
TEST(CallFailureTest, EarlyFailuresInARowThenAnExactRender) {
  DriverCase test;
  const headless::WorldBuffer exact = test.Picture();
  for (int i = 0; i < 3; ++i) {
    CallsWithFailure(test, CallKind::kNewWorld, 1 + i % 2, kCode);
    headless::WorldBuffer poison = exact;
    poison.FillBytes(0xA5);
    EXPECT_TRUE(headless::SamePixels(test.output(), poison));
    CallsWithFailure(test, CallKind::kCopy, 1, kCode);
  }
  EXPECT_TRUE(headless::SamePixels(exact, test.Picture()));
}

// --- Missing suites ---

TEST(CallFailureTest, NullBasicSuiteAnswers516BeforeAnyHostCall) {
  DriverCase test;
  test.host().GetFaults().SetNullBasicSuite(true);
  const headless::RenderResult result = test.Render();
  EXPECT_EQ(result.error, kMissingSuite);
  EXPECT_EQ(result.message, "");
  EXPECT_THAT(headless::CallTexts(result.calls), IsEmpty());
  test.host().GetFaults().Clear();
  test.Picture();
}

TEST(CallFailureTest, EachMissingSuiteAnswers516AndGivesEverythingBack) {
  for (const bool deep : {false, true}) {
    DriverCase test(deep);
    test.SetCustomLayer(deep ? PF_WorldFlag_DEEP : 0);
    const headless::WorldBuffer exact = test.Picture();
    for (const char* const suite :
         {"PF World Suite", deep ? "PF iterate16 Suite" : "PF Iterate8 Suite"}) {
      test.host().GetFaults().RefuseSuite(suite);
      const headless::RenderResult result = test.Render();
      EXPECT_EQ(result.error, kMissingSuite) << suite;
      EXPECT_EQ(result.message, "");
      EXPECT_THAT(result.complaints, IsEmpty()) << suite;
      test.host().GetFaults().Clear();
      EXPECT_TRUE(headless::SamePixels(exact, test.Picture()));
    }
  }
}

// --- Later stages ---

TEST(CallFailureTest, FailingFillEndsTheTrail) {
  DriverCase test;
  test.AllOff().Set("trail.visible", 1).Set("trail.amount", 50);
  const CallList calls = CallsWithFailure(test, CallKind::kFill, 1, kCode);
  EXPECT_EQ(CallList(calls.end() - 3, calls.end()),
            CallList({"fill world1 0,0,0,0 in 0,0,6,4 fails with 777", "dispose_world world1",
                      "dispose_world world2"}));
}

TEST(CallFailureTest, KeepsTheTrailsOwnIterationIgnored) {
  DriverCase test;
  test.AllOff().Set("trail.visible", 1).Set("trail.amount", 50);
  CallsWithFailure(test, CallKind::kIterate8, 1, PF_Err_NONE);
  CallsWithFailure(test, CallKind::kIterate8, 2, PF_Err_NONE);  // Horizontal pass.
  CallsWithFailure(test, CallKind::kIterate8, 3, kCode);        // Vertical pass.
}

TEST(CallFailureTest, FailingDistortionAndDirectionalPasses) {
  DriverCase test;
  test.AllOff().Set("optical-distortion.visible", 1).Set("optical-distortion.amount", 60);
  test.Set("directional-blur.visible", 1).Set("directional-blur.amount", 2);
  const CallList first = CallsWithFailure(test, CallKind::kIterate8, 1, kCode);
  EXPECT_EQ(CallList(first.end() - 4, first.end()),
            CallList({"iterate8 world1 -> world2 rows 0..4 fails with 777",
                      "release_suite PF Iterate8 Suite 1", "dispose_world world1",
                      "dispose_world world2"}));
  CallsWithFailure(test, CallKind::kIterate8, 2, kCode);
}

TEST(CallFailureTest, FailingColourAndChromaticPasses) {
  DriverCase test;
  test.AllOff().Set("color.visible", 1).Set("color.opacity", 50);
  test.Set("chromatic-aberration.visible", 1).Set("chromatic-aberration.blue-yellow", 50);
  CallsWithFailure(test, CallKind::kIterate8, 1, kCode);
  CallsWithFailure(test, CallKind::kIterate8, 2, kCode);
  CallsWithFailure(test, CallKind::kIterate8, 3, PF_Err_NONE);  // The final blend.
}

// Copy W1 -> W2 stays pending while W2 -> W1 is made; the earlier code wins.
TEST(CallFailureTest, KeepsTheSecondCopyUnderAPendingError) {
  DriverCase test;
  test.AllOff();
  test.host().GetFaults().FailNth(CallKind::kCopy, 3, 888);
  const CallList calls = CallsWithFailure(test, CallKind::kCopy, 2, kCode);
  EXPECT_EQ(
      CallList(calls.end() - 4, calls.end()),
      CallList({"copy world1 -> world2 fails with 777", "copy world2 -> world1 fails with 888",
                "dispose_world world1", "dispose_world world2"}));
}

}  // namespace
}  // namespace vitrell
