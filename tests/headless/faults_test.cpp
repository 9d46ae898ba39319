// Failures injected by the host, and cancelling.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "headless/fakes/fake_effect.h"

namespace vitrell::headless {
namespace {

using fakes::Acquire;
using fakes::Command;
using fakes::HostOf;
using testing::ElementsAre;
using testing::SizeIs;

RenderResult RenderSmall(EffectHost& host, const RenderOptions& options = {}) {
  WorldBuffer input(4, 4, false), output(4, 4, false);
  input.FillNoise(1);
  output.FillBytes(0);
  return host.Render(input, output, nullptr, options);
}

// Makes one call of each kind that RENDER may make and returns the first error.
PF_Err MakeEachCall(const Command& command) {
  PF_Err first = PF_Err_NONE;
  const auto keep = [&first](PF_Err error) { first = first != PF_Err_NONE ? first : error; };
  const PF_UtilCallbacks& utils = *command.in->utils;
  SPBasicSuite& basic = *command.in->pica_basicP;
  PF_ParamDef param{};
  const PF_Err checkout = command.in->inter.checkout_param(command.Ref(), 1, 0, 1, 1, &param);
  keep(checkout);
  if (checkout == PF_Err_NONE) keep(command.in->inter.checkin_param(command.Ref(), &param));
  keep(command.in->inter.abort(command.Ref()));
  keep(command.in->inter.progress(command.Ref(), 0, 1));
  PF_LayerDef world{};
  keep(utils.new_world(command.Ref(), 4, 4, 0, &world));
  keep(utils.copy(command.Ref(), &command.Input(), command.output, nullptr, nullptr));
  keep(utils.fill(command.Ref(), nullptr, nullptr, command.output));
  if (world.data != nullptr) keep(utils.dispose_world(command.Ref(), &world));
  const void* suite = nullptr;
  const PF_Err acquire = basic.AcquireSuite(kPFWorldSuite, 2, &suite);
  keep(acquire);
  if (suite != nullptr) {
    PF_PixelFormat format = 0;
    keep(static_cast<const PF_WorldSuite2*>(suite)->PF_GetPixelFormat(command.output, &format));
    keep(basic.ReleaseSuite(kPFWorldSuite, 2));
  }
  return first;
}

TEST(FaultsTest, EachKindFailsAndIsReported) {
  for (const CallKind kind :
       {CallKind::kCheckoutParam, CallKind::kCheckinParam, CallKind::kAbort, CallKind::kProgress,
        CallKind::kNewWorld, CallKind::kCopy, CallKind::kFill, CallKind::kDisposeWorld,
        CallKind::kAcquireSuite, CallKind::kGetPixelFormat, CallKind::kReleaseSuite}) {
    const auto host = HostOf(MakeEachCall);
    EXPECT_EQ(RenderSmall(*host).error, PF_Err_NONE);
    host->GetFaults().FailNth(kind, 1, 77);
    const RenderResult result = RenderSmall(*host);
    EXPECT_EQ(result.error, 77) << "kind " << static_cast<int>(kind);
    EXPECT_EQ(result.description,
              "unknown error (77): the effect returned a code that the host does not define");
    EXPECT_THAT(result.complaints, SizeIs(0));
    const std::vector<std::string> lines = CallTexts(result.calls, {kind});
    ASSERT_THAT(lines, SizeIs(1));
    EXPECT_THAT(lines[0], testing::EndsWith(" fails with 77"));
    host->GetFaults().Clear();
    EXPECT_EQ(RenderSmall(*host).error, PF_Err_NONE);
  }
}

TEST(FaultsTest, CountingStartsAnewWithEachRenderAndCountsAllKinds) {
  const auto host = HostOf(MakeEachCall);
  const auto calls = static_cast<int>(RenderSmall(*host).calls.size());
  for (int n = 1; n <= calls; ++n) {
    host->GetFaults().Clear();
    host->GetFaults().FailNth(CallKind::kAny, n, 4);
    for (int repeat = 0; repeat < 2; ++repeat) {
      const RenderResult result = RenderSmall(*host);
      EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
      EXPECT_EQ(result.calls[static_cast<std::size_t>(n - 1)].result, 4);
    }
  }
  host->GetFaults().Clear();
  host->GetFaults().FailNth(CallKind::kAny, calls + 1, 4);
  EXPECT_EQ(RenderSmall(*host).error, PF_Err_NONE);
}

TEST(FaultsTest, FailedCopyLeavesTheDestinationAlone) {
  const auto host = HostOf([](const Command& command) {
    return command.in->utils->copy(command.Ref(), &command.Input(), command.output, nullptr,
                                   nullptr);
  });
  host->GetFaults().FailNth(CallKind::kCopy, 1, 516);
  WorldBuffer input(4, 4, false), output(4, 4, false), untouched(4, 4, false);
  input.FillNoise(1);
  EXPECT_EQ(host->Render(input, output).error, PF_Err_BAD_CALLBACK_PARAM);
  EXPECT_TRUE(SamePixels(output, untouched));
}

TEST(FaultsTest, FailedNewWorldLeavesWhatIsAsked) {
  for (const FailedWorldRecord left : {FailedWorldRecord::kCleared, FailedWorldRecord::kJunk}) {
    PF_LayerDef record;
    const auto host = HostOf([&record](const Command& command) {
      std::memset(&record, 0x11, sizeof(record));
      return command.in->utils->new_world(command.Ref(), 4, 4, 0, &record);
    });
    host->GetFaults().FailNth(CallKind::kNewWorld, 1, 4);
    host->GetFaults().SetFailedWorldRecord(left);
    EXPECT_EQ(RenderSmall(*host).error, 4);
    EXPECT_EQ(record.data == nullptr, left == FailedWorldRecord::kCleared);
    EXPECT_EQ(record.width,
              left == FailedWorldRecord::kCleared ? 0 : static_cast<A_long>(0xCDCDCDCD));
  }
}

TEST(FaultsTest, RefusedSuitesAndNullBasicSuite) {
  const auto host = HostOf([](const Command& command) -> PF_Err {
    if (command.in->pica_basicP == nullptr) return 100;
    const bool one = Acquire<void>(command, kPFIterate8Suite, 1) != nullptr;
    const bool two = Acquire<void>(command, kPFIterate8Suite, 2) != nullptr;
    if (one) command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 1);
    if (two) command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 2);
    return 10 * one + two;
  });
  EXPECT_EQ(RenderSmall(*host).error, 11);
  host->GetFaults().RefuseSuite(kPFIterate8Suite, 1);
  EXPECT_EQ(RenderSmall(*host).error, 1);
  host->GetFaults().RefuseSuite(kPFIterate8Suite);
  EXPECT_EQ(RenderSmall(*host).error, 0);
  host->GetFaults().SetNullBasicSuite(true);
  EXPECT_EQ(RenderSmall(*host).error, 100);
  host->GetFaults().Clear();
  EXPECT_EQ(RenderSmall(*host).error, 11);
}

