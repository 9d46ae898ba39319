// The pass of the final blend: picks the callback for a render's mode and worlds.
#include "colour/blend_pass.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "base/pixel_access.h"
#include "colour/blend_lanes.h"
#include "colour/whole_blend_lanes.h"
#include "host/world.h"

namespace vitrell {
namespace {

// Whether all pairs of channels are computed before the pass. Other modes are cheaper to compute.
template <int kMode, typename Pixel>
constexpr bool kIsLookedUp = kMode == kScreen && sizeof(Pixel) == sizeof(PF_Pixel);

// Normal at full opacity: the blend is the front itself, and only the 16-bit feather is applied.
constexpr int kFrontAlone = 0;

template <int kMode>
void FillPairs(float opacity, BlendPass::PairTable* table) {
  for (std::size_t i = 0; i < table->size(); i += 4) {
    const auto back = static_cast<std::uint8_t>(i / 256);
    const auto front = static_cast<std::uint8_t>(i % 256);
    const PF_Pixel fronts = {front, static_cast<std::uint8_t>(front + 1),
                             static_cast<std::uint8_t>(front + 2),
                             static_cast<std::uint8_t>(front + 3)};
    const I32Lanes values = BlendedLanes<kMode>(fronts, {back, back, back, back}, 1, opacity);
    PF_Pixel bytes;
    StoreLowBits(values, &bytes);
    std::memcpy(table->data() + i, &bytes, sizeof(bytes));
  }
}

inline void LookUpPairs(const BlendPass::PairTable& table, const PF_Pixel& front,
                        const PF_Pixel& back, PF_Pixel* out) {
  const auto pair = [&table](std::uint8_t f, std::uint8_t b) {
    return table[std::size_t{b} * 256 + f];
  };
  *out = {pair(front.alpha, back.alpha), pair(front.red, back.red), pair(front.green, back.green),
          pair(front.blue, back.blue)};
}

PF_Err BlendChannels(const MaskedBlend& blend, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
  return OpacityWithMode8(const_cast<MaskedBlend*>(&blend), x, y, in, out);
}

PF_Err BlendChannels(const MaskedBlend& blend, A_long x, A_long y, PF_Pixel16* in,
                     PF_Pixel16* out) {
  return OpacityWithMode16(const_cast<MaskedBlend*>(&blend), x, y, in, out);
}

template <typename Pixel>
PF_Err CopyFront(void* /*refcon*/, A_long /*x*/, A_long /*y*/, Pixel* in, Pixel* out) {
  *out = *in;
  return PF_Err_NONE;
}

}  // namespace

// One pixel under a mask value of 1.
template <int kMode, typename Pixel>
inline void BlendPass::BlendWhole(const Pixel& front, const Pixel& back, Pixel* out) const {
  if constexpr (kIsLookedUp<kMode, Pixel>) {
    LookUpPairs(pairs_[0], front, back, out);
  } else {
    StoreLowBits(WholeBlendedLanes<kMode>(front, back, masked_.blend.intensity), out);
  }
}

// The same as OpacityWithMode8 and 16 where FitsLanes holds: a known mode, an opacity in [0, 1] and
// a background of the destination's depth with its origin at (0, 0).
template <int kMode, typename Pixel>
PF_Err BlendPass::BlendByLanes(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& pass = *static_cast<const BlendPass*>(refcon);
  const bool isOne = pass.ones_.Contain(x, y);
  if (isOne && kMode == kFrontAlone) {
    *out = *in;
    return PF_Err_NONE;
  }
  double m = 1;
  const bool isKnown = isOne || pass.masked_.mask.QuickAt(x, y, &m);
  constexpr bool kDeep = sizeof(Pixel) == sizeof(PF_Pixel16);
  if (!isKnown || !(m <= 1) || static_cast<std::uint32_t>(x) >= pass.width_ ||
      static_cast<std::uint32_t>(y) >= pass.height_) [[unlikely]] {
    return BlendChannels(pass.masked_, x, y, in, out);
  }
  // Kept: a mask value equal to the threshold is inside in 8 bits and outside in 16.
  const bool outside = kDeep ? m <= kMaskThreshold : m < kMaskThreshold;
  if (outside || (kMode == kFrontAlone && m == 1)) {
    *out = *in;
    return PF_Err_NONE;
  }
  const Pixel& back = reinterpret_cast<const Pixel*>(pass.background_ + y * pass.rowBytes_)[x];
  if (m == 1) {
    pass.BlendWhole<kMode>(*in, back, out);
    return PF_Err_NONE;
  }
  I32Lanes result = BlendedLanes<kMode>(*in, back, m, pass.masked_.blend.intensity);
  if (kDeep) {
    result = FeatherLanes(ToLanes(back), result, m);
  }
  StoreLowBits(result, out);
  return PF_Err_NONE;
}

// The same where the mask is 1 and the background has a pixel at every position of the pass.
template <int kMode, typename Pixel>
PF_Err BlendPass::BlendEverywhere(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& pass = *static_cast<const BlendPass*>(refcon);
  const Pixel& back = reinterpret_cast<const Pixel*>(pass.background_ + y * pass.rowBytes_)[x];
  pass.BlendWhole<kMode>(*in, back, out);
  return PF_Err_NONE;
}

bool BlendPass::FitsLanes(const PF_LayerDef& dst) const {
  const BlendRefcon& blend = masked_.blend;
  const bool isQuick =
      blend.mode != kMultiply || blend.intensity == 0 || blend.intensity >= kLeastQuickOpacity;
  return blend.mode >= kNormal && blend.mode <= kMultiply && blend.intensity >= 0 &&
         blend.intensity <= 1 && isQuick && (blend.deep != 0) == IsDeep(dst) &&
         HasPixelsFromOrigin(*blend.inputLayer);
}

template <int kMode>
PF_Err BlendPass::UseLanes(const PF_LayerDef& dst) {
  const bool isWhole = ones_.Cover(dst.width, dst.height);
  if constexpr (kMode == kFrontAlone) {
    callbacks_.pixel16 = isWhole ? CopyFront<PF_Pixel16> : BlendByLanes<kMode, PF_Pixel16>;
    return PF_Err_NONE;
  } else {
    const PF_LayerDef& layer = *masked_.blend.inputLayer;
    if (isWhole && layer.width >= dst.width && layer.height >= dst.height) {
      callbacks_ = {BlendEverywhere<kMode, PF_Pixel>, BlendEverywhere<kMode, PF_Pixel16>};
    } else {
      callbacks_ = {BlendByLanes<kMode, PF_Pixel>, BlendByLanes<kMode, PF_Pixel16>};
    }
    if (kIsLookedUp<kMode, PF_Pixel> && !IsDeep(dst)) {
      if (!pairs_.Allocate(1)) {
        return PF_Err_OUT_OF_MEMORY;
      }
      FillPairs<kMode>(masked_.blend.intensity, pairs_.data());
    }
    return PF_Err_NONE;
  }
}

PF_Err BlendPass::Prepare() {
  const BlendRefcon& blend = masked_.blend;
  const PF_LayerDef& dst = *blend.io->dst;
  const bool frontAlone = blend.mode == kNormal && blend.intensity == 1.0F;
  refcon_ = &masked_;
  callbacks_ = {frontAlone ? CopyFront<PF_Pixel> : OpacityWithMode8, OpacityWithMode16};
  if (!FitsLanes(dst)) {
    return PF_Err_NONE;
  }
  refcon_ = this;
  ones_ = masked_.mask.Ones();
  const PF_LayerDef& layer = *blend.inputLayer;
  background_ = static_cast<const char*>(layer.data);
  rowBytes_ = layer.rowbytes;
  width_ = static_cast<std::uint32_t>(layer.width);
  height_ = static_cast<std::uint32_t>(layer.height);
  switch (blend.mode) {
    case kNormal:
      return frontAlone ? UseLanes<kFrontAlone>(dst) : UseLanes<kNormal>(dst);
    case kAdd:
      return UseLanes<kAdd>(dst);
    case kScreen:
      return UseLanes<kScreen>(dst);
    default:
      return UseLanes<kMultiply>(dst);
  }
}

PF_Err BlendPass::Run(AEGP_SuiteHandler& suites) {
  const IO_Params& io = *masked_.blend.io;
  return RunPixelPass(suites, io.in_data, io.src, io.dst, io.src->height, callbacks_, refcon_);
}

}  // namespace vitrell
