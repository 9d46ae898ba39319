// The lens stage: the processed picture inside the lens, the unprocessed one outside it.
#include "literal/lens/lens_stage.h"

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

// Kept: 16-bit full scale is 32767 in both directions. Single precision, no clamp.
std::uint16_t UnprocessedChannel(std::uint16_t channel, bool inputDeep, bool deep) {
  if (inputDeep == deep) {
    return channel;
  }
  const auto value = static_cast<float>(channel);
  const float converted = deep ? (value / 255.0F) * 32767.0F : (value / 32767.0F) * 255.0F;
  return ChannelFromReal(static_cast<double>(converted), deep);
}

}  // namespace

void LensPass(const World& input, bool useBlurMap, double blurMapAmount, const Mask& mask,
              const World& src, World& dst) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      Pixel unprocessed = GetPointerFromData(input, y, x, 1);
      for (std::uint16_t& channel : unprocessed.channel) {
        channel = UnprocessedChannel(channel, input.deep, dst.deep);
      }
      double m = GetLensMask(mask, x, y, dst);
      if (useBlurMap) {
        m = m + m * blurMapAmount;
        if (m > 1) {
          m = 1;
        }
      }
      Pixel& out = dst.At(y, x);
      if (m <= 0.0001) {
        out = unprocessed;
        continue;
      }
      for (int i = 0; i < 4; ++i) {
        out.channel[i] = ChannelFromReal(
            (1 - m) * unprocessed.channel[i] + m * src.At(y, x).channel[i] + 0.5, dst.deep);
      }
    }
  }
}

}  // namespace vitrell::literal
