// Directional blur: averages each pixel inside the lens along a fixed straight line through it.
#include "blur/directional_blur.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "host/buffer.h"
#include "host/pixel_pass.h"
#include "host/result.h"
#include "host/world.h"
#include "render/depth_traits.h"
#include "render/lens_mask.h"
#include "render/numeric.h"
#include "render/pixel_access.h"

namespace vitrell {
namespace {

// One tap as the pass reads it.
struct PassTap {
  std::ptrdiff_t offset;  // In bytes, from the pixel's own address in the source.
  double weight;
  std::int32_t x;
  std::int32_t y;
};

// The positions, in one direction, at which every tap stays inside the source, and the offsets in
// bytes of all that taps can reach from inside, with the mirroring folded in.
struct Direction {
  std::int64_t origin = 0;  // The source's own, subtracted once.
  std::int64_t size = 0;
  std::int64_t minTap = 0;
  std::int64_t maxTap = 0;
  Buffer<std::ptrdiff_t> offsets;

  void Include(std::int32_t tap) {
    minTap = std::min<std::int64_t>(minTap, tap);
    maxTap = std::max<std::int64_t>(maxTap, tap);
  }

  [[nodiscard]] PF_Err Fill(std::ptrdiff_t stride) {
    if (!offsets.Allocate(static_cast<std::size_t>(maxTap - minTap + size))) {
      return PF_Err_OUT_OF_MEMORY;
    }
    for (std::int64_t position = minTap; position < maxTap + size; ++position) {
      offsets[static_cast<std::size_t>(position - minTap)] =
          static_cast<std::ptrdiff_t>(FoldCoordinate(position, size)) * stride;
    }
    return PF_Err_NONE;
  }

  bool Contains(std::int64_t position) const { return position >= 0 && position < size; }
  bool KeepsTapsInside(std::int64_t position) const {
    return Contains(position + minTap) && Contains(position + maxTap);
  }
  // Indexed by a tap's own offset.
  const std::ptrdiff_t* OffsetsAt(std::int64_t position) const {
    return offsets.data() + (position - minTap);
  }
};

struct DirBlurRefcon {
  explicit DirBlurRefcon(const IO_Params* context) : io(context), mask(*context->dst) {}

  const IO_Params* io;
  LensMaskView mask;
  Buffer<PassTap> taps;
  std::size_t tapCount = 0;
  Direction columns;
  Direction rows;
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

// Sums the line about (column, row), both relative to the source's origin.
template <typename Pixel>
LineSum<Pixel> SumLine(const DirBlurRefcon& refcon, std::int64_t column, std::int64_t row) {
  const PF_LayerDef* const src = refcon.io->src;
  const char* const base = static_cast<const char*>(src->data);
  LineSum<Pixel> sum;
  const auto addAll = [&](auto addressOf) {
    for (std::size_t i = 0; i < refcon.tapCount; ++i) {
      const PassTap& tap = refcon.taps[i];
      sum.Add(*reinterpret_cast<const Pixel*>(addressOf(tap)), tap.weight);
    }
  };
  if (refcon.columns.KeepsTapsInside(column) && refcon.rows.KeepsTapsInside(row)) {
    const char* const center =
        base + row * src->rowbytes + column * static_cast<std::int64_t>(sizeof(Pixel));
    addAll([center](const PassTap& tap) { return center + tap.offset; });
  } else if (refcon.columns.Contains(column) && refcon.rows.Contains(row)) {
    const std::ptrdiff_t* const columns = refcon.columns.OffsetsAt(column);
    const std::ptrdiff_t* const rows = refcon.rows.OffsetsAt(row);
    addAll([=](const PassTap& tap) { return base + rows[tap.y] + columns[tap.x]; });
  } else if (refcon.columns.size > 0 && refcon.rows.size > 0) {
    addAll([&](const PassTap& tap) {
      return base + FoldCoordinate(row + tap.y, refcon.rows.size) * src->rowbytes +
             FoldCoordinate(column + tap.x, refcon.columns.size) *
                 static_cast<std::int64_t>(sizeof(Pixel));
    });
  }
  return sum;
}

// The mask gates the blur only; its strength does not follow the mask.
template <typename Pixel>
PF_Err DirectionalBlur(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& refcon = *static_cast<const DirBlurRefcon*>(refconPtr);
  if (!(refcon.mask.At(x, y) > kMaskThreshold)) {
    *out = *in;
    return PF_Err_NONE;
  }
  *out = SumLine<Pixel>(refcon, x - refcon.columns.origin, y - refcon.rows.origin).Average(*in);
  return PF_Err_NONE;
}

// Prepares the taps for one source and leaves out those of weight 0, which add +0 to sums that
// are never -0. A source without pixels gets no taps.
[[nodiscard]] PF_Err PreparePass(const LineTaps& line, DirBlurRefcon* refcon) {
  const PF_LayerDef& src = *refcon->io->src;
  if (src.data == nullptr || src.width <= 0 || src.height <= 0) {
    return PF_Err_NONE;
  }
  if (!refcon->taps.Allocate(static_cast<std::size_t>(line.count()))) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const std::ptrdiff_t pixelBytes = IsDeep(src) ? sizeof(PF_Pixel16) : sizeof(PF_Pixel);
  for (std::int32_t i = 0; i < line.count(); ++i) {
    const LineTap& tap = line.data()[i];
    if (tap.weight != 0.0) {
      refcon->taps[refcon->tapCount++] = {std::ptrdiff_t{tap.y} * src.rowbytes + tap.x * pixelBytes,
                                          tap.weight, tap.x, tap.y};
      refcon->columns.Include(tap.x);
      refcon->rows.Include(tap.y);
    }
  }
  refcon->columns.origin = src.extent_hint.left;
  refcon->columns.size = src.width;
  refcon->rows.origin = src.extent_hint.top;
  refcon->rows.size = src.height;
  RETURN_IF_ERROR(refcon->columns.Fill(pixelBytes));
  return refcon->rows.Fill(src.rowbytes);
}

}  // namespace

PF_Err RunDirectionalBlur(AEGP_SuiteHandler& suites, IO_Params* io, const LineTaps& taps) {
  DirBlurRefcon refcon(io);
  RETURN_IF_ERROR(PreparePass(taps, &refcon));
  return RunPixelPass(suites, io->in_data, io->src, io->dst, ExtentLines(*io->dst),
                      {DirectionalBlur<PF_Pixel>, DirectionalBlur<PF_Pixel16>}, &refcon);
}

}  // namespace vitrell
