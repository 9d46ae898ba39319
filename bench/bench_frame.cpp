// The picture, the checks and the timed render.
#include "bench/bench_frame.h"

#include <utility>

#include "bench/floor_effect.h"
#include "whole/literal_bridge.h"

namespace vitrell::bench {
namespace {

constexpr std::int32_t kSmallWidth = 61;
constexpr std::int32_t kSmallHeight = 37;

// Soft gradients with fine noise, bright spots and a transparent corner: nothing that a stage could
// take a short cut through.
headless::WorldBuffer MakeInput(std::int32_t width, std::int32_t height, bool deep) {
  headless::WorldBuffer buffer(width, height, deep);
  std::uint32_t state = 12345;
  const std::int32_t white = deep ? 32768 : 255;
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::int32_t x = 0; x < width; ++x) {
      state = state * 1664525U + 1013904223U;
      const auto noise = static_cast<std::int32_t>(state >> 24) * white / 1024;
      const bool spot = (state >> 20) % 211 == 0;
      const std::int32_t red = spot ? white : x * (white / 2) / width + noise;
      const std::int32_t green = spot ? white : y * (white / 2) / height + noise;
      const std::int32_t blue = (white - noise) / 3;
      const std::int32_t alpha = x + y < height / 4 ? 0 : white - (x + y < height ? noise : 0);
      if (deep) {
        buffer.At16(x, y) = {static_cast<A_u_short>(alpha), static_cast<A_u_short>(red),
                             static_cast<A_u_short>(green), static_cast<A_u_short>(blue)};
      } else {
        buffer.At8(x, y) = {static_cast<A_u_char>(alpha), static_cast<A_u_char>(red),
                            static_cast<A_u_char>(green), static_cast<A_u_char>(blue)};
      }
    }
  }
  return buffer;
}

void Apply(const std::vector<Setting>& settings, headless::EffectHost& host) {
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

}  // namespace

BenchFrame::BenchFrame(FrameCase frameCase)
    : case_(std::move(frameCase)),
      module_(std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH)),
      host_(module_),
      input_(MakeInput(case_.width, case_.height, case_.deep)),
      output_(case_.width, case_.height, case_.deep) {
  Apply(case_.settings, host_);
}

double BenchFrame::Pixels() const { return static_cast<double>(case_.width) * case_.height; }

headless::RenderOptions BenchFrame::Options() const {
  headless::RenderOptions options;
  options.threads = case_.threads;
  options.verifyInputs = false;
  return options;
}

double BenchFrame::RenderSeconds() {
  return host_.Render(input_, output_, nullptr, Options()).seconds;
}

double BenchFrame::FloorSeconds() {
  return floor_->Render(input_, output_, nullptr, Options()).seconds;
}

std::string BenchFrame::Check() {
  for (const auto check :
       {&BenchFrame::CheckSmall, &BenchFrame::CheckFull, &BenchFrame::CheckFloor}) {
    std::string wrong = (this->*check)();
    if (!wrong.empty()) return wrong;
  }
  return "";
}

std::string BenchFrame::CheckSmall() {
  headless::WorldBuffer input = MakeInput(kSmallWidth, kSmallHeight, case_.deep);
  headless::WorldBuffer output(kSmallWidth, kSmallHeight, case_.deep);
  const headless::RenderOptions options;
  // A render turns points told in percent into pixels, which the literal version needs to see.
  for (const headless::Parameter& parameter : host_.Parameters()) {
    if (parameter.type == PF_Param_POINT) {
      host_.SetPointPixels(parameter.index, 30, 18);
    }
  }
  const literal::RenderOutcome expected =
      literal::Render(whole::MakeRenderInputs(host_, input, output, nullptr, 0, options));
  const headless::RenderResult result = host_.Render(input, output, nullptr, options);
  for (const headless::Parameter& parameter : host_.Parameters()) {
    if (parameter.type == PF_Param_POINT) host_.SetPointPercent(parameter.index, 50, 50);
  }
  if (!result.Ok()) return "small render: " + result.description;
  return headless::DescribeDifference(whole::FromLiteral(expected.output), output);
}

std::string BenchFrame::CheckFull() {
  headless::RenderResult result = host_.Render(input_, output_, nullptr, Options());
  if (!result.Ok()) return "full render: " + result.description;
  headless::RenderOptions other = Options();
  if (!case_.oneThreadOnly) other.threads = case_.threads == 1 ? 3 : 1;
  other.newWorldLayout.rowPadding = 24;
  headless::WorldBuffer again(case_.width, case_.height, case_.deep);
  result = host_.Render(input_, again, nullptr, other);
  if (!result.Ok()) return "second full render: " + result.description;
  return headless::DescribeDifference(output_, again);
}

std::string BenchFrame::CheckFloor() {
  const headless::RenderResult real = host_.Render(input_, output_, nullptr, Options());
  floorModule_ = MakeFloorModule(module_, real.calls);
  floor_ = std::make_unique<headless::EffectHost>(floorModule_);
  const headless::RenderResult result = floor_->Render(input_, output_, nullptr, Options());
  if (!result.Ok()) return "floor: " + result.description;
  if (!result.complaints.empty()) return "floor: " + result.complaints.front();
  return headless::CallTexts(real.calls) == headless::CallTexts(result.calls)
             ? ""
             : "the floor does not make the effect's host calls";
}

}  // namespace vitrell::bench
