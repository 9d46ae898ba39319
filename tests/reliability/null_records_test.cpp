// Null pointers wherever a host could pass them.
#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "headless/effect_module.h"
#include "reliability/guarded_cases.h"
#include "reliability/raw_host.h"
#include "shell/parameters.h"

namespace vitrell::reliability {
namespace {

const headless::EffectModule& Module() {
  static const headless::EffectModule module{std::filesystem::path(VITRELL_MODULE_PATH)};
  return module;
}

// What a case takes away, and what each command then answers.
struct Missing {
  std::string name;
  std::function<void(RawHost&)> takeAway;
  std::vector<PF_Cmd> neededBy;
};

const std::vector<PF_Cmd> kEveryCommand = {PF_Cmd_ABOUT,
                                           PF_Cmd_GLOBAL_SETUP,
                                           PF_Cmd_GLOBAL_SETDOWN,
                                           PF_Cmd_PARAMS_SETUP,
                                           PF_Cmd_SEQUENCE_SETUP,
                                           PF_Cmd_SEQUENCE_SETDOWN,
                                           PF_Cmd_FRAME_SETUP,
                                           PF_Cmd_RENDER,
                                           PF_Cmd_FRAME_SETDOWN,
                                           15,
                                           PF_Cmd_USER_CHANGED_PARAM,
                                           PF_Cmd_UPDATE_PARAMS_UI,
                                           PF_Cmd_SMART_RENDER,
                                           99};

const std::vector<PF_Cmd> kRender = {PF_Cmd_RENDER};
const std::vector<PF_Cmd> kPanel = {PF_Cmd_USER_CHANGED_PARAM, PF_Cmd_UPDATE_PARAMS_UI};
const std::vector<PF_Cmd> kRenderAndPanel = {PF_Cmd_RENDER, PF_Cmd_USER_CHANGED_PARAM,
                                             PF_Cmd_UPDATE_PARAMS_UI};
const std::vector<PF_Cmd> kSetup = {PF_Cmd_PARAMS_SETUP};
const std::vector<PF_Cmd> kNone = {};

// Every stage is on, so that everything is needed.
void SwitchAllOn(RawHost& host) {
  host.Param(PARAM_TYPE).u.pd.value = 5;
  host.Param(PARAM_FEATHER).u.fs_d.value = 50;
  for (const int index : {PARAM_FAST_AMOUNT, PARAM_REALISTIC_AMOUNT, PARAM_OPTICAL_AMOUNT,
                          PARAM_TRAIL_AMOUNT, PARAM_DIRECTIONAL_AMOUNT}) {
    host.Param(index).u.fs_d.value = 3;
  }
}

std::vector<Missing> Tables() {
  return {
      {"nothing", [](RawHost&) {}, kNone},
      {"input record",
       [](RawHost& host) { host.inPointer = nullptr; },
       {PF_Cmd_ABOUT, PF_Cmd_PARAMS_SETUP, PF_Cmd_RENDER, PF_Cmd_USER_CHANGED_PARAM,
        PF_Cmd_UPDATE_PARAMS_UI}},
      {"output record",
       [](RawHost& host) { host.outPointer = nullptr; },
       {PF_Cmd_ABOUT, PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP}},
      {"parameters", [](RawHost& host) { host.paramsPointer = nullptr; }, kRenderAndPanel},
      {"output world", [](RawHost& host) { host.output = nullptr; }, kRender},
      {"utility callbacks",
       [](RawHost& host) { host.in.utils = nullptr; },
       {PF_Cmd_PARAMS_SETUP, PF_Cmd_RENDER}},
      {"basic suite",
       [](RawHost& host) { host.in.pica_basicP = nullptr; },
       {PF_Cmd_ABOUT, PF_Cmd_RENDER, PF_Cmd_USER_CHANGED_PARAM, PF_Cmd_UPDATE_PARAMS_UI}},
      {"AcquireSuite",
       [](RawHost& host) { host.basic.AcquireSuite = nullptr; },
       {PF_Cmd_ABOUT, PF_Cmd_RENDER, PF_Cmd_USER_CHANGED_PARAM, PF_Cmd_UPDATE_PARAMS_UI}},
      {"ReleaseSuite",
       [](RawHost& host) { host.basic.ReleaseSuite = nullptr; },
       {PF_Cmd_ABOUT, PF_Cmd_RENDER, PF_Cmd_USER_CHANGED_PARAM, PF_Cmd_UPDATE_PARAMS_UI}},
  };
}

std::vector<Missing> Callbacks() {
  return {
      {"add_param", [](RawHost& host) { host.in.inter.add_param = nullptr; }, kSetup},
      {"checkout_param", [](RawHost& host) { host.in.inter.checkout_param = nullptr; }, kRender},
      {"checkin_param", [](RawHost& host) { host.in.inter.checkin_param = nullptr; }, kRender},
      {"abort", [](RawHost& host) { host.in.inter.abort = nullptr; }, kRender},
      {"new_world", [](RawHost& host) { host.utils.new_world = nullptr; }, kRender},
      {"dispose_world", [](RawHost& host) { host.utils.dispose_world = nullptr; }, kRender},
      {"copy", [](RawHost& host) { host.utils.copy = nullptr; }, kRender},
      {"fill", [](RawHost& host) { host.utils.fill = nullptr; }, kRender},
      {"fill16", [](RawHost& host) { host.utils.fill16 = nullptr; }, kNone},
      {"strcpy", [](RawHost& host) { host.utils.ansi.strcpy = nullptr; }, kSetup},
      {"sin", [](RawHost& host) { host.utils.ansi.sin = nullptr; }, kRender},
      {"cos", [](RawHost& host) { host.utils.ansi.cos = nullptr; }, kRender},
      {"tan", [](RawHost& host) { host.utils.ansi.tan = nullptr; }, kRender},
      {"atan", [](RawHost& host) { host.utils.ansi.atan = nullptr; }, kRender},
      {"sqrt", [](RawHost& host) { host.utils.ansi.sqrt = nullptr; }, kRender},
      {"pow", [](RawHost& host) { host.utils.ansi.pow = nullptr; }, kRender},
      {"sprintf", [](RawHost& host) { host.ansiSuite.sprintf = nullptr; }, {PF_Cmd_ABOUT}},
      {"PF_UpdateParamUI", [](RawHost& host) { host.paramUtilsSuite.PF_UpdateParamUI = nullptr; },
       kPanel},
      {"8-bit iterate", [](RawHost& host) { host.iterate8Suite.iterate = nullptr; }, kRender},
      {"16-bit iterate", [](RawHost& host) { host.iterate16Suite.iterate = nullptr; }, kNone},
      {"PF_GetPixelFormat", [](RawHost& host) { host.worldSuite.PF_GetPixelFormat = nullptr; },
       kRender},
  };
}

// Groups and the custom layer are never read by a render; the panel reads thirteen.
std::vector<Missing> Parameters() {
  std::vector<Missing> all;
  for (const ParameterRow& row : kParameterTable) {
    const int index = row.index;
    const bool isGroup = row.type == PF_Param_GROUP_START || row.type == PF_Param_GROUP_END;
    std::vector<PF_Cmd> neededBy;
    if (!isGroup && index != 3) neededBy.push_back(PF_Cmd_RENDER);
    for (const int shown : {2, 3, 4, 5, 6, 8, 9, 10, 11, 31, 32, 37, 38}) {
      if (index == shown) neededBy.insert(neededBy.end(), kPanel.begin(), kPanel.end());
    }
    all.push_back(
        {"parameter " + std::to_string(index),
         [index](RawHost& host) { host.params[static_cast<std::size_t>(index)] = nullptr; },
         neededBy});
  }
  return all;
}

void ExpectAnswers(const std::vector<Missing>& missing) {
  std::vector<GuardedCase> cases;
  for (const Missing& one : missing) {
    for (const PF_Cmd cmd : kEveryCommand) {
      const bool needed =
          std::find(one.neededBy.begin(), one.neededBy.end(), cmd) != one.neededBy.end();
      cases.push_back(
          {"command " + std::to_string(cmd) + " without " + one.name, [one, cmd, needed] {
             RawHost host(Module().EntryPoint(), {});
             SwitchAllOn(host);
             const std::uint64_t before = host.OutputChecksum();
             one.takeAway(host);
             const PF_Err error = host.Send(cmd);
             std::string complaint = host.Outstanding();
             if (error != (needed ? PF_Err_BAD_CALLBACK_PARAM : PF_Err_NONE)) {
               complaint += " answers " + std::to_string(error);
             }
             if (error != 0 && host.OutputChecksum() != before) {
               complaint += " changed the output";
             }
             return complaint;
           }});
    }
  }
  EXPECT_EQ(RunGuarded(cases), std::vector<std::string>());
  std::cout << cases.size() << " commands with something missing" << std::endl;
}

TEST(NullRecordsTest, RecordsAndTables) { ExpectAnswers(Tables()); }
TEST(NullRecordsTest, CallbacksAndSuiteFunctions) { ExpectAnswers(Callbacks()); }
TEST(NullRecordsTest, Parameters) { ExpectAnswers(Parameters()); }

// A stage that is off needs no maths.
TEST(NullRecordsTest, MathsOfStagesThatAreOff) {
  RawHost host(Module().EntryPoint(), {});
  host.Param(PARAM_LIGHTNESS_VISIBLE).u.bd.value = 0;
  host.utils.ansi.tan = nullptr;
  host.utils.ansi.atan = nullptr;
  host.utils.ansi.pow = nullptr;
  host.utils.fill = nullptr;
  EXPECT_EQ(host.Render(), PF_Err_NONE);
}

}  // namespace
}  // namespace vitrell::reliability
