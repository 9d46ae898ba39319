// Small frames, exact ones, and requests that come faster than answers.
#include "panel/model/renderer.h"

#include <gtest/gtest.h>

#include <QThread>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "headless/fakes/fake_effect.h"
#include "panel/random_look.h"
#include "panel/real_module.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

namespace fakes = headless::fakes;

class RendererTest : public testing::Test {
 protected:
  void Use(std::shared_ptr<const headless::EffectModule> module) {
    host_ = std::make_unique<headless::EffectHost>(module);
    panel_ = look::MakePanel(host_->Parameters());
    renderer_ = std::make_unique<Renderer>(std::move(module));
    QObject::connect(renderer_.get(), &Renderer::Answered,
                     [this](const RenderAnswer& answer) { answers_.push_back(answer); });
  }

  look::Settings With(const char* name, const look::Value& value) const {
    look::Settings settings(panel_);
    settings.SetValue(*panel_.Find(name), value);
    return settings;
  }
  std::uint64_t Request(const look::Settings& settings, EditPhase phase = EditPhase::kDone,
                        std::int64_t index = 0) {
    return renderer_->Request({source_, index, settings, phase, false});
  }
  bool HasExact(std::uint64_t number) const {
    return !answers_.empty() && answers_.back().request == number && answers_.back().exact;
  }
  // The same picture and settings, from a host that knows nothing of renderers.
  headless::WorldBuffer Expected(const look::Settings& settings, std::int64_t index = 0) {
    const auto frame = source_->Read(index);
    headless::WorldBuffer result(frame->Width(), frame->Height(), frame->world.Deep());
    settings.Apply(*host_, frame->Width(), frame->Height());
    EXPECT_TRUE(host_->Render(frame->world, result).Ok());
    return result;
  }

  std::unique_ptr<headless::EffectHost> host_;
  look::Panel panel_;
  std::shared_ptr<Source> source_ = std::make_shared<NoiseSource>(320, 180, false);
  std::vector<RenderAnswer> answers_;
  std::unique_ptr<Renderer> renderer_;
};

TEST_F(RendererTest, ExactFramesAreTheHostsOwn) {
  Use(RealModule());
  for (const bool deep : {false, true}) {
    source_ = std::make_shared<NoiseSource>(320, 180, deep);
    const look::Settings settings = With("lens.feather", 70.0);
    const std::uint64_t number = Request(settings);
    ASSERT_TRUE(WaitUntil([&] { return HasExact(number); }));
    const RenderAnswer& answer = answers_.back();
    ASSERT_NE(answer.world, nullptr);
    EXPECT_EQ(headless::DescribeDifference(Expected(settings), *answer.world), "");
    EXPECT_EQ(answer.image.size(), QSize(320, 180));
    EXPECT_EQ(answer.before.size(), QSize(320, 180));
    EXPECT_TRUE(answer.message.isEmpty()) << answer.message.toStdString();
  }
}

TEST_F(RendererTest, WhileDraggingASmallerFrameComesFirst) {
  Use(RealModule());
  source_ = std::make_shared<NoiseSource>(1920, 1080, false);
  const std::uint64_t number = Request(look::Settings(panel_), EditPhase::kDragging);
  ASSERT_TRUE(WaitUntil([&] { return HasExact(number); }));
  ASSERT_EQ(answers_.size(), 2U);
  EXPECT_FALSE(answers_[0].exact);
  EXPECT_LT(answers_[0].scale, 1);
  EXPECT_EQ(answers_[0].world, nullptr);
  EXPECT_EQ(answers_[0].image.width(), qRound(1920 * answers_[0].scale));
  EXPECT_EQ(answers_[1].scale, 1);
}

// A lens of pixels at the left of the picture is at the left of the small frame, too.
TEST_F(RendererTest, LengthsInPixelsShrinkWithTheFrame) {
  Use(RealModule());
  source_ = std::make_shared<NoiseSource>(1920, 1080, false);
  look::Settings settings = With("lens.position", look::PointValue{{480, false}, {270, false}});
  settings.SetValue(*panel_.Find("lens.scale"), 20.0);
  renderer_->Request({source_, 0, settings, EditPhase::kDragging, true});
  ASSERT_TRUE(WaitUntil([&] { return !answers_.empty(); }));
  const QImage mask = answers_[0].mask;
  ASSERT_LT(answers_[0].scale, 1);
  ASSERT_FALSE(mask.isNull());
  const auto at = [&](int x, int y) {
    return qRed(mask.pixel(x * mask.width() / 1920, y * mask.height() / 1080));
  };
  EXPECT_EQ(at(480, 270), 255);
  EXPECT_EQ(at(960, 540), 0);
  EXPECT_EQ(at(1440, 270), 0);
}

TEST_F(RendererTest, OfAThousandChangesInASecondTheLastOneWins) {
  Use(RealModule());
  whole::Dice dice(7);
  look::Settings settings(panel_);
  std::uint64_t number = 0;
  for (int i = 0; i < 1000; ++i) {
    const look::Control& control = panel_.controls[static_cast<std::size_t>(
        dice.Below(static_cast<int>(panel_.controls.size())))];
    settings.SetValue(control, RandomValue(dice, control));
    number = Request(settings, i % 7 == 0 ? EditPhase::kDone : EditPhase::kDragging);
    QCoreApplication::processEvents();
    QThread::usleep(900);
  }
  EXPECT_EQ(number, 1000U);
  ASSERT_TRUE(WaitUntil([&] { return HasExact(number); }));
  EXPECT_EQ(headless::DescribeDifference(Expected(settings), *answers_.back().world), "");
  // Never back to an older change, and nothing behind the last one.
  for (std::size_t i = 1; i < answers_.size(); ++i) {
    EXPECT_LE(answers_[i - 1].request, answers_[i].request);
  }
  const std::size_t count = answers_.size();
  QThread::msleep(300);
  QCoreApplication::processEvents();
  EXPECT_EQ(answers_.size(), count);
  EXPECT_LT(count, 1000U);
}