PF_Err PassThenAbort(const Command& command) {
  const auto* suite = Acquire<PF_Iterate8Suite1>(command, kPFIterate8Suite, 1);
  int refcon = 0;
  const PF_Err pass = suite->iterate(
      command.in, 0, 4, nullptr, nullptr, &refcon,
      [](void*, A_long, A_long, PF_Pixel*, PF_Pixel* out) -> PF_Err {
        *out = {1, 1, 1, 1};
        return 0;
      },
      command.output);
  command.in->pica_basicP->ReleaseSuite(kPFIterate8Suite, 1);
  EXPECT_EQ(command.in->inter.abort(command.Ref()), pass);
  return pass;
}

TEST(FaultsTest, CancelReachesAbortAndPasses) {
  const auto host = HostOf(PassThenAbort);
  std::atomic<bool> cancel = false;
  RenderOptions options;
  options.cancel = &cancel;
  EXPECT_EQ(RenderSmall(*host, options).error, PF_Err_NONE);
  cancel = true;
  const RenderResult result = RenderSmall(*host, options);
  EXPECT_EQ(result.error, PF_Interrupt_CANCEL);
  EXPECT_EQ(result.description, "PF_Interrupt_CANCEL (517): the render was cancelled");
}

TEST(FaultsTest, CancelFromTheProgressCallbackStopsThePass) {
  const auto host = HostOf(PassThenAbort);
  std::atomic<bool> cancel = false;
  std::vector<A_long> rows;
  RenderOptions options;
  options.cancel = &cancel;
  options.progress = [&](const RenderProgress& progress) {
    EXPECT_EQ(progress.pass, 1);
    EXPECT_EQ(progress.rowsTotal, 4);
    rows.push_back(progress.rowsDone);
    if (progress.rowsDone == 2) cancel = true;
  };
  EXPECT_EQ(RenderSmall(*host, options).error, PF_Interrupt_CANCEL);
  EXPECT_THAT(rows, ElementsAre(1, 2, 2));
}

}  // namespace
}  // namespace vitrell::headless
