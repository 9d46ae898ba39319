// Directional blur: averages each pixel inside the lens along a fixed straight line through it.
#include "blur/directional_blur.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <numbers>

#include "host/pixel_pass.h"
#include "host/result.h"
#include "host/world.h"
#include "render/depth_traits.h"
#include "render/lens_mask.h"
#include "render/numeric.h"
#include "render/pixel_access.h"

namespace vitrell {
namespace {

// Longest line that is rasterised: a hundred times what the panel lets the user type, in 256 MB.
constexpr std::int64_t kMaxTaps = std::int64_t{1} << 24;

struct LineEnd {
  std::int64_t x;
  std::int64_t y;
};

// Calls record(x, y) for each point of the line from (-end.x, -end.y) to end, both ends included.
template <typename Record>
void WalkLine(LineEnd end, Record record) {
  const std::int64_t stepX = end.x > 0 ? 1 : -1;
  const std::int64_t stepY = end.y > 0 ? 1 : -1;
  const std::int64_t spanX = std::abs(2 * end.x);
  const std::int64_t spanY = std::abs(2 * end.y);
  std::int64_t error = (spanY < spanX ? spanX : -spanY) / 2;
  std::int64_t x = -end.x;
  std::int64_t y = -end.y;
  record(x, y);
  while (x != end.x || y != end.y) {
    const std::int64_t before = error;
    if (before > -spanX) {
      error -= spanY;
      x += stepX;
    }
    if (before < spanY) {
      error += spanX;
      y += stepY;
    }
    record(x, y);
  }
}

// Squares and sum wrap in 32 bits, so that lengths from 32768 on have no true weights any more.
std::int32_t SquaredLength(std::int32_t x, std::int32_t y) {
  return WrappingAdd(WrappingMultiply(x, x), WrappingMultiply(y, y));
}

// One tap as the pass reads it.
struct PassTap {
  std::ptrdiff_t offset;  // In bytes, from the pixel's own address in the source.
  double weight;
  std::int32_t x;
  std::int32_t y;
};

struct DirBlurRefcon {
  const IO_Params* io;
  const PassTap* taps;
  std::size_t tapCount;
  // The part of the source, relative to its memory, from which every tap stays inside.
  std::int64_t innerLeft;
  std::int64_t innerTop;
  std::int64_t innerRight;
  std::int64_t innerBottom;
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

// The mask gates the blur only; its strength does not follow the mask.
template <typename Pixel>
PF_Err DirectionalBlur(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& refcon = *static_cast<const DirBlurRefcon*>(refconPtr);
  if (!(GetLensMask(x, y, refcon.io->dst) > kMaskThreshold)) {
    *out = *in;
    return PF_Err_NONE;
  }
  const PF_LayerDef* const src = refcon.io->src;
  const std::int64_t column = std::int64_t{x} - src->extent_hint.left;
  const std::int64_t row = std::int64_t{y} - src->extent_hint.top;
  LineSum<Pixel> sum;
  if (column >= refcon.innerLeft && column < refcon.innerRight && row >= refcon.innerTop &&
      row < refcon.innerBottom) {
    const char* const center = reinterpret_cast<const char*>(StoredPixel<Pixel>(src, row, column));
    for (std::size_t i = 0; i < refcon.tapCount; ++i) {
      const PassTap& tap = refcon.taps[i];
      sum.Add(*reinterpret_cast<const Pixel*>(center + tap.offset), tap.weight);
    }
  } else {
    for (std::size_t i = 0; i < refcon.tapCount; ++i) {
      const PassTap& tap = refcon.taps[i];
      const Pixel* const pixel =
          GetPointerFromDataP<Pixel>(src, WrappingAdd(y, tap.y), WrappingAdd(x, tap.x), 1);
      if (pixel != nullptr) {
        sum.Add(*pixel, tap.weight);
      }
    }
  }
  *out = sum.Average(*in);
  return PF_Err_NONE;
}

// Prepares the taps for one source and leaves out those of weight 0, which add +0 to sums that
// are never -0. taps must hold all of them.
DirBlurRefcon PreparePass(const IO_Params* io, const LineTaps& line, PassTap* taps) {
  const PF_LayerDef& src = *io->src;
  const auto pixelBytes =
      static_cast<std::ptrdiff_t>(IsDeep(*io->dst) ? sizeof(PF_Pixel16) : sizeof(PF_Pixel));
  DirBlurRefcon refcon = {io, taps, 0, 0, 0, src.width, src.height};
  if (src.data == nullptr) {
    refcon.innerRight = 0;
  }
  for (std::int32_t i = 0; i < line.count(); ++i) {
    const LineTap& tap = line.data()[i];
    if (tap.weight == 0.0) {
      continue;
    }
    taps[refcon.tapCount++] = {std::ptrdiff_t{tap.y} * src.rowbytes + tap.x * pixelBytes,
                               tap.weight, tap.x, tap.y};
    refcon.innerLeft = std::max(refcon.innerLeft, -std::int64_t{tap.x});
    refcon.innerTop = std::max(refcon.innerTop, -std::int64_t{tap.y});
    refcon.innerRight = std::min(refcon.innerRight, std::int64_t{src.width} - tap.x);
    refcon.innerBottom = std::min(refcon.innerBottom, std::int64_t{src.height} - tap.y);
  }
  return refcon;
}

}  // namespace

PF_Err LineTaps::Build(const PF_InData* inData, const LX_Info& info) {
  const PF_ANSICallbacks& maths = inData->utils->ansi;
  const double length = TruncateToInt32(info.directionalAmount);
  const double angleRad = info.directionalAngle + std::numbers::pi / 2;
  const std::int32_t endX = TruncateToInt32(length * maths.cos(angleRad));
  const std::int32_t endY = TruncateToInt32(length * maths.sin(angleRad));
  const double total = maths.sqrt(SquaredLength(endX, endY));
  const std::int64_t longerSide =
      std::max(std::abs(std::int64_t{endX}), std::abs(std::int64_t{endY}));
  const std::int64_t tapCount = 2 * longerSide + 1;
  weightSum_ = 0;
  count_ = 0;
  if (tapCount > kMaxTaps || !taps_.Allocate(static_cast<std::size_t>(tapCount))) {
    // The line of a stage that is off is nobody's loss.
    return info.directionalVisible == 1 ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
  }
  WalkLine({endX, endY}, [&](std::int64_t x, std::int64_t y) {
    const auto tapX = static_cast<std::int32_t>(x);
    const auto tapY = static_cast<std::int32_t>(y);
    const double weight = 1 - maths.sqrt(SquaredLength(tapX, tapY)) / total;
    taps_[static_cast<std::size_t>(count_++)] = {tapX, tapY, weight};
    weightSum_ += weight;
  });
  return PF_Err_NONE;
}

PF_Err RunDirectionalBlur(AEGP_SuiteHandler& suites, IO_Params* io, const LineTaps& taps) {
  Buffer<PassTap> passTaps;
  if (!passTaps.Allocate(static_cast<std::size_t>(taps.count()))) {
    return PF_Err_OUT_OF_MEMORY;
  }
  DirBlurRefcon refcon = PreparePass(io, taps, passTaps.data());
  return RunPixelPass(suites, io->in_data, io->src, io->dst, ExtentLines(*io->dst),
                      {DirectionalBlur<PF_Pixel>, DirectionalBlur<PF_Pixel16>}, &refcon);
}

}  // namespace vitrell