// It would render for ever.
PF_Err RenderUntilAborted(const fakes::Command& command) {
  while (command.in->inter.abort(command.Ref()) == PF_Err_NONE) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return PF_Interrupt_CANCEL;
}

TEST_F(RendererTest, ARunningRenderIsCancelledThroughAbort) {
  static std::atomic<int> begun;
  static std::atomic<int> aborted;
  begun = 0;
  aborted = 0;
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command& command) -> PF_Err {
                           if (++begun > 1) return PF_Err_NONE;
                           const PF_Err error = RenderUntilAborted(command);
                           ++aborted;
                           return error;
                         }}});
  Use(fakes::Module());
  Request(look::Settings(panel_));
  ASSERT_TRUE(WaitUntil([] { return begun > 0; }));
  const std::uint64_t number = Request(With("amount", 55.0));
  ASSERT_TRUE(WaitUntil([&] { return HasExact(number); }));
  EXPECT_EQ(aborted, 1);
  // A slow machine shows a smaller frame first.
  EXPECT_EQ(answers_.front().request, number);
}

// The exact frame of the first request is there only once the second one has been answered.
TEST_F(RendererTest, ARunningExactFrameDelaysNoSmallerOne) {
  static std::atomic<bool> begun;
  static std::atomic<bool> released;
  begun = released = false;
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command& command) -> PF_Err {
                           if (command.output->width < 1920) return PF_Err_NONE;
                           begun = true;
                           for (int i = 0; i < 3000 && !released; ++i) {
                             std::this_thread::sleep_for(std::chrono::milliseconds(10));
                           }
                           return PF_Err_NONE;
                         }}});
  Use(fakes::Module());
  source_ = std::make_shared<NoiseSource>(1920, 1080, false);
  Request(look::Settings(panel_));
  ASSERT_TRUE(WaitUntil([] { return begun.load(); }));
  const std::uint64_t number = Request(With("amount", 55.0), EditPhase::kDragging);
  EXPECT_TRUE(WaitUntil([&] { return !answers_.empty() && answers_.back().request == number; }));
  EXPECT_FALSE(answers_.back().exact);
  released = true;
  EXPECT_TRUE(WaitUntil([&] { return HasExact(number); }));
  for (const RenderAnswer& answer : answers_)
    EXPECT_TRUE(answer.request == number || !answer.exact);
}

TEST_F(RendererTest, ClosingEndsARunningRender) {
  static std::atomic<bool> begun;
  begun = false;
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command& command) {
                           begun = true;
                           return RenderUntilAborted(command);
                         }}});
  Use(fakes::Module());
  Request(look::Settings(panel_));
  ASSERT_TRUE(WaitUntil([] { return begun.load(); }));
  renderer_.reset();
  EXPECT_TRUE(answers_.empty());
}

TEST_F(RendererTest, AFailureIsToldWithCodeAndMeaning) {
  fakes::SetBehaviours(
      {{PF_Cmd_RENDER, [](const fakes::Command&) { return PF_Err{PF_Err_OUT_OF_MEMORY}; }}});
  Use(fakes::Module());
  Request(look::Settings(panel_));
  ASSERT_TRUE(WaitUntil([&] { return !answers_.empty(); }));
  EXPECT_TRUE(answers_[0].image.isNull());
  EXPECT_TRUE(answers_[0].message.contains("PF_Err_OUT_OF_MEMORY (4)"))
      << answers_[0].message.toStdString();
  EXPECT_TRUE(answers_[0].message.contains("Use a smaller picture"));
}

TEST_F(RendererTest, AMissingLayerIsTold) {
  Use(RealModule());
  Request(With("lens.custom-layer", look::LayerValue{"/nowhere/layer.png"}));
  ASSERT_TRUE(WaitUntil([&] { return !answers_.empty(); }));
  EXPECT_TRUE(answers_[0].message.contains("/nowhere/layer.png"))
      << answers_[0].message.toStdString();
}

TEST_F(RendererTest, FramesOfAClipAreRememberedWithinTheBudget) {
  // Of whole frames: where they take long, as on a busy machine, a smaller one comes first.
  static std::atomic<int> renders;
  renders = 0;
  fakes::SetBehaviours({{PF_Cmd_RENDER, [](const fakes::Command& command) {
                           if (command.output->width == 320) ++renders;
                           return PF_Err{PF_Err_NONE};
                         }}});
  Use(fakes::Module());
  source_ = std::make_shared<NoiseSource>(320, 180, false, 4);
  const auto show = [&](std::int64_t index) {
    const std::uint64_t number = Request(look::Settings(panel_), EditPhase::kDone, index);
    EXPECT_TRUE(WaitUntil([&] { return HasExact(number); }));
  };
  for (const std::int64_t index : {0, 1, 2, 3, 0, 1, 2, 3}) show(index);
  EXPECT_EQ(renders, 4);
  // Room for two frames of 320 x 180, each kept as the effect left it and as it is shown.
  renderer_->SetCacheBudget(2 * 320 * 180 * 8 + 4096);
  for (const std::int64_t index : {0, 1, 2, 3, 0, 1, 2, 3}) show(index);
  EXPECT_GE(renders, 4 + 6);
}

}  // namespace
}  // namespace vitrell::panel
