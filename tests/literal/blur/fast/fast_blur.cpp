// The fast blur: a box blur of the colours, across and down, three times over.
#include "literal/blur/fast/fast_blur.h"

#include <algorithm>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/lens/lens_mask.h"

namespace vitrell::literal {
namespace {

struct Sums {
  double color[3] = {0, 0, 0};
  double weight = 0;
};

// The box around (x, y) along one axis. `weighted` weighs each tap by the mask at its position.
Sums SumBox(const World& src, const World& dst, const Mask& mask, std::int32_t x, std::int32_t y,
            bool down, std::int32_t radius, bool weighted) {
  Sums sums;
  for (std::int32_t i = -radius; i <= radius; ++i) {
    const std::int32_t tapX = down ? x : x + i;
    const std::int32_t tapY = down ? y + i : y;
    const double w = weighted ? GetLensMask(mask, tapX, tapY, dst) : 1.0;
    const Pixel* tap = GetPointerFromDataP(src, tapY, tapX, 1);
    for (int n = 0; n < 3; ++n) {
      sums.color[n] += w * tap->channel[n + 1];
    }
    sums.weight += w;
  }
  return sums;
}

// One pass along one axis. Only the pass down blends with the unblurred picture.
void BoxPass(std::int32_t radius, bool lensMap, bool down, const Mask& mask, const World& src,
             const World& unblurred, World& dst) {
  for (std::int32_t y = 0; y < dst.height; ++y) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const Pixel& in = src.At(y, x);
      Pixel& out = dst.At(y, x);
      const double m = lensMap ? GetLensMask(mask, x, y, dst) : 1.0;
      if (lensMap && !(m > 0.0)) {
        out = in;
        continue;
      }
      const bool weighted = lensMap && m != 1.0;
      const std::int32_t reach = weighted ? TruncateToInt(radius * m) : radius;
      const Sums sums = SumBox(src, dst, mask, x, y, down, reach, weighted);
      out.channel[0] = in.channel[0];
      const bool blend = down && weighted && m < 1 && radius != 0;
      const double t = std::min(1.0, std::max(0.0, (m * radius - 1.0) * 0.25));
      const Pixel* plain = GetPointerFromDataP(unblurred, y, x, 1);
      for (int n = 0; n < 3; ++n) {
        double average = sums.color[n] / sums.weight;
        if (blend) {
          average = plain->channel[n + 1] * (1 - t) + average * t;
        }
        out.channel[n + 1] = ChannelFromReal(average + 0.5, dst.deep);
      }
    }
  }
}

}  // namespace

bool FastBlurIsCopy(const Settings& s) {
  return s.scaleHeight == 0.0F || s.scaleWidth == 0.0F || s.fastBlurVisible != 1 ||
         TruncateToInt(static_cast<double>(s.fastBlurAmount)) == 0;
}

bool FastBlurFollowsLens(const Settings& s) {
  return s.fastBlurUseLensAsBlurMap != 0 && 2.0F * s.feather > s.fastBlurAmount / 100.0F;
}

void FastBlurRound(std::int32_t horizontalRadius, std::int32_t verticalRadius, bool lensMap,
                   const Mask& mask, World& src, World& dst) {
  World unblurred = src;  // A fresh world of the host's: its origin is (0, 0).
  unblurred.extent = {0, 0, src.width, src.height};
  BoxPass(horizontalRadius, lensMap, false, mask, src, unblurred, dst);
  BoxPass(verticalRadius, lensMap, true, mask, dst, unblurred, src);  // NOLINT: back again.
  dst.pixels = src.pixels;
}

void FastBlur(const Settings& s, const Mask& mask, World& src, World& dst) {
  if (FastBlurIsCopy(s)) {
    dst.pixels = src.pixels;
    return;
  }
  const std::int32_t radius = TruncateToInt(static_cast<double>(s.fastBlurAmount));
  const bool lensMap = FastBlurFollowsLens(s);
  FastBlurRound(radius, radius, lensMap, mask, src, dst);
  FastBlurRound(radius, radius, lensMap, mask, dst, src);  // NOLINT: back again.
  FastBlurRound(radius, radius, lensMap, mask, src, dst);
}

}  // namespace vitrell::literal
