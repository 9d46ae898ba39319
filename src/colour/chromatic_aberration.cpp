// Chromatic aberration: samples red, green and blue at positions scaled about the lens position.
#include "colour/chromatic_aberration.h"

#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/buffer.h"
#include "base/depth_traits.h"
#include "base/numeric.h"
#include "base/pixel_access.h"
#include "host/result.h"
#include "host/world.h"
#include "lens/lens_mask.h"

namespace vitrell {
namespace {

// Channels whose scale is not above this are not written at all.
constexpr double kScaleThreshold = 0.0001;

constexpr int kColorCount = 3;  // Red, green, blue.

// The source coordinate of a channel: the distance from the centre is scaled in single precision
// and truncated toward zero, which is symmetric about the centre.
std::int32_t ScaleAboutCenter(std::int32_t coordinate, std::int32_t center, float scale) {
  const auto distance = static_cast<float>(WrappingSubtract(coordinate, center));
  return WrappingAdd(TruncateToInt32(distance * scale), center);
}

// For one row or column of the destination, the source rows (as addresses of the colour's first
// channel) and source columns (as byte offsets) of its three colours, already reflected.
struct ColorRows {
  const char* of[kColorCount];
};
struct ColorColumns {
  std::uint32_t of[kColorCount];
};

// The refcon of the callbacks: the record and the tables prepared for the pass.
struct ChromaticPass {
  ChromaticRefcon refcon;
  LensMaskView mask;
  MaskOnes ones;
  Buffer<ColorRows> rows;  // Tables made before the pass; both may be empty.
  Buffer<ColorColumns> columns;
};

// The general case: any pixel of any source.
template <typename Pixel>
[[gnu::noinline]] PF_Err LookUpColors(const ChromaticPass& pass, A_long x, A_long y, Pixel* in,
                                      Pixel* out) {
  out->alpha = in->alpha;
  if (pass.mask.At(x, y) <= kMaskThreshold) {
    *out = *in;
    return PF_Err_NONE;
  }
  const ChromaticRefcon& refcon = pass.refcon;
  const auto fetch = [&](float scale, ChannelOf<Pixel> Pixel::*channel) {
    if (!(scale > kScaleThreshold)) {
      // Kept: the channel keeps the destination's previous value.
      return;
    }
    const std::int32_t row = ScaleAboutCenter(y, refcon.centerY, scale);
    const std::int32_t column = ScaleAboutCenter(x, refcon.centerX, scale);
    out->*channel = GetPointerFromData<Pixel>(refcon.io->src, row, column, 1).*channel;
  };
  fetch(refcon.redScale, &Pixel::red);
  fetch(refcon.greenScale, &Pixel::green);
  fetch(refcon.blueScale, &Pixel::blue);
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err ChromaticAberration(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& pass = *static_cast<const ChromaticPass*>(refcon);
  double m = 1;
  const bool isKnown = pass.ones.Contain(x, y) || pass.mask.QuickAt(x, y, &m);
  if (!isKnown || static_cast<std::uint32_t>(x) >= pass.columns.size() ||
      static_cast<std::uint32_t>(y) >= pass.rows.size()) [[unlikely]] {
    return LookUpColors(pass, x, y, in, out);
  }
  if (m <= kMaskThreshold) {
    *out = *in;
    return PF_Err_NONE;
  }
  const ColorRows& rows = pass.rows.data()[y];
  const ColorColumns& columns = pass.columns.data()[x];
  const auto fetch = [&](int color) {
    return *reinterpret_cast<const ChannelOf<Pixel>*>(rows.of[color] + columns.of[color]);
  };
  *out = {in->alpha, fetch(0), fetch(1), fetch(2)};
  return PF_Err_NONE;
}

// Whether separate row and column tables can be used. They cannot if the source's extent hint does
// not start at (0, 0), since reflection then mixes both coordinates, or if some channel is not
// written.
bool HasTables(const ChromaticRefcon& refcon, std::size_t pixelBytes) {
  const PF_LayerDef& src = *refcon.io->src;
  const PF_LayerDef& dst = *refcon.io->dst;
  constexpr auto kMaxRowBytes = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  return HasPixelsFromOrigin(src) && dst.width > 0 && dst.height > 0 &&
         static_cast<std::size_t>(src.width) <= kMaxRowBytes / pixelBytes &&
         refcon.redScale > kScaleThreshold && refcon.greenScale > kScaleThreshold &&
         refcon.blueScale > kScaleThreshold;
}

template <typename Pixel>
PF_Err FillTables(ChromaticPass* pass) {
  const ChromaticRefcon& refcon = pass->refcon;
  if (!HasTables(refcon, sizeof(Pixel))) {
    return PF_Err_NONE;
  }
  const PF_LayerDef& src = *refcon.io->src;
  const PF_LayerDef& dst = *refcon.io->dst;
  if (!pass->rows.Allocate(static_cast<std::size_t>(dst.height)) ||
      !pass->columns.Allocate(static_cast<std::size_t>(dst.width))) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const std::size_t channels[kColorCount] = {offsetof(Pixel, red), offsetof(Pixel, green),
                                             offsetof(Pixel, blue)};
  const float scales[kColorCount] = {refcon.redScale, refcon.greenScale, refcon.blueScale};
  for (int color = 0; color < kColorCount; ++color) {
    const float scale = scales[color];
    const char* const data = static_cast<const char*>(src.data) + channels[color];
    for (std::int32_t y = 0; y < dst.height; ++y) {
      const std::int32_t position = ScaleAboutCenter(y, refcon.centerY, scale);
      pass->rows.data()[y].of[color] =
          data + static_cast<std::ptrdiff_t>(FoldCoordinate(position, src.height)) * src.rowbytes;
    }
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const std::int32_t position = ScaleAboutCenter(x, refcon.centerX, scale);
      pass->columns.data()[x].of[color] =
          static_cast<std::uint32_t>(FoldCoordinate(position, src.width)) *
          static_cast<std::uint32_t>(sizeof(Pixel));
    }
  }
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err RunPass(const StageCall& call, ChromaticPass* pass) {
  RETURN_IF_ERROR(FillTables<Pixel>(pass));
  return call.Iterate(CallbackOfDepth(ChromaticAberration<Pixel>), pass);
}

}  // namespace

PF_Err RunChromaticAberration(const StageCall& call) {
  const LX_Info& info = call.info;
  const LensMaskView mask(*call.io.dst);
  ChromaticPass pass = {.refcon = {.redScale = 1.0f - 0.5f * info.chromaticRedCyan,
                                   .greenScale = 1.0f - 0.5f * info.chromaticGreenMagenta,
                                   .blueScale = 1.0f - 0.5f * info.chromaticBlueYellow,
                                   .centerX = info.positionX,
                                   .centerY = info.positionY,
                                   .io = &call.io},
                        .mask = mask,
                        .ones = mask.Ones(),
                        .rows = {},
                        .columns = {}};
  return IsDeep(*call.io.dst) ? RunPass<PF_Pixel16>(call, &pass) : RunPass<PF_Pixel>(call, &pass);
}

}  // namespace vitrell
