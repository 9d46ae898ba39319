// Checks and times one case.
#include "bench/bench_frame.h"

#include <utility>

#include "bench/floor_effect.h"
#include "bench/frame_picture.h"
#include "bench/process_memory.h"
#include "whole/literal_bridge.h"

namespace vitrell::bench {
namespace {

// Odd sizes, and small because the literal render sums every tap of every pixel.
constexpr std::int32_t kSmallWidth = 61;
constexpr std::int32_t kSmallHeight = 37;
constexpr double kSmallMiddleX = 30;
constexpr double kSmallMiddleY = 18;

void Apply(const Settings& settings, headless::EffectHost& host) {
  for (const Setting& setting : settings) {
    const int index = host.IndexOf(setting.path);
    switch (host.Parameters()[static_cast<std::size_t>(index)].type) {
      case PF_Param_POPUP:
        host.SetPopup(index, static_cast<A_long>(setting.value));
        break;
      case PF_Param_CHECKBOX:
        host.SetCheckbox(index, setting.value != 0);
        break;
      case PF_Param_ANGLE:
        host.SetAngleDegrees(index, setting.value);
        break;
      default:
        host.SetFloat(index, setting.value);
    }
  }
}

// A render converts points set in percent to pixels; the literal version has to get those pixels.
void PutPointsInTheMiddle(headless::EffectHost& host) {
  for (const headless::Parameter& parameter : host.Parameters()) {
    if (parameter.type != PF_Param_POINT) continue;
    host.SetPointPixels(parameter.index, kSmallMiddleX, kSmallMiddleY);
  }
}

}  // namespace

BenchFrame::BenchFrame(std::shared_ptr<const headless::EffectModule> module, FrameCase frameCase)
    : case_(std::move(frameCase)),
      module_(std::move(module)),
      host_(MakeHost()),
      input_(MakeStreet(case_.width, case_.height, case_.deep)),
      output_(case_.width, case_.height, case_.deep),
      custom_(case_.customLayer ? MakeNoise(case_.width, case_.height, case_.deep)
                                : headless::WorldBuffer(0, 0, case_.deep)) {}

double BenchFrame::Pixels() const { return static_cast<double>(case_.width) * case_.height; }

std::unique_ptr<headless::EffectHost> BenchFrame::MakeHost() const {
  auto host = std::make_unique<headless::EffectHost>(module_);
  Apply(case_.settings, *host);
  return host;
}

headless::RenderOptions BenchFrame::Options() const {
  headless::RenderOptions options;
  options.threads = case_.threads;
  options.verifyInputs = false;
  options.newWorldLayout.fresh = headless::FreshPixels::kUnset;
  return options;
}

headless::RenderResult BenchFrame::RenderIn(headless::EffectHost& host) {
  return host.Render(input_, output_, case_.customLayer ? &custom_ : nullptr, Options());
}

Timing BenchFrame::Render() {
  const headless::RenderResult result = RenderIn(*host_);
  return {LastRenderTimes(), result.seconds};
}

Timing BenchFrame::RenderFloor() {
  const headless::RenderResult result = RenderIn(*floor_);
  return {LastRenderTimes(), result.seconds};
}

Memory BenchFrame::MeasureMemory() {
  const auto host = MakeHost();  // The other host keeps worlds of earlier renders.
  const double before = BeginPeakBytes();
  const headless::RenderResult result = RenderIn(*host);
  return {MostWorldBytes(result.calls, case_.deep), PeakBytes() - before};
}

std::string BenchFrame::Check() {
  std::string wrong = CheckSmall();
  return wrong.empty() ? CheckFull() : wrong;
}

std::string BenchFrame::CheckSmall() {
  const headless::WorldBuffer input = MakeNoise(kSmallWidth, kSmallHeight, case_.deep);
  const headless::WorldBuffer custom = MakeNoise(kSmallWidth, kSmallHeight, case_.deep);
  headless::WorldBuffer output(kSmallWidth, kSmallHeight, case_.deep);
  const auto host = MakeHost();
  PutPointsInTheMiddle(*host);
  const headless::RenderOptions options;
  const literal::World literalCustom = whole::ToLiteral(custom);
  const literal::RenderOutcome expected = literal::Render(
      whole::MakeRenderInputs(*host, input, output, case_.customLayer ? &literalCustom : nullptr,
                              custom.Def().world_flags, options));
  const headless::RenderResult result =
      host->Render(input, output, case_.customLayer ? &custom : nullptr, options);
  if (!result.Ok()) return "small render: " + result.description;
  return headless::DescribeDifference(whole::FromLiteral(expected.output), output);
}

std::string BenchFrame::CheckFull() {
  headless::RenderOptions other = Options();
  other.threads = case_.threads == 1 ? 3 : 1;
  other.newWorldLayout.rowPadding = 24;
  headless::WorldBuffer again(case_.width, case_.height, case_.deep);
  headless::RenderResult result =
      host_->Render(input_, again, case_.customLayer ? &custom_ : nullptr, other);
  if (!result.Ok()) return "full render, otherwise: " + result.description;
  result = RenderIn(*host_);
  if (!result.Ok()) return "full render: " + result.description;
  const std::string wrong = headless::DescribeDifference(output_, again);
  return wrong.empty() ? CheckFloor(result) : wrong;
}

std::string BenchFrame::CheckFloor(const headless::RenderResult& real) {
  floorModule_ = MakeFloorModule(module_, real.calls);
  floor_ = std::make_unique<headless::EffectHost>(floorModule_);
  const headless::RenderResult result = RenderIn(*floor_);
  if (!result.Ok()) return "floor: " + result.description;
  if (!result.complaints.empty()) return "floor: " + result.complaints.front();
  return headless::CallTexts(real.calls) == headless::CallTexts(result.calls)
             ? ""
             : "the floor does not make the effect's host calls";
}

}  // namespace vitrell::bench
