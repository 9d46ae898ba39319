// Command order, records, parameters and the panel.
#include "headless/effect_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "headless/fakes/fake_effect.h"

namespace vitrell::headless {
namespace {

using fakes::Acquire;
using fakes::Behaviour;
using fakes::Command;
using fakes::HostOf;
using fakes::Module;
using fakes::SetBehaviours;
using testing::ElementsAre;
using testing::HasSubstr;

template <typename Function>
std::string ErrorOf(const Function& function) {
  try {
    function();
  } catch (const HostError& error) {
    return error.what();
  }
  return "no error";
}

TEST(EffectHostTest, SendsCommandsInTheHostsOrder) {
  {
    const auto host = HostOf([](const Command&) { return PF_Err_NONE; });
    WorldBuffer input(4, 4, false), output(4, 4, false);
    EXPECT_TRUE(host->Render(input, output).Ok());
    EXPECT_THAT(host->Complaints(), ElementsAre());
  }
  EXPECT_THAT(fakes::Received(), ElementsAre(1, 4, 5, 10, 11, 12, 8, 3));
}

TEST(EffectHostTest, SkippedSetupSendsNothingByItself) {
  SetBehaviours({});
  {
    EffectHost host(Module(), EffectHost::Setup::kSkip);
    EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_NONE);
    EXPECT_EQ(host.OutData().num_params, 4);
    EXPECT_EQ(host.Parameters().size(), 4U);
    EXPECT_THAT(CallTexts(host.Calls()),
                ElementsAre("add_param -1 id 1 \"Amount\"", "add_param -1 id 2 \"Center\"",
                            "add_param -1 id 3 \"Map\""));
  }
  EXPECT_THAT(fakes::Received(), ElementsAre(4));
}

TEST(EffectHostTest, FailedRegistrationKeepsWhatWasRegistered) {
  SetBehaviours({});
  EffectHost host(Module(), EffectHost::Setup::kSkip);
  host.GetFaults().FailNth(CallKind::kAddParam, 2, 513);
  EXPECT_EQ(host.Send(PF_Cmd_PARAMS_SETUP), PF_Err_INVALID_INDEX);
  EXPECT_EQ(host.Parameters().size(), 2U);
  EXPECT_EQ(host.OutData().num_params, 0);
}

TEST(EffectHostTest, SetupErrorsAreToldInWholeSentences) {
  SetBehaviours({{PF_Cmd_GLOBAL_SETUP, [](const Command&) -> PF_Err { return 516; }}});
  EXPECT_EQ(ErrorOf([] { EffectHost host(Module()); }),
            "The effect the fake effect cannot be set up; its command GLOBAL_SETUP answers "
            "PF_Err_BAD_CALLBACK_PARAM (516): a host suite or callback that the effect needs is "
            "missing or was called wrongly.");
  SetBehaviours({{PF_Cmd_PARAMS_SETUP, [](const Command& command) -> PF_Err {
                    command.out->num_params = 9;
                    return 0;
                  }}});
  EXPECT_THAT(ErrorOf([] { EffectHost host(Module()); }),
              HasSubstr("tells of 9 parameters, but with the input layer there are 1"));
}

TEST(EffectHostTest, InputRecordIsFilledAsTheHostFillsIt) {
  PF_InData in{};
  PF_LayerDef input{}, output{};
  PF_ParamDef* end = nullptr;
  const auto host = HostOf([&](const Command& command) {
    in = *command.in;
    input = command.Input();
    output = *command.output;
    end = command.params[4];
    return PF_Err_NONE;
  });
  WorldBuffer source(8, 6, true), target(8, 6, true);
  source.SetExtentHint({1, 0, 8, 5});
  target.SetExtentHint({0, 2, 7, 6});
  RenderOptions options;
  options.currentTime = 5;
  options.timeStep = 3;
  options.totalTime = 100;
  options.timeScale = 24;
  options.downsampleX = {1, 2};
  EXPECT_TRUE(host->Render(source, target, nullptr, options).Ok());
  EXPECT_EQ(end, nullptr);
  EXPECT_EQ(in.num_params, 4);
  EXPECT_EQ(in.appl_id, 0x46585443);
  EXPECT_EQ(in.version.major, 13);
  EXPECT_GE(in.version.minor, 18);
  EXPECT_EQ(in.quality, PF_Quality_HI);
  EXPECT_EQ(in.current_time, 5);
  EXPECT_EQ(in.time_step, 3);
  EXPECT_EQ(in.total_time, 100);
  EXPECT_EQ(in.time_scale, 24U);
  EXPECT_EQ(in.width, 16);
  EXPECT_EQ(in.height, 6);
  EXPECT_EQ(in.extent_hint.left, 1);
  EXPECT_EQ(in.extent_hint.top, 2);
  EXPECT_EQ(in.extent_hint.right, 7);
  EXPECT_EQ(in.extent_hint.bottom, 5);
  EXPECT_EQ(in.downsample_x.den, 2U);
  EXPECT_EQ(in.pixel_aspect_ratio.den, 1U);
  EXPECT_EQ(input.data, static_cast<const void*>(source.Row(0)));
  EXPECT_EQ(input.world_flags, PF_WorldFlag_DEEP);
  EXPECT_EQ(input.extent_hint.left, 1);
  EXPECT_EQ(output.data, static_cast<const void*>(target.Row(0)));
  EXPECT_EQ(output.world_flags, PF_WorldFlag_DEEP | PF_WorldFlag_WRITEABLE);
}

TEST(EffectHostTest, ResultShowsTheInputRecordAsLeft) {
  const auto host = HostOf([](const Command& command) {
    command.Input().extent_hint = {0, 0, 3, 3};
    return PF_Err_NONE;
  });
  WorldBuffer input(4, 4, false), output(4, 4, false);
  input.SetExtentHint({1, 1, 3, 3});
  EXPECT_EQ(host->Render(input, output).inputRecord.extent_hint.left, 0);
  EXPECT_EQ(input.Def().extent_hint.left, 1);
}

// The values of the parameters at RENDER.
PF_ParamDef Seen(EffectHost& host, int index, std::int32_t width, std::int32_t height) {
  static PF_ParamDef seen;
  SetBehaviours({{PF_Cmd_RENDER, [index](const Command& command) -> PF_Err {
                    seen = *command.params[index];
                    return 0;
                  }}});
  WorldBuffer input(width, height, false), output(width, height, false);
  EXPECT_TRUE(host.Render(input, output).Ok());
  return seen;
}

TEST(EffectHostTest, PointsArePixelsAtRender) {
  const auto host = HostOf(nullptr);
  EXPECT_EQ(Seen(*host, 2, 11, 6).u.td.x_value, ToFixed(5.5));
  EXPECT_EQ(Seen(*host, 2, 11, 6).u.td.y_value, ToFixed(3));
  EXPECT_EQ(host->PercentOf(2)->x, 50);
  host->SetPointPercent(2, 25, 150);
  EXPECT_EQ(Seen(*host, 2, 8, 4).u.td.x_value, ToFixed(2));
  EXPECT_EQ(Seen(*host, 2, 8, 4).u.td.y_value, ToFixed(6));
  host->SetPointPixels(2, 1.25, -2);
  EXPECT_EQ(host->PercentOf(2), std::nullopt);
  EXPECT_EQ(Seen(*host, 2, 8, 4).u.td.x_value, 81920);
  EXPECT_EQ(Seen(*host, 2, 99, 4).u.td.y_value, -131072);
  host->ResetParameters();
  EXPECT_EQ(Seen(*host, 2, 8, 4).u.td.x_value, ToFixed(4));
  host->Record(2).u.td.x_value = 12345;
  EXPECT_EQ(Seen(*host, 2, 8, 4).u.td.x_value, 12345);
}

TEST(EffectHostTest, ValuesReachTheEffectAndAreReset) {
  const auto host = HostOf(nullptr);
  EXPECT_EQ(Seen(*host, 1, 4, 4).u.fs_d.value, 20);
  host->SetFloat(host->IndexOf("amount"), 1e9);
  EXPECT_EQ(Seen(*host, 1, 4, 4).u.fs_d.value, 1e9);
  host->ResetParameters();
  EXPECT_EQ(Seen(*host, 1, 4, 4).u.fs_d.value, 20);
  EXPECT_EQ(Seen(*host, 3, 4, 4).u.ld.data, nullptr);
}

TEST(EffectHostTest, WrongNamesIndicesAndTypesAreToldWithARemedy) {
  const auto host = HostOf(nullptr);
  EXPECT_EQ(ErrorOf([&] { (void)host->IndexOf("amonut"); }),
            "The effect has no parameter \"amonut\"; the nearest are amount, map, center.");
  EXPECT_EQ(host->Find("amonut"), std::nullopt);
  EXPECT_EQ(ErrorOf([&] { host->SetFloat(99, 1); }),
            "There is no parameter 99; the effect has 0 to 3.");
  EXPECT_EQ(ErrorOf([&] { host->SetPopup(1, 1); }),
            "Parameter amount is no choice; give it a value of its own kind.");
}

TEST(EffectHostTest, RefusesPicturesThatDoNotGoTogether) {
  const auto host = HostOf(nullptr);
  WorldBuffer narrow(4, 4, false), wide(4, 4, true);
  EXPECT_THAT(ErrorOf([&] { host->Render(narrow, wide); }), HasSubstr("different depths"));
  EXPECT_THAT(ErrorOf([&] { host->Render(narrow, narrow); }), HasSubstr("one world"));
}

TEST(EffectHostTest, FailedFrameSetupSkipsTheRest) {
  SetBehaviours({{PF_Cmd_FRAME_SETUP, [](const Command&) -> PF_Err { return 4; }}});
  EffectHost host(Module());
  WorldBuffer input(4, 4, false), output(4, 4, false);
  EXPECT_EQ(host.Render(input, output).error, PF_Err_OUT_OF_MEMORY);
  EXPECT_THAT(fakes::Received(), ElementsAre(1, 4, 5, 10));
}

PF_Err GreyAmount(const Command& command) {
  const auto* suite = Acquire<PF_ParamUtilsSuite3>(command, kPFParamUtilsSuite, 3);
  command.params[1]->ui_flags |= PF_PUI_DISABLED;
  command.params[1]->flags |= PF_ParamFlag_COLLAPSE_TWIRLY;
  command.params[2]->ui_flags |= PF_PUI_DISABLED;  // Never handed over: without effect.
  suite->PF_UpdateParamUI(command.Ref(), 1, command.params[1]);
  command.in->pica_basicP->ReleaseSuite(kPFParamUtilsSuite, 3);
  return PF_Err_NONE;
}

TEST(EffectHostTest, PanelCommandsUpdateFlagsThatAreHandedOver) {
  int changed = -1;
  SetBehaviours({{PF_Cmd_UPDATE_PARAMS_UI, GreyAmount},
                 {PF_Cmd_USER_CHANGED_PARAM, [&](const Command& command) -> PF_Err {
                    changed = static_cast<PF_UserChangedParamExtra*>(command.extra)->param_index;
                    EXPECT_EQ(command.params[1]->ui_flags, PF_PUI_DISABLED);
                    return 0;
                  }}});
  EffectHost host(Module());
  EXPECT_EQ(host.UpdatePanel(), PF_Err_NONE);
  EXPECT_THAT(CallTexts(host.Calls(), {CallKind::kUpdateParamUI}),
              ElementsAre("update_param_ui 1"));
  EXPECT_TRUE(host.Parameters()[1].Greyed());
  EXPECT_EQ(host.Parameters()[1].uiFlagsAtSetup, 0);
  EXPECT_NE(host.Parameters()[1].flags & PF_ParamFlag_COLLAPSE_TWIRLY, 0);
  EXPECT_FALSE(host.Parameters()[2].Greyed());
  EXPECT_EQ(host.PanelRecord(2).ui_flags, PF_PUI_DISABLED);
  EXPECT_EQ(host.UserChangedParam(2), PF_Err_NONE);
  EXPECT_EQ(changed, 2);
  EXPECT_THAT(host.Complaints(), ElementsAre());
}

TEST(EffectHostTest, PanelComplaints) {
  SetBehaviours({{PF_Cmd_UPDATE_PARAMS_UI, [](const Command& command) -> PF_Err {
                    command.params[1]->u.fs_d.value = 9;
                    PF_ParamDef map{};
                    command.in->inter.checkout_param(command.Ref(), 3, 0, 1, 1, &map);
                    command.in->inter.checkin_param(command.Ref(), &map);
                    const auto* suite =
                        Acquire<PF_ParamUtilsSuite3>(command, kPFParamUtilsSuite, 3);
                    suite->PF_UpdateParamUI(command.Ref(), 0, command.params[0]);
                    command.in->pica_basicP->ReleaseSuite(kPFParamUtilsSuite, 3);
                    return 0;
                  }}});
  EffectHost host(Module());
  (void)host.UpdatePanel();
  EXPECT_THAT(host.Complaints(),
              ElementsAre("During UPDATE_PARAMS_UI the effect checked out parameter 3, which "
                          "gives nothing useful in this command.",
                          "During UPDATE_PARAMS_UI the effect called PF_UpdateParamUI without a "
                          "record or for parameter 0, which has no control.",
                          "During UPDATE_PARAMS_UI the effect changed the value of parameter 1 "
                          "without saying so in its change flags."));
}

TEST(EffectHostTest, PanelMayChangeValuesWhenItSaysSo) {
  SetBehaviours({{PF_Cmd_USER_CHANGED_PARAM, [](const Command& command) -> PF_Err {
                    command.params[1]->u.fs_d.value = 9;
                    command.params[1]->uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
                    return 0;
                  }}});
  EffectHost host(Module());
  EXPECT_EQ(host.UserChangedParam(1), PF_Err_NONE);
  EXPECT_EQ(host.Record(1).u.fs_d.value, 9);
  EXPECT_EQ(host.Record(1).uu.id, 1);
  EXPECT_THAT(host.Complaints(), ElementsAre());
}

TEST(EffectHostTest, RegistrationComplaints) {
  SetBehaviours({{PF_Cmd_PARAMS_SETUP, [](const Command& command) -> PF_Err {
                    PF_ParamDef slider = fakes::MakeRecord(PF_Param_FLOAT_SLIDER, "S", 1);
                    slider.u.fs_d.slider_max = 5;
                    command.in->inter.add_param(command.Ref(), -1, &slider);
                    PF_ParamDef popup = fakes::MakeRecord(PF_Param_POPUP, "P", 2);
                    popup.u.pd.u.namesptr = "A|B";
                    popup.u.pd.num_choices = 3;
                    popup.u.pd.dephault = 1;
                    command.in->inter.add_param(command.Ref(), 7, &popup);
                    PF_ParamDef named = fakes::MakeRecord(PF_Param_COLOR, "C", 3);
                    std::memset(named.name, 'x', sizeof(named.name));
                    command.in->inter.add_param(command.Ref(), -1, &named);
                    command.out->num_params = 4;
                    return 0;
                  }}});
  EffectHost host(Module());
  EXPECT_THAT(host.Complaints(),
              ElementsAre("During PARAMS_SETUP the effect registered slider 1 with limits out of "
                          "order.",
                          "During PARAMS_SETUP the effect registered a parameter at an index "
                          "other than -1.",
                          "During PARAMS_SETUP the effect registered parameter 2 with a number of "
                          "choices or a default that its list of choices denies.",
                          "During PARAMS_SETUP the effect registered parameter 3 with a name of "
                          "more than 31 letters."));
}

TEST(EffectHostTest, AboutGivesTheMessage) {
  SetBehaviours({{PF_Cmd_ABOUT, [](const Command& command) -> PF_Err {
                    std::strcpy(command.out->return_msg, "Fake\rVersion 1");
                    return command.in->pica_basicP == nullptr ? 516 : 0;
                  }}});
  EffectHost host(Module());
  EXPECT_EQ(host.About(), "Fake\rVersion 1");
  host.GetFaults().SetNullBasicSuite(true);
  EXPECT_THROW((void)host.About(), HostError);
}

// Halves red in an own world, so that hosts would disturb each other if they shared any state.
PF_Err HalveRed(const Command& command) {
  const PF_UtilCallbacks& utils = *command.in->utils;
  const auto* suite = Acquire<PF_Iterate8Suite1>(command, kPFIterate8Suite, 1);
  PF_LayerDef world{};
  PF_Err error =
      utils.new_world(command.Ref(), command.output->width, command.output->height, 0, &world);
  if (error != PF_Err_NONE) return error;
  error = suite->iterate(
      command.in, 0, 1, &command.Input(), nullptr, &world,
      [](void*, A_long, A_long, PF_Pixel* in, PF_Pixel* out) -> PF_Err {
        *out = {in->alpha, static_cast<A_u_char>(in->red / 2), in->green, in->blue};
        return 0;
      },
      &world);
  utils.copy(command.Ref(), &world, command.output, nullptr, nullptr);
  utils.dispose_world(command.Ref(), &world);
  command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 1);
  return error;
}

TEST(EffectHostTest, HostsOnSeveralThreadsDoNotDisturbEachOther) {
  SetBehaviours({{PF_Cmd_RENDER, HalveRed}});
  const auto module = Module();
  std::vector<std::thread> threads;
  for (std::uint64_t number = 0; number < 4; ++number) {
    threads.emplace_back([&module, number] {
      EffectHost host(module);
      const auto size = static_cast<std::int32_t>(20 + number);
      WorldBuffer input(size, size, false), output(size, size, false);
      input.FillNoise(number);
      RenderOptions options;
      options.threads = 3;
      for (int frame = 0; frame < 20; ++frame) {
        const RenderResult result = host.Render(input, output, nullptr, options);
        ASSERT_TRUE(result.Ok());
        ASSERT_THAT(result.complaints, ElementsAre());
        ASSERT_EQ(result.calls.size(), 6U);
        ASSERT_EQ(output.At8(size - 1, 3).red, input.At8(size - 1, 3).red / 2);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace vitrell::headless
