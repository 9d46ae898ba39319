// One small frame through the module, and the host calls it makes, for tests of the driver.
#include "render/driver_case.h"

#include <gtest/gtest.h>

#include <memory>

namespace vitrell {
namespace {

constexpr std::int32_t kWidth = 6;
constexpr std::int32_t kHeight = 4;

std::shared_ptr<const headless::EffectModule> Module() {
  static const auto module = std::make_shared<const headless::EffectModule>(VITRELL_MODULE_PATH);
  return module;
}

}  // namespace

DriverCase::DriverCase(bool deep)
    : host_(Module()),
      input_(kWidth, kHeight, deep, {.rowPadding = 4}),
      output_(kWidth, kHeight, deep, {.rowPadding = 12}) {
  input_.FillNoise(20260001);
}

DriverCase& DriverCase::Set(std::string_view path, double value) {
  const int index = host_.IndexOf(path);
  PF_ParamDef& record = host_.Record(index);
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      record.u.fs_d.value = value;
      break;
    case PF_Param_POPUP:
      record.u.pd.value = static_cast<A_long>(value);
      break;
    case PF_Param_CHECKBOX:
      record.u.bd.value = static_cast<A_long>(value);
      break;
    default:
      ADD_FAILURE() << path << " has no number";
      break;
  }
  return *this;
}

DriverCase& DriverCase::AllOff() {
  for (const char* const group :
       {"fast-blur", "realistic-blur", "optical-distortion", "trail", "directional-blur",
        "lightness", "color", "chromatic-aberration"}) {
    Set(std::string(group) + ".visible", 0);
  }
  return Set("lens.type", 1);
}

DriverCase& DriverCase::SetCustomLayer(PF_WorldFlags flags) {
  custom_.emplace(kWidth + 3, kHeight + 1, (flags & PF_WorldFlag_DEEP) != 0);
  custom_->FillNoise(20260002);
  custom_->SetWorldFlags(flags);
  return Set("lens.type", 6);
}

headless::RenderResult DriverCase::Render() {
  output_.FillBytes(0xA5);
  return host_.Render(input_, output_, custom_ ? &*custom_ : nullptr, options);
}

std::vector<std::string> DriverCase::Calls() {
  const headless::RenderResult result = Render();
  EXPECT_EQ(result.error, PF_Err_NONE) << result.description;
  EXPECT_EQ(result.complaints, std::vector<std::string>());
  return headless::CallTexts(result.calls);
}

headless::WorldBuffer DriverCase::Picture() {
  const headless::RenderResult result = Render();
  EXPECT_EQ(result.error, PF_Err_NONE) << result.description;
  EXPECT_EQ(result.complaints, std::vector<std::string>());
  return output_;
}

CallList Join(std::initializer_list<CallList> parts) {
  CallList all;
  for (const CallList& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

CallList Opening() {
  return {"checkout_param 3 time 0 step 1 scale 30",
          "abort",
          "checkin_param 3",
          "new_world world1 6x4 flags 0",
          "new_world world2 6x4 flags 0",
          "copy input -> world1"};
}

CallList Closing() {
  return {"copy world1 -> output", "dispose_world world1", "dispose_world world2"};
}

CallList FastRound(const std::string& from, const std::string& to, const std::string& temporary) {
  return {"new_world " + temporary + " 6x4 flags 0",
          "copy " + from + " -> " + temporary,
          "acquire_suite PF Iterate8 Suite 1",
          "iterate8 " + from + " -> " + to + " rows 0..4",
          "iterate8 " + to + " -> " + from + " rows 0..4",
          "copy " + from + " -> " + to,
          "dispose_world " + temporary,
          "release_suite PF Iterate8 Suite 1"};
}

CallList FinalBlend(const std::string& from, const std::string& to) {
  return {"acquire_suite PF World Suite 2",
          "get_pixel_format input",
          "release_suite PF World Suite 2",
          "acquire_suite PF Iterate8 Suite 1",
          "iterate8 " + from + " -> " + to + " rows 0..4",
          "release_suite PF Iterate8 Suite 1"};
}

}  // namespace vitrell
