// The final blend: the processed picture over the unprocessed layer, by mode and intensity.
#include "literal/colour/blend_modes.h"

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

constexpr double kOverWhite16 = 3.0517578125e-05;  // 1 / 32768.

// A background channel in the depth of the destination. Kept: 16-bit full scale is 32767 here.
std::int32_t BackgroundChannel(std::uint16_t channel, bool backgroundDeep, bool deep) {
  if (backgroundDeep == deep) {
    return channel;
  }
  if (deep) {
    return TruncateToInt(channel / 255.0 * 32767.0);
  }
  const std::int32_t value = TruncateToInt(channel / 32767.0 * 255.0);
  return value > 255 ? 255 : value;
}

// b + o * change, in single precision throughout.
std::int32_t Toward(std::int32_t b, std::int32_t change, float o) {
  const float step = static_cast<float>(change) * o;
  return TruncateToInt(static_cast<double>(static_cast<float>(b) + step));
}

std::int32_t MultiplyTowards(std::int32_t b, std::int32_t p, float o, double m) {
  const float step = static_cast<float>(WrapSubtract(p, b)) * o;
  return TruncateToInt(b + static_cast<double>(step) * m);
}

}  // namespace

std::uint8_t BlendChannel8(std::int32_t f, std::int32_t b, double m, float opacity,
                           std::int32_t mode, std::uint8_t present) {
  std::int32_t result = present;
  if (mode == 1) {
    const float front = static_cast<float>(f) * opacity;
    const float back = static_cast<float>(b) * (1.0F - opacity);
    result = TruncateToInt(static_cast<double>(front + back));
  } else if (mode == 2) {
    std::int32_t t = TruncateToInt(f * m + b);
    t = t > 255 ? 255 : t;
    result = Toward(b, WrapSubtract(t, b), opacity);
  } else if (mode == 3) {
    const double screen = (1 - (1 - b / 255.0) * (1 - f * m / 255.0)) * 255;
    const std::int32_t s = ChannelFromInt(TruncateToInt(screen), false);
    result = Toward(b, s - b, opacity);
  } else if (mode == 4) {
    result = MultiplyTowards(b, (f * b) / 255, opacity, m);
  }
  return static_cast<std::uint8_t>(ChannelFromInt(result, false));
}

std::uint16_t BlendChannel16(std::int32_t f, std::int32_t b, double m, float opacity,
                             std::int32_t mode, std::uint16_t present) {
  std::int32_t v = present;
  if (mode == 1) {
    const float front = opacity * static_cast<float>(f);
    const float back = (1.0F - opacity) * static_cast<float>(b);
    v = TruncateToInt(static_cast<double>(front + back));
  } else if (mode == 2) {
    const std::int32_t s = TruncateToInt(f * m + b);
    const std::int32_t t = s > 32768 ? 32768 : f + b;
    v = Toward(b, t - b, opacity);
  } else if (mode == 3) {
    const double screen = (1 - (1 - b * kOverWhite16) * (1 - f * m * kOverWhite16)) * 32768.0;
    v = Toward(b, WrapSubtract(TruncateToInt(screen), b), opacity);
  } else if (mode == 4) {
    v = MultiplyTowards(b, WrapMultiply(f, b) >> 15, opacity, m);
  }
  return ChannelFromReal(b * (1 - m) + v * m, true);
}

void BlendPass(const World& background, float opacity, std::int32_t mode, const Mask& mask,
               const World& src, World& dst) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const Pixel back = GetPointerFromData(background, y, x, 1);
      const Pixel& front = src.At(y, x);
      Pixel& out = dst.At(y, x);
      const double m = GetLensMask(mask, x, y, dst);
      if (dst.deep ? m <= 0.0001 : m < 0.0001) {
        out = front;
        continue;
      }
      for (int i = 0; i < 4; ++i) {
        const std::int32_t b = BackgroundChannel(back.channel[i], background.deep, dst.deep);
        std::uint16_t& channel = out.channel[i];
        if (dst.deep) {
          channel = BlendChannel16(front.channel[i], b, m, opacity, mode, channel);
        } else {
          channel = BlendChannel8(front.channel[i], b, m, opacity, mode,
                                  static_cast<std::uint8_t>(channel));
        }
      }
    }
  }
}

}  // namespace vitrell::literal
