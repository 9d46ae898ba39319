// The realistic blur with the lens mask as blur map: each pixel has its own kernel.
#include "blur/realistic/realistic_mapped.h"

#include <algorithm>

#include "base/depth_traits.h"
#include "blur/realistic/kernel_map.h"
#include "blur/realistic/tap_sums.h"
#include "host/pixel_pass.h"
#include "host/suite_handler.h"
#include "host/world.h"
#include "pass/strip_pass.h"

namespace vitrell {
namespace {

// Where the total weight is below this, a pixel keeps its own colours.
constexpr double kSmallestTotal = 0.0001;

template <typename Pixel>
struct MappedIrisStage : StripsOfRows<Pixel, kMaxLaneRows> {
  KernelMap kernels;

  // Alpha marks the result: 0 where the input's colours are kept, 1 otherwise.
  static Pixel PixelOf(const TapSums& sums) {
    Pixel pixel = {};
    if (sums.weight >= kSmallestTotal) {
      pixel.alpha = 1;
      StoreColors(sums, &pixel);
    }
    return pixel;
  }

  static void Publish(const Pixel& stored, const Pixel& in, Pixel* out) {
    *out = stored.alpha != 0 ? Pixel{in.alpha, stored.red, stored.green, stored.blue} : in;
  }

  bool FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const {
    for (std::int64_t y = firstRow; y < endRow; y += kernels.blockRows()) {
      const std::int64_t rows = std::min<std::int64_t>(kernels.blockRows(), endRow - y);
      for (std::int64_t x = 0; x < kernels.width(); x += kernels.blockLanes()) {
        const std::int64_t lanes =
            std::min<std::int64_t>(kernels.blockLanes(), kernels.width() - x);
        LaneSums sums[kMaxLaneRows];
        kernels.SumRows(x, y, sums);
        for (std::int64_t row = 0; row < rows; ++row) {
          Pixel* const pixels = out + (y - firstRow + row) * kernels.width() + x;
          for (std::int64_t lane = 0; lane < lanes; ++lane) {
            pixels[lane] = PixelOf(sums[row].Lane(static_cast<int>(lane)));
          }
        }
      }
    }
    return true;
  }

  void StoreOnePixel(std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) const {
    if (x < 0 || x >= kernels.width() || y < 0 || y >= kernels.height()) {
      *out = in;
      return;
    }
    LaneSums sums[kMaxLaneRows];
    kernels.SumRows(x, y, sums);
    Publish(PixelOf(sums[0].Lane(0)), in, out);
  }
};

template <typename Pixel>
PF_Err IrisBlur(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return static_cast<StripPass<MappedIrisStage<Pixel>>*>(refcon)->Serve(x, y, *in, out);
}

template <typename Pixel>
PF_Err BlurByMaskInDepth(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius,
                         const IrisEngine& engine) {
  StripPass<MappedIrisStage<Pixel>> pass = {{{}, KernelMap(engine)}, {}};
  if (!pass.strips.Reset(io.dst->width, io.dst->height) ||
      !pass.stage.kernels.Build(io, shape, maxRadius)) {
    return PF_Err_OUT_OF_MEMORY;
  }
  AEGP_SuiteHandler suites(io.in_data->pica_basicP);
  return RunPixelPass(suites, io.in_data, io.src, io.dst, ExtentLines(*io.dst),
                      CallbackOfDepth(IrisBlur<Pixel>), &pass);
}

}  // namespace

PF_Err BlurByMask(const IO_Params& io, const IrisShape& shape, std::int32_t maxRadius,
                  const IrisEngine& engine) {
  return IsDeep(*io.dst) ? BlurByMaskInDepth<PF_Pixel16>(io, shape, maxRadius, engine)
                         : BlurByMaskInDepth<PF_Pixel>(io, shape, maxRadius, engine);
}

}  // namespace vitrell
