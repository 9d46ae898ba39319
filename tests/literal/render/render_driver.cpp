// One whole render as a pure function: from the input picture and the settings to the output.
#include "literal/render/render_driver.h"

#include <cmath>
#include <stdexcept>

#include "literal/blur/blur_dispatcher.h"
#include "literal/colour/blend_modes.h"
#include "literal/colour/chromatic_aberration.h"
#include "literal/colour/color_effect.h"
#include "literal/colour/lightness.h"
#include "literal/lens/lens_mask.h"
#include "literal/lens/lens_stage.h"

namespace vitrell::literal {
namespace {

World NewWorld(std::int32_t width, std::int32_t height, bool deep, const Pixel& fresh) {
  World world;
  world.deep = deep;
  world.width = width;
  world.height = height;
  world.extent = {0, 0, width, height};
  world.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), fresh);
  return world;
}

std::uint16_t ConvertChannel(std::uint16_t channel, bool toDeep) {
  if (toDeep) {
    return static_cast<std::uint16_t>(std::lround(channel * 32768.0 / 255.0));
  }
  return channel >= 32768 ? std::uint16_t{255}
                          : static_cast<std::uint16_t>(std::lround(channel * 255.0 / 32768.0));
}

bool ChromaticIsOn(const Settings& s) {
  return s.chromaticVisible == 1 &&
         (s.chromaticRedCyan > 0 || s.chromaticGreenMagenta > 0 || s.chromaticBlueYellow > 0);
}

// The stages between the two blur passes, and the second of these, on the working worlds.
void RunStages(const RenderInputs& in, const Settings& s, const Mask& mask, const World& input,
               World& a, World& b) {
  const Plan plan = MakePlan(s);
  BlurChain(s, in.maths, mask, 0, a, b);
  if (plan.lightness) {
    LightnessPass(LightnessExponent(s.lightnessAmount, in.maths), in.maths, b, a);
  } else {
    HostCopy(b, a);
  }
  if (plan.color) {
    ColorPass(s.colorOpacity, s.colorValue, a, b);
  } else {
    HostCopy(a, b);
  }
  if (plan.chromatic) {
    const float scales[3] = {1.0F - 0.5F * s.chromaticRedCyan,
                             1.0F - 0.5F * s.chromaticGreenMagenta,
                             1.0F - 0.5F * s.chromaticBlueYellow};
    ChromaticPass(scales, s.positionX, s.positionY, mask, b, a);
  } else {
    HostCopy(b, a);
  }
  if (plan.blendBeforeLens) {
    BlendPass(input, s.intensity, s.mode, mask, a, b);
  }
  if (plan.lensIsCopy) {
    HostCopy(b, a);
  } else {
    LensPass(input, plan.useBlurMap, plan.blurMapAmount, mask, b, a);
  }
  if (plan.mappedBlurs) {
    BlurChain(s, in.maths, mask, 1, a, b);
    BlendPass(input, s.intensity, s.mode, mask, b, a);
  }
}

}  // namespace

Plan MakePlan(const Settings& s) {
  const float twiceFeather = 2.0F * s.feather;
  const float fastShare = s.fastBlurAmount / 100.0F;
  const float realisticShare = s.realisticAmount / 100.0F;
  const bool fastMapped = s.fastBlurVisible == 1 && s.fastBlurUseLensAsBlurMap == 1;
  const bool realisticMapped = s.realisticVisible == 1 && s.realisticUseLensAsBlurMap == 1;
  const bool p = fastMapped && s.fastBlurAmount > 0 && fastShare < twiceFeather;
  const bool q = realisticMapped && s.realisticAmount > 0;
  Plan plan;
  plan.lightness = s.lightnessVisible == 1;
  plan.color = s.colorVisible == 1 && s.colorOpacity > 0;
  plan.chromatic = ChromaticIsOn(s);
  plan.blendBeforeLens = (!p && !q) || plan.chromatic;
  plan.lensIsCopy = s.lensType == 1 || s.scaleWidth <= 0 || s.scaleHeight <= 0;
  if (fastMapped && twiceFeather <= fastShare) {
    plan.useBlurMap = true;
    plan.blurMapAmount = static_cast<double>(fastShare);
  }
  // Kept: the realistic amount is a fraction already and is divided by 100 once more.
  if (realisticMapped && twiceFeather <= realisticShare) {
    plan.useBlurMap = true;
    plan.blurMapAmount = static_cast<double>(realisticShare);
  }
  plan.mappedBlurs = p || q;
  return plan;
}

bool NewWorldIsDeep(std::int32_t flags, bool newWorldDeep) {
  return (flags & kNewDeepWorld) != 0 || newWorldDeep;
}

void HostCopy(const World& from, World& to) {
  if (from.width != to.width || from.height != to.height) {
    throw std::logic_error("copies between sizes are not part of a render");
  }
  if (from.deep == to.deep) {
    to.pixels = from.pixels;
    return;
  }
  for (std::size_t i = 0; i < from.pixels.size(); ++i) {
    for (int n = 0; n < 4; ++n) {
      to.pixels[i].channel[n] = ConvertChannel(from.pixels[i].channel[n], to.deep);
    }
  }
}

RenderOutcome Render(const RenderInputs& in) {
  RenderOutcome outcome;
  outcome.output = in.output;
  outcome.inputExtent = in.input.extent;
  World customCopy;
  if (in.custom != nullptr) {
    const bool deep = NewWorldIsDeep(in.customFlags, in.newWorldDeep);
    customCopy = NewWorld(in.custom->width, in.custom->height, deep, in.fresh);
    HostCopy(*in.custom, customCopy);
  }
  Settings settings = in.settings;
  settings.customLayer = &customCopy;
  const Mask mask = BuildLensMask(settings, in.maths, in.output.extent, in.output.width,
                                  in.output.height, in.input.extent);
  World a = NewWorld(in.input.width, in.input.height, in.newWorldDeep, in.fresh);
  World b = a;
  World input = in.input;
  // Kept: the origin of the host's own input record is zeroed.
  input.extent.left = 0;
  input.extent.top = 0;
  outcome.inputExtent = input.extent;
  HostCopy(input, a);
  RunStages(in, settings, mask, input, a, b);
  HostCopy(a, outcome.output);
  return outcome;
}

}  // namespace vitrell::literal
