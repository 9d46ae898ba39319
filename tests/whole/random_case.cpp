// One random render: pictures, parameters and host options, all from one seed.
#include "whole/random_case.h"

#include <cstdlib>
#include <sstream>
#include <utility>

#include "whole/dice.h"
#include "whole/random_parameters.h"
#include "whole/random_pictures.h"

namespace vitrell::whole {
namespace {

using headless::EffectHost;
using headless::WorldBuffer;

std::string ShapeText(const WorldBuffer& world) {
  const PF_LRect extent = world.Def().extent_hint;
  std::ostringstream text;
  text << world.Width() << "x" << world.Height() << (world.Deep() ? " 16-bit" : " 8-bit")
       << " extent " << headless::RectText(&extent) << " padding " << world.Layout().rowPadding
       << " flags " << world.Def().world_flags;
  return text.str();
}

std::string ValueText(const headless::Parameter& parameter, const PF_ParamDef& record) {
  std::ostringstream text;
  text.precision(17);
  switch (parameter.type) {
    case PF_Param_FLOAT_SLIDER:
      text << record.u.fs_d.value;
      break;
    case PF_Param_POPUP:
      text << record.u.pd.value;
      break;
    case PF_Param_CHECKBOX:
      text << record.u.bd.value;
      break;
    case PF_Param_POINT:
      text << record.u.td.x_value << "," << record.u.td.y_value << " (16.16)";
      break;
    case PF_Param_ANGLE:
      text << record.u.ad.value << " (16.16)";
      break;
    case PF_Param_COLOR: {
      const PF_Pixel color = record.u.cd.value;
      text << +color.alpha << "," << +color.red << "," << +color.green << "," << +color.blue;
      break;
    }
    default:
      break;
  }
  return text.str();
}

}  // namespace

RandomCase MakeRandomCase(std::uint64_t seed, EffectHost& host) {
  Dice dice(seed);
  const PictureSize size = RandomSize(dice);
  const bool deep = dice.Chance(50);
  RandomCase result{seed,
                    WorldBuffer(size.width, size.height, deep, RandomLayout(dice)),
                    WorldBuffer(size.width, size.height, deep, RandomLayout(dice)),
                    std::nullopt,
                    {}};
  Paint(dice, 12, result.input);
  result.output.FillNoise(seed);
  result.input.SetExtentHint(RandomExtent(dice, size));
  result.output.SetExtentHint(RandomExtent(dice, size));
  if (dice.Chance(30)) {
    result.custom.emplace(RandomCustomLayer(dice, size, deep));
  }
  SetRandomParameters(dice, size, result.custom.has_value(), host);
  result.options.newWorldDepth =
      dice.Chance(70) ? headless::NewWorldDepth::kRenderDepth : headless::NewWorldDepth::kEightBit;
  result.options.newWorldLayout = RandomLayout(dice);
  result.options.extraWorldFlags = dice.Chance(50) ? PF_WorldFlag_WRITEABLE : 0;
  result.options.currentTime = dice.Below(50);
  result.options.timeStep = dice.Between(-1, 3);
  result.options.timeScale = dice.Pick<A_u_long>({24, 30, 60});
  return result;
}

std::string Describe(const RandomCase& randomCase, const EffectHost& host) {
  std::ostringstream text;
  text << "case VITRELL_SEED=" << randomCase.seed << " VITRELL_RANDOM_RENDERS=1\n  input "
       << ShapeText(randomCase.input) << "\n  output " << ShapeText(randomCase.output);
  if (randomCase.custom.has_value()) {
    text << "\n  custom " << ShapeText(*randomCase.custom);
  }
  text << "\n  new worlds "
       << (randomCase.options.newWorldDepth == headless::NewWorldDepth::kEightBit ? "8-bit"
                                                                                  : "as the render")
       << ", flags beside the depth " << randomCase.options.extraWorldFlags << "\n";
  for (const headless::Parameter& parameter : host.Parameters()) {
    if (parameter.IsControl() && parameter.type != PF_Param_LAYER) {
      text << "  " << parameter.index << " " << parameter.path << " = "
           << ValueText(parameter, host.Record(parameter.index)) << "\n";
    }
  }
  return text.str();
}

std::uint64_t BaseSeed(std::uint64_t fallback) {
  const char* text = std::getenv("VITRELL_SEED");
  return text == nullptr ? fallback : std::strtoull(text, nullptr, 10);
}

int CaseCount(int fallback) {
  const char* text = std::getenv("VITRELL_RANDOM_RENDERS");
  return text == nullptr ? fallback : std::atoi(text);
}

}  // namespace vitrell::whole
