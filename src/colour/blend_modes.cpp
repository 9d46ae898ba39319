// The final blend of the processed image over the unprocessed layer inside the lens.
#include "colour/blend_modes.h"

#include <algorithm>

#include "base/numeric.h"
#include "base/pixel_access.h"

namespace vitrell {
namespace {

// Kept: conversions between depths take 16-bit white as 32767, the modes as 32768.
constexpr double kDeepFullScale = 32767.0;
constexpr double kShallowFullScale = 255.0;
constexpr double kInverseDeepWhite = 3.0517578125e-05;  // 1 / 32768.

PF_Pixel ReadBackground8(const BlendRefcon& blend, int x, int y) {
  if (blend.deep == 0) {
    return GetPointerFromData<PF_Pixel>(blend.inputLayer, y, x, 1);
  }
  const auto deep = GetPointerFromData<PF_Pixel16>(blend.inputLayer, y, x, 1);
  const auto convert = [](std::uint16_t channel) {
    return static_cast<std::uint8_t>(
        std::clamp(TruncateToInt32(channel / kDeepFullScale * kShallowFullScale), 0, 255));
  };
  return {convert(deep.alpha), convert(deep.red), convert(deep.green), convert(deep.blue)};
}

PF_Pixel16 ReadBackground16(const BlendRefcon& blend, int x, int y) {
  if (blend.deep != 0) {
    return GetPointerFromData<PF_Pixel16>(blend.inputLayer, y, x, 1);
  }
  const auto shallow = GetPointerFromData<PF_Pixel>(blend.inputLayer, y, x, 1);
  const auto convert = [](std::uint8_t channel) {
    return TruncateToChannel<std::uint16_t>(channel / kShallowFullScale * kDeepFullScale);
  };
  return {convert(shallow.alpha), convert(shallow.red), convert(shallow.green),
          convert(shallow.blue)};
}

// base + (target - base) x opacity in single precision, with a difference that wraps at 32 bits.
float Toward(std::int32_t base, std::int32_t target, float opacity) {
  return static_cast<float>(base) + static_cast<float>(WrappingSubtract(target, base)) * opacity;
}

// Blends one channel of front f over background b; mode must be one of the four.
std::uint8_t Blend8(std::int32_t f, std::int32_t b, double m, float opacity, std::int32_t mode) {
  switch (mode) {
    case kNormal:  // Kept: the feather has no effect here.
      return TruncateToChannel<std::uint8_t>(static_cast<float>(f) * opacity +
                                             static_cast<float>(b) * (1.0F - opacity));
    case kAdd: {
      const std::int32_t sum = std::min(TruncateToInt32(f * m + b), 255);
      return TruncateToChannel<std::uint8_t>(Toward(b, sum, opacity));
    }
    case kScreen: {
      const auto screened = TruncateToChannel<std::uint8_t>(
          (1 - (1 - b / kShallowFullScale) * (1 - f * m / kShallowFullScale)) * kShallowFullScale);
      return TruncateToChannel<std::uint8_t>(Toward(b, screened, opacity));
    }
    default: {
      const std::int32_t product = f * b / 255;
      const float change = static_cast<float>(product - b) * opacity;
      return TruncateToChannel<std::uint8_t>(b + change * m);
    }
  }
}

// Blends one channel of front f over background b, still without the feather; current is the
// destination's value.
std::int32_t Blend16(std::int32_t f, std::int32_t b, std::uint16_t current, double m, float opacity,
                     std::int32_t mode) {
  switch (mode) {
    case kNormal:
      return TruncateToInt32(opacity * static_cast<float>(f) +
                             (1.0F - opacity) * static_cast<float>(b));
    case kAdd: {
      // Kept: the masked sum decides whether the result is capped, but the unmasked sum is used.
      const std::int32_t masked = TruncateToInt32(f * m + b);
      const std::int32_t sum = masked > PF_MAX_CHAN16 ? PF_MAX_CHAN16 : f + b;
      return TruncateToInt32(Toward(b, sum, opacity));
    }
    case kScreen: {
      const std::int32_t screened = TruncateToInt32(
          (1 - (1 - b * kInverseDeepWhite) * (1 - f * m * kInverseDeepWhite)) * 32768.0);
      return TruncateToInt32(Toward(b, screened, opacity));
    }
    case kMultiply: {
      // Kept: the mask is applied here and once more in the feather.
      const std::int32_t product = WrappingMultiply(f, b) >> 15;
      const float change = opacity * static_cast<float>(product - b);
      return TruncateToInt32(b + change * m);
    }
    default:
      return current;
  }
}

}  // namespace

PF_Err OpacityWithMode8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out) {
  const auto& masked = *static_cast<const MaskedBlend*>(refcon);
  const BlendRefcon& blend = masked.blend;
  // Normal at full opacity gives f x 1 + b x 0 inside the lens, and f outside: always f.
  if (blend.mode == kNormal && blend.intensity == 1.0F) {
    *out = *in;
    return PF_Err_NONE;
  }
  const double m = masked.mask.At(x, y);
  if (m < kMaskThreshold) {
    *out = *in;
    return PF_Err_NONE;
  }
  if (blend.mode < kNormal || blend.mode > kMultiply) {
    return PF_Err_NONE;
  }
  const PF_Pixel b = ReadBackground8(blend, x, y);
  const auto mix = [&](std::uint8_t front, std::uint8_t back) {
    return Blend8(front, back, m, blend.intensity, blend.mode);
  };
  *out = {mix(in->alpha, b.alpha), mix(in->red, b.red), mix(in->green, b.green),
          mix(in->blue, b.blue)};
  return PF_Err_NONE;
}

PF_Err OpacityWithMode16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out) {
  const auto& masked = *static_cast<const MaskedBlend*>(refcon);
  const BlendRefcon& blend = masked.blend;
  const double m = masked.mask.At(x, y);
  // Outside the lens the result is f; so it is under a mask of 1 in Normal at full opacity.
  if (m <= kMaskThreshold || (m == 1 && blend.mode == kNormal && blend.intensity == 1.0F)) {
    *out = *in;
    return PF_Err_NONE;
  }
  const PF_Pixel16 b = ReadBackground16(blend, x, y);
  const auto mix = [&](std::uint16_t front, std::uint16_t back, std::uint16_t current) {
    const std::int32_t v = Blend16(front, back, current, m, blend.intensity, blend.mode);
    return TruncateToChannel<std::uint16_t>(back * (1 - m) + v * m);
  };
  *out = {mix(in->alpha, b.alpha, out->alpha), mix(in->red, b.red, out->red),
          mix(in->green, b.green, out->green), mix(in->blue, b.blue, out->blue)};
  return PF_Err_NONE;
}

}  // namespace vitrell
