// Converts images and parameters between the headless host and the literal versions.
#include "whole/literal_bridge.h"

#include <vector>

#include "literal/render/settings.h"

namespace vitrell::whole {
namespace {

literal::Pixel PixelAt(const headless::WorldBuffer& buffer, std::int32_t x, std::int32_t y) {
  if (buffer.Deep()) {
    const PF_Pixel16& pixel = buffer.At16(x, y);
    return {{pixel.alpha, pixel.red, pixel.green, pixel.blue}};
  }
  const PF_Pixel& pixel = buffer.At8(x, y);
  return {{pixel.alpha, pixel.red, pixel.green, pixel.blue}};
}

std::uint8_t Byte(std::uint16_t channel) { return static_cast<std::uint8_t>(channel); }

}  // namespace

literal::World ToLiteral(const headless::WorldBuffer& buffer) {
  literal::World world;
  world.deep = buffer.Deep();
  world.width = buffer.Width();
  world.height = buffer.Height();
  const PF_LRect& extent = buffer.Def().extent_hint;
  world.extent = {extent.left, extent.top, extent.right, extent.bottom};
  for (std::int32_t y = 0; y < buffer.Height(); ++y) {
    for (std::int32_t x = 0; x < buffer.Width(); ++x) {
      world.pixels.push_back(PixelAt(buffer, x, y));
    }
  }
  return world;
}

headless::WorldBuffer FromLiteral(const literal::World& world) {
  headless::WorldBuffer buffer(world.width, world.height, world.deep);
  for (std::int32_t y = 0; y < world.height; ++y) {
    for (std::int32_t x = 0; x < world.width; ++x) {
      const std::uint16_t(&c)[4] = world.At(y, x).channel;
      if (world.deep) {
        buffer.At16(x, y) = {c[0], c[1], c[2], c[3]};
      } else {
        buffer.At8(x, y) = {Byte(c[0]), Byte(c[1]), Byte(c[2]), Byte(c[3])};
      }
    }
  }
  return buffer;
}

literal::Maths LiteralMaths() {
  const PF_ANSICallbacksSuite1& maths = headless::HostMaths();
  return {maths.sin, maths.cos, maths.tan, maths.atan, maths.sqrt, maths.pow};
}

literal::RenderInputs MakeRenderInputs(const headless::EffectHost& host,
                                       const headless::WorldBuffer& input,
                                       const headless::WorldBuffer& output,
                                       const literal::World* custom, PF_WorldFlags customFlags,
                                       const headless::RenderOptions& options) {
  std::vector<const PF_ParamDef*> params;
  for (const headless::Parameter& parameter : host.Parameters()) {
    params.push_back(&host.Record(parameter.index));
  }
  literal::RenderInputs inputs;
  inputs.input = ToLiteral(input);
  inputs.output = ToLiteral(output);
  inputs.custom = custom;
  inputs.customFlags = customFlags;
  inputs.settings = literal::SettingsFromParams(params.data());
  inputs.maths = LiteralMaths();
  inputs.newWorldDeep =
      input.Deep() && options.newWorldDepth == headless::NewWorldDepth::kRenderDepth;
  inputs.newWorldExtraFlags = options.extraWorldFlags & ~PF_WorldFlag_DEEP;
  return inputs;
}

}  // namespace vitrell::whole
