// The realistic blur with the lens mask as blur map: every pixel picks its own kernel.
#include "blur/realistic/realistic_mapped.h"

#include <algorithm>

#include "base/depth_traits.h"
#include "blur/realistic/kernel_map.h"
#include "blur/realistic/tap_sums.h"
#include "host/pixel_pass.h"
#include "host/suite_handler.h"
#include "host/world.h"
#include "pass/lazy_strips.h"

namespace vitrell {
namespace {

// Below this total weight a pixel keeps its own colours.
constexpr double kSmallestTotal = 0.0001;

constexpr std::int32_t kStripRows = kMaxLaneRows;

template <typename Pixel>
struct IrisBlurRefcon {
  KernelMap kernels;
  LazyStrips<Pixel, kStripRows> strips;  // Alpha is 0 where the input's colours stay, else 1.
};

template <typename Pixel>
Pixel PixelOf(const TapSums& sums) {
  Pixel pixel = {};
  if (sums.weight >= kSmallestTotal) {
    pixel.alpha = 1;
    StoreColours(sums, &pixel);
  }
  return pixel;
}

template <typename Pixel>
void FillStrip(const KernelMap& kernels, std::int32_t firstRow, std::int32_t endRow, Pixel* out) {
  for (std::int64_t y = firstRow; y < endRow; y += kernels.blockRows()) {
    const std::int64_t rows = std::min<std::int64_t>(kernels.blockRows(), endRow - y);
    for (std::int64_t x = 0; x < kernels.width(); x += kernels.blockLanes()) {
      const std::int64_t lanes = std::min<std::int64_t>(kernels.blockLanes(), kernels.width() - x);
      LaneSums sums[kMaxLaneRows];
      kernels.SumRows(x, y, sums);
      for (std::int64_t row = 0; row < rows; ++row) {
        Pixel* const pixels = out + (y - firstRow + row) * kernels.width() + x;
        for (std::int64_t lane = 0; lane < lanes; ++lane) {
          pixels[lane] = PixelOf<Pixel>(sums[row].Lane(static_cast<int>(lane)));
        }
      }
    }
  }
}

// The pixel at (x, y) of the output, as the strips hold it.
template <typename Pixel>
Pixel BlurredAt(IrisBlurRefcon<Pixel>* pass, std::int32_t x, std::int32_t y) {
  if (const Pixel* const ready = pass->strips.ReadyPixel(x, y)) {
    return *ready;
  }
  const KernelMap& kernels = pass->kernels;
  const Pixel* const filled = pass->strips.PixelOrFill(
      x, y, [&kernels](std::int32_t firstRow, std::int32_t endRow, Pixel* out) {
        FillStrip(kernels, firstRow, endRow, out);
      });
  if (filled != nullptr) {
    return *filled;
  }
  if (x < 0 || x >= kernels.width() || y < 0 || y >= kernels.height()) {
    return {};
  }
  LaneSums sums[kMaxLaneRows];  // Another thread is at the strip.
  kernels.SumRows(x, y, sums);
  return PixelOf<Pixel>(sums[0].Lane(0));
}

template <typename Pixel, typename Channel = ChannelOf<Pixel>>
PF_Err IrisBlur(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  const Pixel blurred = BlurredAt(static_cast<IrisBlurRefcon<Pixel>*>(refcon), x, y);
  *out = blurred.alpha != 0 ? Pixel{in->alpha, blurred.red, blurred.green, blurred.blue} : *in;
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err BlurByMaskInDepth(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius,
                         const LaneEngine& engine) {
  IrisBlurRefcon<Pixel> pass = {.kernels = KernelMap(engine), .strips = {}};
  if (!pass.strips.Reset(io.dst->width, io.dst->height) ||
      !pass.kernels.Build(io, shape, maxRadius)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  AEGP_SuiteHandler suites(io.in_data->pica_basicP);
  return RunPixelPass(suites, io.in_data, io.src, io.dst, ExtentLines(*io.dst),
                      {IrisBlur<PF_Pixel>, IrisBlur<PF_Pixel16>}, &pass);
}

}  // namespace

PF_Err BlurByMask(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius,
                  const LaneEngine& engine) {
  return IsDeep(*io.dst) ? BlurByMaskInDepth<PF_Pixel16>(io, shape, maxRadius, engine)
                         : BlurByMaskInDepth<PF_Pixel>(io, shape, maxRadius, engine);
}

}  // namespace vitrell
