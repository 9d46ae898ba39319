// The directional blur, evaluated step by step from its definition.
#include "literal/blur/directional/directional_blur.h"

#include <cstdint>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

constexpr double kMaskThreshold = 0.0001;

}  // namespace

void DirectionalPass(const World& src, World& dst, const Mask& mask,
                     const std::vector<LineTap>& taps) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const Pixel& in = src.At(y, x);
      Pixel& out = dst.At(y, x);
      out = in;
      if (!(GetLensMask(mask, x, y, dst) > kMaskThreshold) || taps.empty()) continue;
      float sums[3] = {0, 0, 0};
      double weightSum = 0;
      for (const LineTap& tap : taps) {
        const Pixel* pixel = GetPointerFromDataP(src, y + tap.y, x + tap.x, 1);
        if (pixel->channel[0] == 0) continue;
        for (int i = 0; i < 3; ++i) {
          sums[i] += static_cast<float>(pixel->channel[i + 1] * tap.weight);
        }
        weightSum += tap.weight;
      }
      if (weightSum == 0.0) continue;
      for (int i = 0; i < 3; ++i) {
        out.channel[i + 1] = ChannelFromReal(sums[i] / weightSum, dst.deep);
      }
    }
  }
}

}  // namespace vitrell::literal
