// Colour: moves every channel, alpha included, toward a target colour by an opacity.
#include "colour/color_effect.h"

#include <cstddef>

#include "base/buffer.h"
#include "base/depth_traits.h"
#include "base/numeric.h"
#include "host/result.h"
#include "host/world.h"

namespace vitrell {
namespace {

// Factor from the 8-bit target channels to the depth of the pixels.
// Kept: for 16 bits it is 256 and does not map white to 32768, so that a full opacity writes 65280
// for 255, above white.
template <typename Pixel>
constexpr float kTargetScale = 1.0f;
template <>
constexpr float kTargetScale<PF_Pixel16> = 256.0f;

template <typename Pixel>
PF_Err PullTowardColor(const ColorRefcon& refcon, const Pixel& in, Pixel* out) {
  using Channel = ChannelOf<Pixel>;
  const auto pull = [opacity = refcon.opacity](std::uint8_t target, Channel value) {
    const float distance = target * kTargetScale<Pixel> - value;
    return TruncateToChannel<Channel>(distance * opacity + value);
  };
  const PF_Pixel& color = refcon.color;
  *out = {pull(color.alpha, in.alpha), pull(color.red, in.red), pull(color.green, in.green),
          pull(color.blue, in.blue)};
  return PF_Err_NONE;
}

// The refcon is a look-up table: entry v is the result for a pixel whose four channels are all v.
template <typename Pixel>
PF_Err LookUpColor(void* refcon, A_long /*x*/, A_long /*y*/, Pixel* in, Pixel* out) {
  const auto* const table = static_cast<const Pixel*>(refcon);
  *out = {table[in->alpha].alpha, table[in->red].red, table[in->green].green, table[in->blue].blue};
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err RunPass(const StageCall& call, const ColorRefcon& refcon) {
  using Channel = ChannelOf<Pixel>;
  constexpr std::size_t kValueCount = std::size_t{1} << (8 * sizeof(Channel));
  Buffer<Pixel> table;
  if (!table.Allocate(kValueCount)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  for (std::size_t i = 0; i < kValueCount; ++i) {
    const auto value = static_cast<Channel>(i);
    RETURN_IF_ERROR(PullTowardColor(refcon, Pixel{value, value, value, value}, &table[i]));
  }
  return call.Iterate(CallbackOfDepth(LookUpColor<Pixel>), table.data());
}

}  // namespace

PF_Err ColorEffect8(void* refcon, A_long /*x*/, A_long /*y*/, PF_Pixel* in, PF_Pixel* out) {
  return PullTowardColor(*static_cast<const ColorRefcon*>(refcon), *in, out);
}

PF_Err ColorEffect16(void* refcon, A_long /*x*/, A_long /*y*/, PF_Pixel16* in, PF_Pixel16* out) {
  return PullTowardColor(*static_cast<const ColorRefcon*>(refcon), *in, out);
}

PF_Err RunColorEffect(const StageCall& call) {
  const ColorRefcon refcon = {call.info.colorOpacity, call.info.colorValue};
  return IsDeep(*call.io.dst) ? RunPass<PF_Pixel16>(call, refcon) : RunPass<PF_Pixel>(call, refcon);
}

}  // namespace vitrell
