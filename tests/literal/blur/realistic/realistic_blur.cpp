// The iris-shaped blur, evaluated step by step from its definition.
#include "literal/blur/realistic/realistic_blur.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "literal/base/pixel_access.h"
#include "literal/base/truncate.h"
#include "literal/blur/realistic/highlight_map.h"
#include "literal/blur/realistic/iris_kernel.h"

namespace vitrell::literal {
namespace {

constexpr double kEdge = 0.0001;

struct IrisKernel {
  std::int32_t radiusPx = 0;
  std::vector<float> grid;
  std::vector<WeightPoint> differences;
};

// Sums of one output pixel, all in single precision.
struct Sums {
  float red = 0, green = 0, blue = 0, weight = 0;

  void Add(float w, const Pixel& pixel) {
    red += w * static_cast<float>(pixel.channel[1]);
    green += w * static_cast<float>(pixel.channel[2]);
    blue += w * static_cast<float>(pixel.channel[3]);
    weight += w;
  }
};

float HighlightAt(const std::vector<float>& highlights, const World& src, std::int32_t row,
                  std::int32_t column) {
  return highlights.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(src.width) +
                       static_cast<std::size_t>(column));
}

// A zero total weight gives colour 0, and so does a NaN quotient.
void StoreColours(const Sums& sums, bool deep, Pixel& pixel) {
  const float colours[3] = {sums.red, sums.green, sums.blue};
  for (int i = 0; i < 3; ++i) {
    const float quotient = colours[i] / sums.weight;
    pixel.channel[i + 1] = sums.weight == 0 ? std::uint16_t{0} : ChannelFromReal(quotient, deep);
  }
}

bool AllChannelsZero(const Pixel& pixel) {
  return pixel.channel[0] == 0 && pixel.channel[1] == 0 && pixel.channel[2] == 0 &&
         pixel.channel[3] == 0;
}

void UniformBlur(const IrisKernel& kernel, const std::vector<float>& highlights, const World& src,
                 World& dst) {
  for (std::int32_t row = dst.extent.top; row < dst.extent.bottom; ++row) {
    for (std::int32_t column = dst.extent.left; column < dst.extent.right; ++column) {
      dst.At(row, column) = Pixel{};
    }
  }
  const std::int32_t r = kernel.radiusPx;
  for (std::int32_t y = 0; y < dst.height; ++y) {
    Sums sums;
    for (std::int32_t x = 0; x < dst.width; ++x) {
      if (x == 0 || AllChannelsZero(dst.At(y, x - 1))) {
        sums = Sums{};
        std::size_t entry = 0;
        for (std::int32_t dy = -r; dy <= r; ++dy) {
          for (std::int32_t dx = -r; dx <= r; ++dx) {
            const float g = kernel.grid.at(entry++);
            if (g == 0) continue;
            const Pixel* pixel = GetPointerFromDataP(src, y + dy, x + dx, 0);
            if (pixel == nullptr) continue;
            const float w = HighlightAt(highlights, src, y + dy, x + dx) * g;
            sums.Add(w, *pixel);
          }
        }
      } else {
        for (const WeightPoint& point : kernel.differences) {
          const Pixel* pixel = GetPointerFromDataP(src, y + point.y, x + point.x, 0);
          if (pixel == nullptr) continue;
          const float w = HighlightAt(highlights, src, y + point.y, x + point.x) * point.weight;
          sums.Add(w, *pixel);
        }
      }
      Pixel& out = dst.At(y, x);
      out.channel[0] = src.At(y, x).channel[0];
      StoreColours(sums, dst.deep, out);
    }
  }
}

double MaskAt(const Mask& mask, std::int32_t x, std::int32_t y, const World& dst) {
  const std::int64_t index = static_cast<std::int64_t>(y) * dst.width + x;
  if (index >= static_cast<std::int64_t>(mask.values.size())) return 0.0;
  return mask.values[static_cast<std::size_t>(index)];
}

void MappedPixel(const IrisKernel& kernel, const std::vector<float>& highlights, const World& src,
                 std::int32_t x, std::int32_t y, World& dst) {
  const std::int32_t r = kernel.radiusPx;
  Sums sums;
  std::size_t entry = 0;
  for (std::int32_t dy = -r; dy <= r; ++dy) {
    for (std::int32_t dx = -r; dx <= r; ++dx) {
      const float g = kernel.grid.at(entry++);
      if (!(g > kEdge)) continue;
      const Pixel* pixel = GetPointerFromDataP(src, y + dy, x + dx, 0);
      if (pixel == nullptr || pixel->channel[0] == 0) continue;
      const float w = HighlightAt(highlights, src, y + dy, x + dx) * g;
      sums.Add(w, *pixel);
    }
  }
  Pixel& out = dst.At(y, x);
  out = src.At(y, x);
  if (sums.weight >= kEdge) StoreColours(sums, dst.deep, out);
}

// The last row and column repeat their neighbours; a lone row or column has none.
void MendEdges(World& dst) {
  if (dst.height >= 2) {
    for (std::int32_t x = 0; x < dst.width; ++x) {
      dst.At(dst.height - 1, x) = dst.At(dst.height - 2, x);
    }
  }
  if (dst.width >= 2) {
    for (std::int32_t y = 0; y < dst.height; ++y) {
      dst.At(y, dst.width - 1) = dst.At(y, dst.width - 2);
    }
  }
}

IrisKernel MakeKernel(std::int32_t radiusPx, const Settings& settings, const Maths& maths) {
  IrisKernel kernel;
  kernel.radiusPx = radiusPx;
  kernel.grid = KernelGrid(radiusPx, settings, maths);
  kernel.differences = DifferencePoints(kernel.grid, radiusPx);
  return kernel;
}

}  // namespace

void RealisticBlur(const Settings& settings, const Maths& maths, const Mask& mask, const World& src,
                   World& dst) {
  if (settings.realisticVisible != 1 || !(settings.realisticAmount > kEdge)) {
    dst.pixels = src.pixels;
    return;
  }
  const std::int32_t maximumRadius = MaximumRadius(settings);
  const std::vector<float> highlights = HighlightMap(src, dst.deep, maths);
  if (settings.realisticUseLensAsBlurMap == 0) {
    UniformBlur(MakeKernel(maximumRadius, settings, maths), highlights, src, dst);
  } else {
    std::map<std::int32_t, IrisKernel> kernels;  // Only those that some pixel uses.
    for (std::int32_t y = 0; y < dst.height; ++y) {
      for (std::int32_t x = 0; x < dst.width; ++x) {
        const double m = MaskAt(mask, x, y, dst);
        std::int32_t index = TruncateToInt(maths.pow(m, 1.5) * maximumRadius + 0.5);
        if (index > maximumRadius) index = maximumRadius;
        if (index < 0) index = 0;  // Only for a negative or NaN mask value.
        auto found = kernels.find(index);
        if (found == kernels.end()) {
          found = kernels.emplace(index, MakeKernel(index, settings, maths)).first;
        }
        MappedPixel(found->second, highlights, src, x, y, dst);
      }
    }
  }
  MendEdges(dst);
}

}  // namespace vitrell::literal
