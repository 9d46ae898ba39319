// Chromatic aberration: fetches red, green and blue from points scaled about the lens position.
#include "colour/chromatic_aberration.h"

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

// A channel whose scale is not above this is not written at all.
constexpr double kScaleThreshold = 0.0001;

constexpr int kColorCount = 3;  // Red, green, blue.

// Where a channel of the pixel at this coordinate comes from: the distance from the centre is
// scaled in single precision and truncated, so that it is the same on both sides of the centre.
std::int32_t ScaleAboutCenter(std::int32_t coordinate, std::int32_t center, float scale) {
  const auto distance = static_cast<float>(WrappingSubtract(coordinate, center));
  return WrappingAdd(TruncateToInt32(distance * scale), center);
}

// Byte offsets of the rows, or of the columns within a row, that each coordinate of the picture
// takes its three colours from, with the mirroring folded in. Filled before the pass.
class OffsetTable {
 public:
  [[nodiscard]] PF_Err Fill(const float (&scales)[kColorCount], std::int32_t center,
                            std::int32_t count, std::int32_t sourceSize, std::ptrdiff_t stride) {
    if (!offsets_.Allocate(static_cast<std::size_t>(count) * kColorCount)) {
      return PF_Err_OUT_OF_MEMORY;
    }
    for (std::int32_t i = 0; i < count; ++i) {
      for (int color = 0; color < kColorCount; ++color) {
        const std::int32_t position = ScaleAboutCenter(i, center, scales[color]);
        offsets_[Index(i, color)] =
            static_cast<std::ptrdiff_t>(FoldCoordinate(position, sourceSize)) * stride;
      }
    }
    count_ = count;
    return PF_Err_NONE;
  }

  bool Contains(A_long coordinate) const { return coordinate >= 0 && coordinate < count_; }
  std::ptrdiff_t At(A_long coordinate, int color) const {
    return offsets_[Index(coordinate, color)];
  }

 private:
  static std::size_t Index(std::int32_t coordinate, int color) {
    return static_cast<std::size_t>(coordinate) * kColorCount + static_cast<std::size_t>(color);
  }

  Buffer<std::ptrdiff_t> offsets_;
  std::int32_t count_ = 0;
};

struct ChromaticRefcon {
  float scales[kColorCount];
  std::int32_t centerX;
  std::int32_t centerY;
  const IO_Params* io;
  LensMaskView mask;
  OffsetTable rows;
  OffsetTable columns;
};

// Fills the tables, unless the source has no pixels or its extent hint does not start at (0, 0):
// then a mirrored position depends on row and column together and every pixel is looked up.
template <typename Pixel>
PF_Err FillTables(ChromaticRefcon* refcon) {
  const PF_LayerDef& src = *refcon->io->src;
  const PF_LayerDef& dst = *refcon->io->dst;
  if (src.data == nullptr || src.width <= 0 || src.height <= 0 || src.extent_hint.left != 0 ||
      src.extent_hint.top != 0 || dst.width <= 0 || dst.height <= 0) {
    return PF_Err_NONE;
  }
  RETURN_IF_ERROR(
      refcon->rows.Fill(refcon->scales, refcon->centerY, dst.height, src.height, src.rowbytes));
  return refcon->columns.Fill(refcon->scales, refcon->centerX, dst.width, src.width, sizeof(Pixel));
}

template <typename Pixel>
PF_Err ChromaticAberration(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& refcon = *static_cast<const ChromaticRefcon*>(refconPtr);
  out->alpha = in->alpha;
  if (refcon.mask.At(x, y) <= kMaskThreshold) {
    out->red = in->red;
    out->green = in->green;
    out->blue = in->blue;
    return PF_Err_NONE;
  }
  const bool isTabled = refcon.rows.Contains(y) && refcon.columns.Contains(x);
  const PF_LayerDef* const src = refcon.io->src;
  const auto fetch = [&](int color, ChannelOf<Pixel> Pixel::*channel) {
    const float scale = refcon.scales[color];
    if (!(scale > kScaleThreshold)) {
      // Kept: the channel keeps what the destination held before.
      return;
    }
    if (isTabled) {
      const char* const address = static_cast<const char*>(src->data) + refcon.rows.At(y, color) +
                                  refcon.columns.At(x, color);
      out->*channel = reinterpret_cast<const Pixel*>(address)->*channel;
      return;
    }
    out->*channel = GetPointerFromData<Pixel>(src, ScaleAboutCenter(y, refcon.centerY, scale),
                                              ScaleAboutCenter(x, refcon.centerX, scale), 1).*
                    channel;
  };
  fetch(0, &Pixel::red);
  fetch(1, &Pixel::green);
  fetch(2, &Pixel::blue);
  return PF_Err_NONE;
}

}  // namespace

bool IsChromaticAberrationOn(const LX_Info& info) {
  return info.chromaticVisible == 1 &&
         (info.chromaticRedCyan > 0 || info.chromaticGreenMagenta > 0 ||
          info.chromaticBlueYellow > 0);
}

PF_Err RunChromaticAberration(AEGP_SuiteHandler& suites, IO_Params* io, const LX_Info& info) {
  ChromaticRefcon refcon = {
      {1.0f - 0.5f * info.chromaticRedCyan, 1.0f - 0.5f * info.chromaticGreenMagenta,
       1.0f - 0.5f * info.chromaticBlueYellow},
      info.positionX,
      info.positionY,
      io,
      LensMaskView(*io->dst),
      {},
      {}};
  RETURN_IF_ERROR(IsDeep(*io->dst) ? FillTables<PF_Pixel16>(&refcon)
                                   : FillTables<PF_Pixel>(&refcon));
  return RunPixelPass(suites, io->in_data, io->src, io->dst, ExtentLines(*io->dst),
                      {ChromaticAberration<PF_Pixel>, ChromaticAberration<PF_Pixel16>}, &refcon);
}

}  // namespace vitrell
