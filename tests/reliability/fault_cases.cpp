// Settings that together reach every branch of a render, for tests that make it fail.
#include "reliability/fault_cases.h"

namespace vitrell::reliability {
namespace {

constexpr std::int32_t kWidth = 13;
constexpr std::int32_t kHeight = 9;

void SetNumber(headless::EffectHost& host, std::string_view path, double value) {
  PF_ParamDef& record = host.Record(host.IndexOf(path));
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      record.u.fs_d.value = value;
      break;
    case PF_Param_ANGLE:
      record.u.ad.value = headless::ToFixed(value);
      break;
    case PF_Param_CHECKBOX:
      record.u.bd.value = static_cast<A_long>(value);
      break;
    default:
      record.u.pd.value = static_cast<A_long>(value);
      break;
  }
}

// Any number of stages together.
using Values = std::vector<std::pair<std::string, double>>;

Values operator+(Values a, const Values& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Values Lens(double type, double featherPercent) {
  return {{"lens.type", type}, {"lens.feather", featherPercent}};
}
Values Fast(double amount, double map = 0) {
  return {{"fast-blur.visible", 1},
          {"fast-blur.amount", amount},
          {"fast-blur.use-lens-as-blur-map", map}};
}
Values Realistic(double amount, double map = 0) {
  return {{"realistic-blur.visible", 1},
          {"realistic-blur.amount", amount},
          {"realistic-blur.use-lens-as-blur-map", map}};
}
Values Optical(double amount) {
  return {{"optical-distortion.visible", 1}, {"optical-distortion.amount", amount}};
}
Values Trail(double amount) { return {{"trail.visible", 1}, {"trail.amount", amount}}; }
Values Directional(double amount) {
  return {{"directional-blur.visible", 1},
          {"directional-blur.amount", amount},
          {"directional-blur.direction", 30}};
}
Values Lightness(double amount) { return {{"lightness.visible", 1}, {"lightness.amount", amount}}; }
Values Color(double opacity) { return {{"color.visible", 1}, {"color.opacity", opacity}}; }
Values Chromatic(double red, double green, double blue) {
  return {{"chromatic-aberration.visible", 1},
          {"chromatic-aberration.red-cyan", red},
          {"chromatic-aberration.green-magenta", green},
          {"chromatic-aberration.blue-yellow", blue}};
}
Values Blend(double mode, double intensity) { return {{"mode", mode}, {"intensity", intensity}}; }
Values Invert() { return {{"lens.invert-alpha", 1}}; }
Values Turned(double degrees) { return {{"lens.rotation", degrees}}; }

constexpr double kNone = 1, kCircle = 2, kWide = 3, kTall = 4, kTriangle = 5, kCustom = 6;
constexpr double kAdd = 2, kScreen = 3, kMultiply = 4;

std::vector<FaultCase> MakeCases() {
  constexpr auto kUsual = headless::NewWorldDepth::kRenderDepth;
  constexpr auto kEightBit = headless::NewWorldDepth::kEightBit;
  const Values everything = Fast(3) + Realistic(3) + Optical(60) + Trail(70) + Directional(3) +
                            Lightness(30) + Color(40) + Chromatic(20, 30, 40);
  return {
      {"nothing but the blend", Lens(kNone, 0)},
      {"the default settings", Lens(kCircle, 0) + Fast(20) + Lightness(0)},
      {"fast blur, wide radius", Lens(kCircle, 30) + Fast(40000) + Turned(40), CustomLayer::kNone,
       kUsual, true},
      {"fast blur beyond single means", Lens(kCircle, 30) + Fast(5000), CustomLayer::kNone, kUsual,
       true},
      {"fast blur by the lens", Lens(kCircle, 90) + Fast(4, 1)},
      {"fast blur by the lens, narrow feather", Lens(kWide, 1) + Fast(30, 1)},
      {"fast blur of an unrepresentable amount", Lens(kCircle, 90) + Fast(1e10), CustomLayer::kNone,
       kUsual, true},
      {"fast blur of a lens of no extent",
       Lens(kCircle, 9) + Fast(4) + Values{{"lens.scale-width", 0}}},
      {"realistic blur", Lens(kTall, 40) + Realistic(4)},
      {"realistic blur with weights that are no numbers",
       Lens(kTall, 40) + Realistic(4) + Values{{"realistic-blur.iris-aspect-ratio", 0}}},
      {"realistic blur, stretched iris",
       Lens(kTall, 40) + Realistic(5) +
           Values{{"realistic-blur.iris-aspect-ratio", 2}, {"realistic-blur.iris-roundness", 50}}},
      {"realistic blur by the lens", Lens(kTriangle, 150) + Turned(20) + Realistic(5, 1)},
      {"realistic blur of next to nothing", Lens(kCircle, 9) + Realistic(0.005)},
      {"realistic blur by the lens, next to nothing", Lens(kCircle, 9) + Realistic(0.005, 1)},
      {"realistic blur of too large a radius", Lens(kCircle, 9) + Realistic(3000)},
      {"optical distortion", Lens(kWide, 30) + Turned(15) + Optical(120)},
      {"optical distortion to a point", Lens(kCircle, 30) + Optical(180)},
      {"trail", Lens(kCircle, 30) + Trail(100)},
      {"trail without taps", Lens(kCircle, 30) + Trail(1)},
      {"directional blur", Lens(kCircle, 30) + Directional(5)},
      {"directional blur of one tap", Lens(kCircle, 30) + Directional(0.5)},
      {"directional blur of too long a line", Lens(kCircle, 30) + Directional(1e9)},
      {"tones and a custom lens",
       Lens(kCustom, 0) + Lightness(-40) + Color(60) + Chromatic(50, 0, 100),
       CustomLayer::kOfTheRendersDepth},
      {"an inverted custom lens of the other depth",
       Lens(kCustom, 0) + Invert() + Values{{"lens.placement", 2}} + Lightness(20),
       CustomLayer::kOfTheOtherDepth},
      {"a custom lens in new worlds of 8 bits", Lens(kCustom, 0) + Fast(2),
       CustomLayer::kOfTheRendersDepth, kEightBit},
      {"a lens without an image", Lens(kCustom, 0) + Invert() + Blend(kScreen, 50)},
      {"everything", Lens(kCircle, 40) + everything + Blend(kAdd, 70)},
      {"everything by the lens",
       Lens(kCircle, 90) + everything + Fast(4, 1) + Realistic(4, 1) + Blend(kMultiply, 80)},
      {"both maps without chromatic aberration",
       Lens(kTriangle, 200) + Fast(4, 1) + Realistic(4, 1) + Blend(kScreen, 80)},
      {"everything in new worlds of 8 bits", Lens(kCircle, 90) + everything + Fast(4, 1),
       CustomLayer::kNone, kEightBit},
      {"a blend of no known mode", Lens(kCircle, 50) + Lightness(10) + Blend(9, 60)},
  };
}

}  // namespace

const std::vector<FaultCase>& FaultCases() {
  static const std::vector<FaultCase> cases = MakeCases();
  return cases;
}

FaultRender::FaultRender(std::shared_ptr<const headless::EffectModule> module,
                         const FaultCase& faultCase, bool deep)
    : host_(std::move(module)),
      input_(kWidth, kHeight, deep, {.rowPadding = 4}),
      output_(kWidth, kHeight, deep, {.rowPadding = 12}) {
  input_.FillNoise(20261101);
  for (const char* const group :
       {"fast-blur", "realistic-blur", "optical-distortion", "trail", "directional-blur",
        "lightness", "color", "chromatic-aberration"}) {
    SetNumber(host_, std::string(group) + ".visible", 0);
  }
  for (const auto& [path, value] : faultCase.values) SetNumber(host_, path, value);
  host_.SetPointPixels(host_.IndexOf("lens.position"), 6.5, 4.5);
  host_.SetPointPixels(host_.IndexOf("optical-distortion.center"), 3, 2);
  host_.SetPointPixels(host_.IndexOf("trail.center"), 10, 1);
  if (faultCase.custom != CustomLayer::kNone) {
    const bool same = faultCase.custom == CustomLayer::kOfTheRendersDepth;
    custom_.emplace(kWidth + 3, kHeight + 1, same ? deep : !deep);
    custom_->FillNoise(20261102);
  }
  options_.newWorldDepth = faultCase.newWorldDepth;
}

headless::RenderResult FaultRender::Render() {
  output_.FillBytes(0xA5);
  return host_.Render(input_, output_, Custom(), options_);
}

}  // namespace vitrell::reliability
