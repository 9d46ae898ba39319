// Directional blur: averages each pixel inside the lens along a fixed straight line through it.
#include "blur/directional/directional_blur.h"

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "blur/directional/line_strips.h"
#include "blur/directional/line_taps.h"
#include "host/result.h"
#include "host/world.h"
#include "lens/lens_mask.h"

namespace vitrell {
namespace {

template <typename Pixel>
struct DirBlurRefcon {
  const IO_Params* io;
  const LineTaps* line;
  LensMaskView mask;
  LineStrips<Pixel> strips;
};

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

  // The average under the pixel's own alpha; a line of transparent pixels leaves the pixel alone.
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

// One pixel by itself, for the rare one that no strip holds: there are none, or another thread is
// at it. The mask gates the blur only; its strength does not follow the mask.
template <typename Pixel>
Pixel BlurOnePixel(const DirBlurRefcon<Pixel>& refcon, A_long x, A_long y, const Pixel& in) {
  if (!(refcon.mask.At(x, y) > kMaskThreshold)) {
    return in;
  }
  LineSum<Pixel> sum;
  for (const LineTap& tap : *refcon.line) {
    if (const Pixel* const pixel = GetPointerFromDataP<Pixel>(refcon.io->src, WrappingAdd(y, tap.y),
                                                              WrappingAdd(x, tap.x), 1)) {
      sum.Add(*pixel, tap.weight);
    }
  }
  return sum.Average(in);
}

// A function of its own that the pass ends in, so that the quick way saves no registers.
template <typename Pixel>
[[gnu::noinline]] PF_Err BlurInNewStrip(DirBlurRefcon<Pixel>* refcon, A_long x, A_long y,
                                        const Pixel& in, Pixel* out) {
  const Pixel* const blurred = refcon->strips.At(x, y);
  *out = blurred != nullptr ? *blurred : BlurOnePixel(*refcon, x, y, in);
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err DirectionalBlur(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  auto* const refcon = static_cast<DirBlurRefcon<Pixel>*>(refconPtr);
  const Pixel* const blurred = refcon->strips.ReadyAt(x, y);
  if (blurred == nullptr) [[unlikely]] {
    return BlurInNewStrip(refcon, x, y, *in, out);
  }
  *out = *blurred;
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err RunPass(const StageCall& call, const LineTaps& line) {
  const IO_Params& io = call.io;
  DirBlurRefcon<Pixel> refcon = {&io, &line, LensMaskView(*io.dst), {}};
  if (IsDeep(*io.src) == IsDeep(*io.dst)) {
    RETURN_IF_ERROR(refcon.strips.Prepare(*io.src, refcon.mask, line));
  }
  return call.Iterate({DirectionalBlur<PF_Pixel>, DirectionalBlur<PF_Pixel16>}, &refcon);
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
