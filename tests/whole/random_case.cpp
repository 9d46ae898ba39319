// One random render: pictures, parameters and host options, all from one seed.
#include "whole/random_case.h"

#include <cstdlib>
#include <sstream>
#include <utility>

#include "whole/dice.h"
#include "whole/random_parameters.h"

namespace vitrell::whole {
namespace {

using headless::EffectHost;
using headless::WorldBuffer;
using headless::WorldLayout;

PictureSize RandomSize(Dice& dice) {
  switch (dice.Below(10)) {
    case 0:
      return {dice.Between(1, 4), dice.Between(1, 4)};
    case 1:
    case 2:
    case 3:
      return {dice.Between(1, 20), dice.Between(1, 20)};
    case 8:
    case 9:
      return {dice.Between(1, 97), dice.Between(1, 61)};
    default:
      return {dice.Between(5, 48), dice.Between(5, 36)};
  }
}

WorldLayout RandomLayout(Dice& dice) {
  WorldLayout layout;
  layout.rowPadding = dice.Pick<std::int32_t>({0, 0, 4, 8, 16, 64});
  if (dice.Chance(20)) {
    layout.guardPages =
        dice.Chance(50) ? headless::GuardPages::kAtEnd : headless::GuardPages::kAtStart;
  } else {
    layout.baseOffset = dice.Pick<std::int32_t>({0, 0, 4, 8, 32});
  }
  return layout;
}

// The extent hint as hosts give it: mostly whole, else a part, now and then larger than the world.
PF_LRect RandomExtent(Dice& dice, PictureSize size) {
  if (dice.Chance(70)) {
    return {0, 0, size.width, size.height};
  }
  if (dice.Chance(20)) {
    return {-dice.Below(6), -dice.Below(6), size.width + dice.Below(6),
            size.height + dice.Below(6)};
  }
  const std::int32_t left = dice.Below(size.width);
  const std::int32_t top = dice.Below(size.height);
  return {left, top, dice.Between(left + 1, size.width), dice.Between(top + 1, size.height)};
}

// How a random picture looks.
struct Look {
  std::int32_t white = 255;
  std::int32_t highest = 255;           // Above white now and then in 16 bits.
  std::int32_t transparentPercent = 0;  // Pixels without alpha; their colours stay or vanish.
  bool clearTransparent = false;
  bool opaque = false;
  std::int32_t blockSize = 1;  // Side of the equal blocks that the picture is made of.
};

Look RandomLook(Dice& dice, bool deep) {
  Look look;
  look.white = deep ? 32768 : 255;
  look.highest = deep && dice.Chance(12) ? 65535 : look.white;
  if (dice.Chance(10)) {
    look.highest = look.white / 64;  // Nearly black.
  }
  look.transparentPercent = dice.Pick<std::int32_t>({0, 0, 10, 60, 95});
  look.clearTransparent = dice.Chance(50);
  look.opaque = dice.Chance(40);
  look.blockSize = dice.Pick<std::int32_t>({1, 1, 3, 9});
  return look;
}

void Paint(Dice& dice, WorldBuffer& world) {
  const Look look = RandomLook(dice, world.Deep());
  const auto channel = [&] {
    return static_cast<std::uint16_t>(dice.Chance(10) ? look.highest
                                                      : dice.Between(0, look.highest));
  };
  const std::int32_t block = look.blockSize;
  for (std::int32_t y = 0; y < world.Height(); ++y) {
    for (std::int32_t x = 0; x < world.Width(); ++x) {
      const std::int32_t fromX = x - x % block;
      const std::int32_t fromY = y - y % block;
      PF_Pixel16 pixel{channel(), channel(), channel(), channel()};
      if (dice.Chance(look.transparentPercent)) {
        pixel.alpha = 0;
        if (look.clearTransparent) {
          pixel = {};
        }
      } else if (look.opaque) {
        pixel.alpha = static_cast<std::uint16_t>(look.white);
      }
      if (world.Deep()) {
        world.At16(x, y) = fromX == x && fromY == y ? pixel : world.At16(fromX, fromY);
      } else {
        const auto byte = [](std::uint16_t value) { return static_cast<A_u_char>(value); };
        world.At8(x, y) = fromX == x && fromY == y ? PF_Pixel{byte(pixel.alpha), byte(pixel.red),
                                                              byte(pixel.green), byte(pixel.blue)}
                                                   : world.At8(fromX, fromY);
      }
    }
  }
}

WorldBuffer RandomCustomLayer(Dice& dice, PictureSize size, bool deep) {
  const bool sameSize = dice.Chance(30);
  WorldBuffer layer(sameSize ? size.width : dice.Between(1, 60),
                    sameSize ? size.height : dice.Between(1, 40), dice.Chance(80) ? deep : !deep,
                    RandomLayout(dice));
  Paint(dice, layer);
  if (dice.Chance(30)) {
    layer.SetWorldFlags(layer.Def().world_flags | PF_WorldFlag_WRITEABLE);
  }
  return layer;
}

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

RandomCase MakeRandomCase(std::uint64_t seed, EffectHost& host, TrailUse trail) {
  Dice dice(seed);
  const PictureSize size = RandomSize(dice);
  const bool deep = dice.Chance(50);
  RandomCase result{seed,
                    WorldBuffer(size.width, size.height, deep, RandomLayout(dice)),
                    WorldBuffer(size.width, size.height, deep, RandomLayout(dice)),
                    std::nullopt,
                    {}};
  Paint(dice, result.input);
  result.output.FillNoise(seed);
  result.input.SetExtentHint(RandomExtent(dice, size));
  result.output.SetExtentHint(RandomExtent(dice, size));
  if (dice.Chance(30)) {
    result.custom.emplace(RandomCustomLayer(dice, size, deep));
  }
  SetRandomParameters(dice, size, result.custom.has_value(), trail, host);
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
