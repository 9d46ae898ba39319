// What the literal render makes of a fuzzed frame, compared with what the effect made of it.
#include "fuzz/literal_check.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>

#include "fuzz/fuzz_target.h"
#include "literal/render/settings.h"
#include "shell/parameters.h"
#include "whole/literal_bridge.h"

namespace vitrell::fuzz {
namespace {

using reliability::FormatAnswer;
using reliability::RawHost;
using reliability::WorldKind;

// What the literal render follows in a moment: it walks every tap, and folds positions back step
// by step.
constexpr double kLongestRadius = 40;
constexpr double kLargestAmount = 600;
constexpr A_long kFarthestPoint = 1000 << 16;

// Another place in memory, the same picture.
bool IsPlain(WorldKind kind) {
  return kind == WorldKind::kUsual || kind == WorldKind::kOddPadding ||
         kind == WorldKind::kBottomUp;
}

bool IsSound(WorldKind kind) {
  return IsPlain(kind) || kind == WorldKind::kSmallExtent || kind == WorldKind::kLargeExtent ||
         kind == WorldKind::kShiftedExtent;
}

bool IsNear(A_long fixed) { return fixed >= -kFarthestPoint && fixed <= kFarthestPoint; }

bool IsShort(const PF_ParamDef& record, double most) {
  switch (record.param_type) {
    case PF_Param_FLOAT_SLIDER:
      return std::fabs(record.u.fs_d.value) <= most;
    case PF_Param_POINT:
      return IsNear(record.u.td.x_value) && IsNear(record.u.td.y_value);
    default:
      return true;
  }
}

bool CanFollow(RawHost& host) {
  const RawHost::Setup& setup = host.GetSetup();
  if (!IsSound(setup.input) || !IsSound(setup.output) || !IsPlain(setup.newWorlds)) return false;
  if (!IsSound(setup.custom) && setup.custom != WorldKind::kNoData) return false;
  if (setup.format != FormatAnswer::kByFlags) return false;
  for (int index = 1; index < PARAM_COUNT; ++index) {
    const double most = index == PARAM_REALISTIC_AMOUNT ? kLongestRadius : kLargestAmount;
    if (!IsShort(host.Param(index), most)) return false;
  }
  return true;
}

literal::Pixel PixelAt(const RawHost& host, const PF_LayerDef& record, A_long x, A_long y) {
  if ((record.world_flags & PF_WorldFlag_DEEP) != 0) {
    PF_Pixel16 pixel;
    std::memcpy(&pixel, host.PixelAt(record, x, y, sizeof(pixel)), sizeof(pixel));
    return {{pixel.alpha, pixel.red, pixel.green, pixel.blue}};
  }
  PF_Pixel pixel;
  std::memcpy(&pixel, host.PixelAt(record, x, y, sizeof(pixel)), sizeof(pixel));
  return {{pixel.alpha, pixel.red, pixel.green, pixel.blue}};
}

literal::World ToLiteral(const RawHost& host, const PF_LayerDef& record) {
  const PF_LRect& extent = record.extent_hint;
  literal::World world;
  world.deep = (record.world_flags & PF_WorldFlag_DEEP) != 0;
  world.width = record.width;
  world.height = record.height;
  world.extent = {extent.left, extent.top, extent.right, extent.bottom};
  if (record.data == nullptr) return world;
  for (A_long y = 0; y < record.height; ++y) {
    for (A_long x = 0; x < record.width; ++x) {
      world.pixels.push_back(PixelAt(host, record, x, y));
    }
  }
  return world;
}

}  // namespace

std::optional<literal::RenderOutcome> LiteralRender(RawHost& host) {
  if (!CanFollow(host)) return std::nullopt;
  const literal::World custom = ToLiteral(host, host.customRecord);
  literal::RenderInputs inputs;
  inputs.input = ToLiteral(host, host.Param(PARAM_INPUT).u.ld);
  inputs.output = ToLiteral(host, host.outputRecord);
  inputs.custom = custom.HasData() ? &custom : nullptr;
  inputs.customFlags = host.customRecord.world_flags;
  inputs.settings = literal::SettingsFromParams(host.params.data());
  inputs.maths = whole::LiteralMaths();
  inputs.newWorldDeep = host.GetSetup().deep;
  return literal::Render(inputs);
}

void RequirePicture(const literal::World& expected, const RawHost& host) {
  const literal::World actual = ToLiteral(host, host.outputRecord);
  for (A_long y = 0; y < expected.height; ++y) {
    for (A_long x = 0; x < expected.width; ++x) {
      for (int i = 0; i < 4; ++i) {
        const int wanted = expected.At(y, x).channel[i];
        const int got = actual.At(y, x).channel[i];
        Require(wanted == got, "channel " + std::to_string(i) + " of pixel " + std::to_string(x) +
                                   ", " + std::to_string(y) + " is " + std::to_string(got) +
                                   ", not " + std::to_string(wanted));
      }
    }
  }
}

}  // namespace vitrell::fuzz
