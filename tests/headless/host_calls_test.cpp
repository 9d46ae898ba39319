// Each host function as an effect sees it, and its line in the log.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/fakes/fake_effect.h"

namespace vitrell::headless {
namespace {

using fakes::Acquire;
using fakes::Command;
using fakes::HostOf;
using testing::ElementsAre;

PF_Err CopyPixel8(void*, A_long, A_long, PF_Pixel* in, PF_Pixel* out) {
  *out = *in;
  return PF_Err_NONE;
}

PF_Err CopyPixel16(void*, A_long, A_long, PF_Pixel16* in, PF_Pixel16* out) {
  *out = *in;
  return PF_Err_NONE;
}

RenderResult RenderWith(EffectHost& host, bool deep, const RenderOptions& options = {},
                        const WorldBuffer* custom = nullptr) {
  WorldBuffer input(6, 4, deep), output(6, 4, deep);
  input.FillNoise(1);
  return host.Render(input, output, custom, options);
}

TEST(HostCallsTest, WorldsAreNamedInOrderOfCreation) {
  const auto host = HostOf([](const Command& command) {
    const PF_UtilCallbacks& utils = *command.in->utils;
    PF_LayerDef a{}, b{};
    utils.new_world(command.Ref(), 6, 4, 0, &a);
    utils.new_world(command.Ref(), 3, 2, 3, &b);
    utils.copy(command.Ref(), &command.Input(), &a, nullptr, nullptr);
    PF_LRect from = {0, 0, 2, 2}, to = {1, 1, 3, 3};
    utils.copy(command.Ref(), &a, &a, &from, &to);
    const PF_Pixel color = {1, 2, 3, 4};
    utils.fill(command.Ref(), &color, &from, &a);
    const PF_LRect deepRect = {0, 0, 1, 1};
    utils.fill16(command.Ref(), nullptr, &deepRect, &b);
    utils.fill(command.Ref(), nullptr, nullptr, command.output);
    utils.dispose_world(command.Ref(), &a);
    utils.dispose_world(command.Ref(), &b);
    PF_LayerDef empty{};
    utils.dispose_world(command.Ref(), &empty);
    return PF_Err_NONE;
  });
  const RenderResult result = RenderWith(*host, false);
  EXPECT_THAT(CallTexts(result.calls),
              ElementsAre("new_world world1 6x4 flags 0", "new_world world2 3x2 flags 3",
                          "copy input -> world1", "copy world1 -> world1 from 0,0,2,2 to 1,1,3,3",
                          "fill world1 1,2,3,4 in 0,0,2,2", "fill16 world2 null in 0,0,1,1",
                          "fill output null in whole", "dispose_world world1",
                          "dispose_world world2", "dispose_world none"));
  EXPECT_THAT(result.complaints, ElementsAre());
  // The next render counts from 1 again.
  EXPECT_EQ(RenderWith(*host, false).calls.front().text, "new_world world1 6x4 flags 0");
}

TEST(HostCallsTest, PassesQueriesAndSuites) {
  const auto host = HostOf([](const Command& command) {
    const auto* eight = Acquire<PF_Iterate8Suite1>(command, kPFIterate8Suite, 1);
    const auto* worlds = Acquire<PF_WorldSuite2>(command, kPFWorldSuite, 2);
    int refcon = 0;
    eight->iterate(command.in, 0, 4, &command.Input(), nullptr, &refcon, CopyPixel8,
                   command.output);
    const PF_LRect area = {0, 0, 2, 2};
    eight->iterate(
        command.in, 0, 0, nullptr, &area, nullptr,
        [](void*, A_long, A_long, PF_Pixel*, PF_Pixel* out) -> PF_Err {
          *out = {};
          return 0;
        },
        command.output);
    PF_PixelFormat format = 0;
    worlds->PF_GetPixelFormat(&command.Input(), &format);
    EXPECT_EQ(format, PF_PixelFormat_ARGB32);
    EXPECT_EQ(command.in->inter.abort(command.Ref()), PF_Err_NONE);
    EXPECT_EQ(command.in->inter.progress(command.Ref(), 1, 9), PF_Err_NONE);
    command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 1);
    command.in->pica_basicP->ReleaseSuite(kPFWorldSuite, 2);
    return PF_Err_NONE;
  });
  const RenderResult result = RenderWith(*host, false);
  EXPECT_THAT(CallTexts(result.calls),
              ElementsAre("acquire_suite PF Iterate8 Suite 1", "acquire_suite PF World Suite 2",
                          "iterate8 input -> output rows 0..4",
                          "iterate8 none -> output rows 0..0 area 0,0,2,2 no refcon",
                          "get_pixel_format input", "abort", "progress 1 of 9",
                          "release_suite PF Iterate8 Suite 1", "release_suite PF World Suite 2"));
  EXPECT_THAT(result.complaints, ElementsAre());
  EXPECT_THAT(CallTexts(result.calls, {CallKind::kAbort, CallKind::kProgress}),
              ElementsAre("abort", "progress 1 of 9"));
  EXPECT_EQ(CountCalls(result.calls, CallKind::kIterate8), 2);
  EXPECT_EQ(CountCalls(result.calls, CallKind::kAny), 9);
}

TEST(HostCallsTest, DeepPassesAndUnknownSuites) {
  const auto host = HostOf([](const Command& command) {
    for (const std::int32_t version : {1, 2}) {
      const auto* deep = Acquire<PF_iterate16Suite1>(command, kPFIterate16Suite, version);
      int refcon = 0;
      deep->iterate(command.in, 0, 4, &command.Input(), nullptr, &refcon, CopyPixel16,
                    command.output);
      command.in->pica_basicP->ReleaseSuite(kPFIterate16Suite, version);
    }
    EXPECT_EQ(Acquire<void>(command, "PF Iterate16 Suite", 1), nullptr);
    EXPECT_EQ(Acquire<void>(command, kPFWorldSuite, 7), nullptr);
    EXPECT_NE(command.in->pica_basicP->IsEqual("a", "a"), 0);
    EXPECT_EQ(command.in->pica_basicP->IsEqual("a", "A"), 0);
    return PF_Err_NONE;
  });
  WorldBuffer input(6, 4, true), output(6, 4, true);
  input.FillNoise(2);
  const RenderResult result = host->Render(input, output);
  EXPECT_THAT(
      CallTexts(result.calls),
      ElementsAre("acquire_suite PF iterate16 Suite 1", "iterate16 input -> output rows 0..4",
                  "release_suite PF iterate16 Suite 1", "acquire_suite PF iterate16 Suite 2",
                  "iterate16 input -> output rows 0..4", "release_suite PF iterate16 Suite 2",
                  "acquire_suite PF Iterate16 Suite 1 fails with 1394689636",
                  "acquire_suite PF World Suite 7 fails with 1394689636"));
  EXPECT_EQ(DescribeDifference(input, output), "");
}

TEST(HostCallsTest, CheckedOutLayerIsTheCustomOne) {
  const auto host = HostOf([](const Command& command) {
    PF_ParamDef param{};
    command.in->inter.checkout_param(command.Ref(), 3, 7, 2, 30, &param);
    if (param.u.ld.data != nullptr) {
      command.in->utils->copy(command.Ref(), &param.u.ld, command.output, nullptr, nullptr);
    }
    command.in->inter.checkin_param(command.Ref(), &param);
    PF_ParamDef amount{}, beyond{};
    command.in->inter.checkout_param(command.Ref(), 1, 7, 2, 30, &amount);
    EXPECT_EQ(amount.u.fs_d.value, 20);
    command.in->inter.checkin_param(command.Ref(), &amount);
    EXPECT_EQ(command.in->inter.checkout_param(command.Ref(), 99, 7, 2, 30, &beyond), 0);
    EXPECT_EQ(beyond.u.ld.data, nullptr);
    command.in->inter.checkin_param(command.Ref(), &beyond);
    return PF_Err_NONE;
  });
  WorldBuffer custom(3, 2, false);
  custom.FillNoise(9);
  EXPECT_THAT(
      CallTexts(RenderWith(*host, false, {}, &custom).calls),
      ElementsAre("checkout_param 3 time 7 step 2 scale 30", "copy custom -> output",
                  "checkin_param 3", "checkout_param 1 time 7 step 2 scale 30", "checkin_param 1",
                  "checkout_param 99 time 7 step 2 scale 30", "checkin_param 99"));
  EXPECT_THAT(RenderWith(*host, false).complaints, ElementsAre());
}

TEST(HostCallsTest, NewWorldFollowsCreationFlagsAndOptions) {
  struct Case {
    bool deepRender;
    NewWorldDepth depth;
    PF_NewWorldFlags flags;
    bool expectDeep;
  };
  for (const Case& c : {Case{false, NewWorldDepth::kRenderDepth, 0, false},
                        Case{true, NewWorldDepth::kRenderDepth, 0, true},
                        Case{true, NewWorldDepth::kRenderDepth, 1, true},
                        Case{true, NewWorldDepth::kEightBit, 0, false},
                        Case{true, NewWorldDepth::kEightBit, 2, true},
                        Case{false, NewWorldDepth::kRenderDepth, 2, true}}) {
    PF_LayerDef made{};
    A_long firstChannel = -1;
    PF_PixelFormat format = 0;
    const auto host = HostOf([&](const Command& command) {
      const auto* worlds = Acquire<PF_WorldSuite2>(command, kPFWorldSuite, 2);
      command.in->utils->new_world(command.Ref(), 5, 4, c.flags, &made);
      worlds->PF_GetPixelFormat(&made, &format);
      firstChannel = *static_cast<const A_u_char*>(made.data);
      command.in->utils->dispose_world(command.Ref(), &made);
      command.in->pica_basicP->ReleaseSuite(kPFWorldSuite, 2);
      return PF_Err_NONE;
    });
    RenderOptions options;
    options.newWorldDepth = c.depth;
    options.newWorldLayout.rowPadding = 4;
    EXPECT_THAT(RenderWith(*host, c.deepRender, options).complaints, ElementsAre());
    EXPECT_EQ((made.world_flags & PF_WorldFlag_DEEP) != 0, c.expectDeep);
    EXPECT_EQ(format, c.expectDeep ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32);
    EXPECT_EQ(made.rowbytes, (c.expectDeep ? 40 : 20) + 4);
    EXPECT_EQ(made.extent_hint.right, 5);
    EXPECT_EQ(made.extent_hint.bottom, 4);
    // Cleared on request only; poison otherwise.
    EXPECT_EQ(firstChannel == 0, (c.flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0);
  }
}

TEST(HostCallsTest, ReusedWorldsAreFreshAgain) {
  const auto host = HostOf([](const Command& command) {
    for (int round = 0; round < 3; ++round) {
      PF_LayerDef world{};
      command.in->utils->new_world(command.Ref(), 6, 4, 0, &world);
      auto* pixel = static_cast<PF_Pixel*>(world.data);
      EXPECT_NE(pixel->red, 42);
      EXPECT_EQ(world.world_flags, 0);
      pixel->red = 42;
      command.in->utils->dispose_world(command.Ref(), &world);
    }
    return PF_Err_NONE;
  });
  EXPECT_THAT(RenderWith(*host, false).complaints, ElementsAre());
}

TEST(HostCallsTest, MathsAreThePinnedFunctions) {
  const auto host = HostOf([](const Command& command) {
    const auto* suite = Acquire<PF_ANSICallbacksSuite1>(command, kPFAnsiSuite, 1);
    EXPECT_EQ(suite, &HostMaths());
    EXPECT_EQ(command.in->utils->ansi.sin, HostMaths().sin);
    EXPECT_EQ(command.in->utils->ansi.acos, HostMaths().acos);
    EXPECT_EQ(suite->pow(2, 10), 1024);
    EXPECT_EQ(suite->atan2(1, 0), suite->acos(0));
    char text[32] = {};
    suite->sprintf(text, "%s-%d", "a", 5);
    EXPECT_STREQ(text, "a-5");
    command.in->pica_basicP->ReleaseSuite(kPFAnsiSuite, 1);
    return PF_Err_NONE;
  });
  EXPECT_EQ(RenderWith(*host, false).calls.size(), 2U);
}

TEST(HostCallsTest, AreaDefaultsToTheOverlapOfBothWorlds) {
  const auto host = HostOf([](const Command& command) {
    const auto* suite = Acquire<PF_Iterate8Suite1>(command, kPFIterate8Suite, 1);
    PF_LayerDef small{};
    command.in->utils->new_world(command.Ref(), 2, 9, 0, &small);
    int visited = 0;
    suite->iterate(
        command.in, 0, 0, &small, nullptr, &visited,
        [](void* refcon, A_long x, A_long y, PF_Pixel*, PF_Pixel*) -> PF_Err {
          ++*static_cast<int*>(refcon);
          EXPECT_LT(x, 2);
          EXPECT_LT(y, 4);
          return 0;
        },
        command.output);
    EXPECT_EQ(visited, 2 * 4);
    command.in->utils->dispose_world(command.Ref(), &small);
    command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 1);
    return PF_Err_NONE;
  });
  EXPECT_THAT(RenderWith(*host, false).complaints, ElementsAre());
}

TEST(HostCallsTest, BlocksOfTheBasicSuite) {
  const auto host = HostOf([](const Command& command) {
    SPBasicSuite& basic = *command.in->pica_basicP;
    void* block = nullptr;
    EXPECT_EQ(basic.AllocateBlock(16, &block), 0);
    static_cast<char*>(block)[15] = 'x';
    void* moved = nullptr;
    EXPECT_EQ(basic.ReallocateBlock(block, 4096, &moved), 0);
    EXPECT_EQ(static_cast<char*>(moved)[15], 'x');
    EXPECT_EQ(basic.FreeBlock(moved), 0);
    return PF_Err_NONE;
  });
  EXPECT_THAT(RenderWith(*host, false).complaints, ElementsAre());
}

}  // namespace
}  // namespace vitrell::headless
