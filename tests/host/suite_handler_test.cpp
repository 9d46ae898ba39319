// The suite handler: suites are acquired on first use, held, and released once and in order.
#include "host/suite_handler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/fake_host.h"

namespace vitrell {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What a call throws as an error code; 0 when it throws nothing.
template <typename Call>
PF_Err ThrownBy(const Call& call) {
  try {
    call();
  } catch (const PF_Err& thrown) {
    return thrown;
  }
  return PF_Err_NONE;
}

TEST(SuiteHandlerTest, AcquiresNothingByItself) {
  FakeHost host;
  { const AEGP_SuiteHandler suites(host.inData()->pica_basicP); }
  EXPECT_THAT(host.log, IsEmpty());
}

TEST(SuiteHandlerTest, AcquiresOnFirstUseAndKeeps) {
  FakeHost host;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  const PF_WorldSuite2* const first = suites.WorldSuite2();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(suites.WorldSuite2(), first);
  EXPECT_THAT(host.log, ElementsAre("acquire PF World Suite 2"));
}

TEST(SuiteHandlerTest, EveryAccessorAsksForItsNameAndVersion) {
  FakeHost host;
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  suites.ANSICallbacksSuite1();
  suites.ParamUtilsSuite3();
  suites.Iterate8Suite1();
  suites.Iterate16Suite1();
  suites.WorldSuite2();
  EXPECT_THAT(host.log, ElementsAre("acquire PF ANSI Suite 1", "acquire PF Param Utils Suite 3",
                                    "acquire PF Iterate8 Suite 1", "acquire PF iterate16 Suite 1",
                                    "acquire PF World Suite 2"));
}

TEST(SuiteHandlerTest, ReleasesInOrderOfAcquisition) {
  FakeHost host;
  {
    AEGP_SuiteHandler suites(host.inData()->pica_basicP);
    suites.WorldSuite2();
    suites.Iterate8Suite1();
    host.log.clear();
  }
  EXPECT_THAT(host.log, ElementsAre("release PF World Suite 2", "release PF Iterate8 Suite 1"));
}

TEST(SuiteHandlerTest, ForgetsWhatItReleased) {
  FakeHost host;
  {
    AEGP_SuiteHandler suites(host.inData()->pica_basicP);
    suites.WorldSuite2();
    suites.ReleaseAllSuites();
    suites.ReleaseAllSuites();
  }
  EXPECT_THAT(host.log, ElementsAre("acquire PF World Suite 2", "release PF World Suite 2"));
}

TEST(SuiteHandlerTest, AcquiresAnewAfterReleasing) {
  FakeHost host;
  {
    AEGP_SuiteHandler suites(host.inData()->pica_basicP);
    suites.WorldSuite2();
    suites.ReleaseAllSuites();
    suites.WorldSuite2();
  }
  EXPECT_THAT(host.log, ElementsAre("acquire PF World Suite 2", "release PF World Suite 2",
                                    "acquire PF World Suite 2", "release PF World Suite 2"));
}

TEST(SuiteHandlerTest, NullBasicSuiteThrows516) {
  EXPECT_EQ(ThrownBy([] { const AEGP_SuiteHandler suites(nullptr); }), 516);
}

TEST(SuiteHandlerTest, RefusedSuiteThrows516AndReleasesOnlyWhatIsHeld) {
  FakeHost host;
  host.refusedSuites = {kPFIterate8Suite};
  EXPECT_EQ(ThrownBy([&] {
              AEGP_SuiteHandler suites(host.inData()->pica_basicP);
              suites.WorldSuite2();
              suites.Iterate8Suite1();
            }),
            516);
  EXPECT_THAT(host.log, ElementsAre("acquire PF World Suite 2", "acquire PF Iterate8 Suite 1",
                                    "release PF World Suite 2"));
}

TEST(SuiteHandlerTest, SuiteAnsweredAsNullThrows516) {
  FakeHost host;
  host.nullSuites = {kPFWorldSuite};
  AEGP_SuiteHandler suites(host.inData()->pica_basicP);
  EXPECT_EQ(ThrownBy([&] { suites.WorldSuite2(); }), 516);
}

TEST(SuiteHandlerTest, MissingSuiteErrorIsAPlainInteger) {
  EXPECT_EQ(ThrownBy([] { AEGP_SuiteHandler::MissingSuiteError(); }), PF_Err_BAD_CALLBACK_PARAM);
}

}  // namespace
}  // namespace vitrell
