// How much every source pixel weighs by its brightness.
#include "literal/blur/realistic/highlight_map.h"

#include <cstdint>

#include "literal/base/pixel_access.h"

namespace vitrell::literal {

std::vector<float> HighlightMap(const World& src, bool deep, const Maths& maths) {
  std::vector<float> highlights;
  for (std::int32_t i = 0; i < src.height; ++i) {
    for (std::int32_t j = 0; j < src.width; ++j) {
      const Pixel pixel = GetPointerFromData(src, src.extent.top + i, src.extent.left + j, 0);
      const double light =
          (0.299 * pixel.channel[1] + 0.587 * pixel.channel[2] + 0.114 * pixel.channel[3]) *
          pixel.channel[0];
      const double scaled = deep ? light * 9.313225746154785e-10 : light / 65025.0;
      highlights.push_back(static_cast<float>(maths.sqrt(scaled)));
    }
  }
  return highlights;
}

}  // namespace vitrell::literal
