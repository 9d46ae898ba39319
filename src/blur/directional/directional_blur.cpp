// Directional blur: averages each pixel inside the lens along a straight line through it.
#include "blur/directional/directional_blur.h"

#include <type_traits>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "blur/directional/line_strips.h"
#include "blur/directional/line_taps.h"
#include "blur/directional/running_line_strips.h"
#include "host/result.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "pass/strip_pass.h"

namespace vitrell {
namespace {

// Weighted sums of one pixel: colours in single precision, weights in double.
template <typename Pixel>
class LineSum {
 public:
  void Add(const Pixel& pixel, double weight) {
    if (pixel.alpha != 0) {
      red_ += static_cast<float>(pixel.red * weight);
      green_ += static_cast<float>(pixel.green * weight);
      blue_ += static_cast<float>(pixel.blue * weight);
      weight_ += weight;
    }
  }

  // The average with the pixel's own alpha; if the whole line is transparent, the pixel itself.
  Pixel Average(const Pixel& in) const {
    if (weight_ == 0.0) {
      return in;
    }
    using Channel = ChannelOf<Pixel>;
    return {in.alpha, TruncateToChannel<Channel>(red_ / weight_),
            TruncateToChannel<Channel>(green_ / weight_),
            TruncateToChannel<Channel>(blue_ / weight_)};
  }

 private:
  float red_ = 0;
  float green_ = 0;
  float blue_ = 0;
  double weight_ = 0;
};

// Rows of a strip. A slower engine has lower strips, which threads share more evenly.
template <typename Pixel>
constexpr std::int32_t kStripRows =
    std::is_same_v<Pixel, PF_Pixel> ? RunningLineStrips::kStripRows : 16;

// The mask only switches the blur on per pixel; its strength does not follow the mask.
template <typename Pixel>
struct DirectionalStage : StripsOfRows<Pixel, kStripRows<Pixel>> {
  DirBlurRefcon refcon;
  LensMaskView mask;
  LineStrips<Pixel> tables;
  RunningLineStrips runningTables;  // Instead of the others, where they have strips.

  PF_Err Prepare(const LineTaps& taps) {
    const PF_LayerDef& src = *refcon.io->src;
    if constexpr (std::is_same_v<Pixel, PF_Pixel>) {
      RETURN_IF_ERROR(runningTables.Prepare(src, mask, taps));
    }
    return runningTables.HasStrips() ? PF_Err_NONE : tables.Prepare(src, mask, taps);
  }

  bool HasStrips() const { return runningTables.HasStrips() || tables.HasStrips(); }

  bool FillStrip(std::int32_t firstRow, std::int32_t endRow, Pixel* out) const {
    if constexpr (std::is_same_v<Pixel, PF_Pixel>) {
      if (runningTables.HasStrips()) {
        runningTables.FillStrip(firstRow, endRow, out);
        return true;
      }
    }
    tables.FillStrip(firstRow, endRow, out);
    return true;
  }

  void StoreOnePixel(std::int32_t x, std::int32_t y, const Pixel& in, Pixel* out) const {
    if (!(mask.At(x, y) > kMaskThreshold)) {
      *out = in;
      return;
    }
    LineSum<Pixel> sum;
    for (const LineTap* tap = refcon.taps; tap != refcon.taps + refcon.tapCount; ++tap) {
      if (const Pixel* const pixel = GetPointerFromDataP<Pixel>(
              refcon.io->src, WrappingAdd(y, tap->y), WrappingAdd(x, tap->x), 1)) {
        sum.Add(*pixel, tap->weight);
      }
    }
    *out = sum.Average(in);
  }
};

template <typename Pixel>
PF_Err DirectionalBlur(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  return static_cast<StripPass<DirectionalStage<Pixel>>*>(refcon)->Serve(x, y, *in, out);
}

template <typename Pixel>
PF_Err RunPass(const StageCall& call, const LineTaps& taps) {
  const PF_LayerDef& src = *call.io.src;
  const PF_LayerDef& dst = *call.io.dst;
  StripPass<DirectionalStage<Pixel>> pass = {
      {{}, {&call.io, taps.begin(), taps.count(), taps.weightSum()}, LensMaskView(dst), {}, {}},
      {}};
  if (IsDeep(src) == IsDeep(dst)) {
    RETURN_IF_ERROR(pass.stage.Prepare(taps));
    if (pass.stage.HasStrips() && !pass.strips.Reset(src.width, src.height)) {
      return PF_Err_OUT_OF_MEMORY;
    }
  }
  return call.Iterate(CallbackOfDepth(DirectionalBlur<Pixel>), &pass);
}

}  // namespace

PF_Err RunDirectionalBlur(const StageCall& call) {
  LineTaps line;
  RETURN_IF_ERROR(line.Build(call.io.in_data, call.info, call.plan.isDirectionalOn));
  if (!call.plan.isDirectionalOn || line.count() <= 1) {
    return call.Copy();
  }
  AEGP_SuiteHandler suites(call.io.in_data->pica_basicP);
  return IsDeep(*call.io.dst) ? RunPass<PF_Pixel16>(call.With(suites), line)
                              : RunPass<PF_Pixel>(call.With(suites), line);
}

}  // namespace vitrell
