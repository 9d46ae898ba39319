// Commands sent to the module itself, through the host that loads it.
#include "shell/entry_point.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "headless/effect_host.h"
#include "shell/strings.h"

namespace vitrell {
namespace {

using headless::CallKind;
using headless::EffectHost;
using testing::ElementsAre;
using testing::IsEmpty;

std::shared_ptr<const headless::EffectModule> Module() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

// Every byte of the record differs from what the effect could write; the message reads as empty,
// which the host sees to before each command.
PF_OutData PoisonedOutData() {
  PF_OutData out;
  std::memset(&out, 0x6B, sizeof(out));
  out.return_msg[0] = '\0';
  return out;
}

bool SameBytes(const PF_OutData& a, const PF_OutData& b) {
  return std::memcmp(&a, &b, sizeof(a)) == 0;
}

class EntryPointTest : public testing::Test {
 protected:
  EntryPointTest() : host_(Module(), EffectHost::Setup::kSkip) {
    host_.OutData() = PoisonedOutData();
  }
  std::vector<std::string> Calls() { return headless::CallTexts(host_.Calls()); }

  EffectHost host_;
};

TEST_F(EntryPointTest, OtherCommandsDoNothing) {
  std::vector<PF_Cmd> commands = {-1, 2, 3, 5, 6, 7, 8, 9, 10, 12, 0x7FFFFFFF};
  for (PF_Cmd cmd = 15; cmd <= 40; ++cmd) {
    commands.push_back(cmd);
  }
  for (const PF_Cmd cmd : commands) {
    EXPECT_EQ(host_.Send(cmd), PF_Err_NONE) << cmd;
    EXPECT_TRUE(SameBytes(host_.OutData(), PoisonedOutData())) << cmd;
    EXPECT_THAT(Calls(), IsEmpty()) << cmd;
  }
  EXPECT_THAT(host_.Complaints(), IsEmpty());
}

TEST_F(EntryPointTest, GlobalSetupWritesThreeFieldsAndNothingElse) {
  for (const bool withoutSuites : {false, true}) {
    host_.OutData() = PoisonedOutData();
    host_.GetFaults().SetNullBasicSuite(withoutSuites);
    EXPECT_EQ(host_.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
    PF_OutData expected = PoisonedOutData();
    expected.my_version = 0x82801;    // 1.0.5, develop, build 1: 1 << 19 | 5 << 11 | 1.
    expected.out_flags = 0x2000400;   // Bits 25 and 10.
    expected.out_flags2 = 0x8000008;  // Bits 27 and 3.
    EXPECT_EQ(host_.OutData().my_version, expected.my_version);
    EXPECT_EQ(host_.OutData().out_flags, expected.out_flags);
    EXPECT_EQ(host_.OutData().out_flags2, expected.out_flags2);
    EXPECT_TRUE(SameBytes(host_.OutData(), expected));
    EXPECT_THAT(Calls(), IsEmpty());
  }
}

TEST_F(EntryPointTest, KeepsTheStageDevelop) {
  ASSERT_EQ(host_.Send(PF_Cmd_GLOBAL_SETUP), PF_Err_NONE);
  EXPECT_EQ(host_.OutData().my_version >> 9U & 3U, 0U);
}

TEST_F(EntryPointTest, AboutJoinsNameAndTextByACarriageReturn) {
  EXPECT_EQ(host_.Send(PF_Cmd_ABOUT), PF_Err_NONE);
  const std::string text = host_.OutData().return_msg;
  EXPECT_EQ(text, std::string("Vitrell\r") + GetStringPtr(2));
  EXPECT_EQ(text.substr(0, 22), "Vitrell\rVersion 1.0.5\n");
  EXPECT_LT(text.size(), 256U);
  EXPECT_THAT(Calls(),
              ElementsAre("acquire_suite PF ANSI Suite 1", "release_suite PF ANSI Suite 1"));
  EXPECT_THAT(host_.Complaints(), IsEmpty());
}

TEST_F(EntryPointTest, AboutWithoutSuitesAnswers516AndWritesNothing) {
  host_.GetFaults().SetNullBasicSuite(true);
  EXPECT_EQ(host_.Send(PF_Cmd_ABOUT), 516);
  EXPECT_TRUE(SameBytes(host_.OutData(), PoisonedOutData()));
  EXPECT_THAT(Calls(), IsEmpty());

  host_.GetFaults().Clear();
  host_.GetFaults().RefuseSuite("PF ANSI Suite", 1);
  EXPECT_EQ(host_.Send(PF_Cmd_ABOUT), 516);
  EXPECT_TRUE(SameBytes(host_.OutData(), PoisonedOutData()));
  EXPECT_EQ(Calls().size(), 1U);  // The refused acquisition; nothing is released.
  EXPECT_THAT(host_.Complaints(), IsEmpty());
}

TEST_F(EntryPointTest, ParamsSetupRegistersAndCounts) {
  EXPECT_EQ(host_.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
  PF_OutData expected = PoisonedOutData();
  expected.num_params = 65;
  EXPECT_TRUE(SameBytes(host_.OutData(), expected));
  EXPECT_EQ(host_.Parameters().size(), 65U);
  const std::vector<std::string> calls = Calls();
  ASSERT_EQ(calls.size(), 64U);
  EXPECT_EQ(calls[0], "add_param -1 id 1 \"I. LENS\"");
  EXPECT_EQ(calls[24], "add_param -1 id 23 \"Iris Rotation\"");
  EXPECT_EQ(calls[63], "add_param -1 id 64 \"MODE\"");
}

TEST(EntryPointFailureTest, ParamsSetupStopsAtEveryFailingAddParam) {
  for (int n = 1; n <= 64; ++n) {
    EffectHost host(Module(), EffectHost::Setup::kSkip);
    host.OutData() = PoisonedOutData();
    host.GetFaults().FailNth(CallKind::kAddParam, n, 500 + n);
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), 500 + n);
    EXPECT_EQ(headless::CountCalls(host.Calls(), CallKind::kAny), n);
    EXPECT_EQ(host.Parameters().size(), static_cast<std::size_t>(n));  // With the input layer.
    EXPECT_TRUE(SameBytes(host.OutData(), PoisonedOutData())) << n;
    EXPECT_THAT(host.Complaints(), IsEmpty());
  }
}

TEST(EntryPointFailureTest, PanelCommandsIgnoreFailingUpdates) {
  for (const bool userChange : {false, true}) {
    EffectHost host(Module());
    for (int n = 1; n <= 100; ++n) {
      host.GetFaults().FailNth(CallKind::kUpdateParamUI, n, 512);
    }
    EXPECT_EQ(userChange ? host.UserChangedParam(2) : host.UpdatePanel(), PF_Err_NONE);
    EXPECT_GT(headless::CountCalls(host.Calls(), CallKind::kUpdateParamUI), 0);
    EXPECT_THAT(host.Complaints(), IsEmpty());
  }
}

TEST(EntryPointFailureTest, PanelCommandsWithoutTheirSuiteAnswer516) {
  EffectHost host(Module());
  host.GetFaults().RefuseSuite("PF Param Utils Suite", 3);
  EXPECT_EQ(host.UpdatePanel(), 516);
  EXPECT_EQ(host.UserChangedParam(17), 516);
  host.GetFaults().Clear();
  host.GetFaults().SetNullBasicSuite(true);
  EXPECT_EQ(host.UpdatePanel(), 516);
  EXPECT_THAT(host.Complaints(), IsEmpty());
}

TEST(EntryPointFailureTest, PanelCommandsSetNoOutputFlags) {
  EffectHost host(Module());
  const PF_OutFlags before = host.OutData().out_flags;
  EXPECT_EQ(host.UserChangedParam(2), PF_Err_NONE);
  EXPECT_EQ(host.OutData().out_flags, before);
  EXPECT_THAT(host.Complaints(), IsEmpty());
}

// A plain integer is an error code; anything else is not the dispatch's to catch.
TEST(DispatchTest, CatchesIntegersOnly) {
  PF_UtilCallbacks utils = {};
  utils.ansi.strcpy = [](A_char* to, const A_char* from) { return std::strcpy(to, from); };
  PF_InData inData = {};
  inData.utils = &utils;
  PF_OutData outData = {};
  inData.inter.add_param = [](PF_ProgPtr, PF_ParamIndex, PF_ParamDef*) -> PF_Err {
    throw PF_Err{519};
  };
  EXPECT_EQ(DispatchCommand(PF_Cmd_PARAMS_SETUP, &inData, &outData, nullptr, nullptr), 519);
  inData.inter.add_param = [](PF_ProgPtr, PF_ParamIndex, PF_ParamDef*) -> PF_Err {
    throw std::runtime_error("host");
  };
  EXPECT_THROW(DispatchCommand(PF_Cmd_PARAMS_SETUP, &inData, &outData, nullptr, nullptr),
               std::runtime_error);
}

}  // namespace
}  // namespace vitrell
