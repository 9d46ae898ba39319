// Chromatic aberration: fetches red, green and blue from points scaled about the lens position.
#include "colour/chromatic_aberration.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
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

// A channel whose scale is not above this is not written at all.
constexpr double kScaleThreshold = 0.0001;

constexpr int kColorCount = 3;  // Red, green, blue.

// Where a channel of the pixel at this coordinate comes from: the distance from the centre is
// scaled in single precision and truncated, so that it is the same on both sides of the centre.
std::int32_t ScaleAboutCenter(std::int32_t coordinate, std::int32_t center, float scale) {
  const auto distance = static_cast<float>(WrappingSubtract(coordinate, center));
  return WrappingAdd(TruncateToInt32(distance * scale), center);
}

// The rows, and the columns in bytes, that one row or column of the picture takes its three colours
// from, with the mirroring folded in. The rows point at their colour's first channel.
struct ColorRows {
  const char* of[kColorCount];
};
struct ColorColumns {
  std::uint32_t of[kColorCount];
};

struct ChromaticRefcon {
  float scales[kColorCount];
  std::int32_t centerX;
  std::int32_t centerY;
  const IO_Params* io;
  LensMaskView mask;
  MaskOnes ones;
  Buffer<ColorRows> rows;  // Filled before the pass, or empty; and so the columns.
  Buffer<ColorColumns> columns;
};

// Any pixel of any source.
template <typename Pixel>
[[gnu::noinline]] PF_Err LookUpColors(const ChromaticRefcon& refcon, A_long x, A_long y, Pixel* in,
                                      Pixel* out) {
  out->alpha = in->alpha;
  if (refcon.mask.At(x, y) <= kMaskThreshold) {
    *out = *in;
    return PF_Err_NONE;
  }
  const auto fetch = [&](int color, ChannelOf<Pixel> Pixel::*channel) {
    const float scale = refcon.scales[color];
    if (!(scale > kScaleThreshold)) {
      // Kept: the channel keeps what the destination held before.
      return;
    }
    const std::int32_t row = ScaleAboutCenter(y, refcon.centerY, scale);
    const std::int32_t column = ScaleAboutCenter(x, refcon.centerX, scale);
    out->*channel = GetPointerFromData<Pixel>(refcon.io->src, row, column, 1).*channel;
  };
  fetch(0, &Pixel::red);
  fetch(1, &Pixel::green);
  fetch(2, &Pixel::blue);
  return PF_Err_NONE;
}

template <typename Pixel>
PF_Err ChromaticAberration(void* refconPtr, A_long x, A_long y, Pixel* in, Pixel* out) {
  const auto& refcon = *static_cast<const ChromaticRefcon*>(refconPtr);
  double m = 1;
  const bool isKnown = refcon.ones.Contain(x, y) || refcon.mask.QuickAt(x, y, &m);
  if (!isKnown || static_cast<std::uint32_t>(x) >= refcon.columns.size() ||
      static_cast<std::uint32_t>(y) >= refcon.rows.size()) [[unlikely]] {
    return LookUpColors(refcon, x, y, in, out);
  }
  if (m <= kMaskThreshold) {
    *out = *in;
    return PF_Err_NONE;
  }
  const ColorRows& rows = refcon.rows.data()[y];
  const ColorColumns& columns = refcon.columns.data()[x];
  const auto fetch = [&](int color) {
    return *reinterpret_cast<const ChannelOf<Pixel>*>(rows.of[color] + columns.of[color]);
  };
  *out = {in->alpha, fetch(0), fetch(1), fetch(2)};
  return PF_Err_NONE;
}

// Whether rows and columns can be told apart: a mirrored position depends on both when the source's
// extent hint does not start at (0, 0). Channels that stay unwritten need the plain way as well.
bool HasTables(const ChromaticRefcon& refcon, std::size_t pixelBytes) {
  const PF_LayerDef& src = *refcon.io->src;
  const PF_LayerDef& dst = *refcon.io->dst;
  constexpr auto kMaxRowBytes = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  return src.data != nullptr && src.width > 0 && src.height > 0 && src.extent_hint.left == 0 &&
         src.extent_hint.top == 0 && dst.width > 0 && dst.height > 0 &&
         static_cast<std::size_t>(src.width) <= kMaxRowBytes / pixelBytes &&
         std::all_of(std::begin(refcon.scales), std::end(refcon.scales),
                     [](float scale) { return scale > kScaleThreshold; });
}

template <typename Pixel>
PF_Err FillTables(ChromaticRefcon* refcon) {
  if (!HasTables(*refcon, sizeof(Pixel))) {
    return PF_Err_NONE;
  }
  const PF_LayerDef& src = *refcon->io->src;
  const PF_LayerDef& dst = *refcon->io->dst;
  if (!refcon->rows.Allocate(static_cast<std::size_t>(dst.height)) ||
      !refcon->columns.Allocate(static_cast<std::size_t>(dst.width))) {
    return PF_Err_OUT_OF_MEMORY;
  }
  const std::size_t channels[kColorCount] = {offsetof(Pixel, red), offsetof(Pixel, green),
                                             offsetof(Pixel, blue)};
  for (int color = 0; color < kColorCount; ++color) {
    const float scale = refcon->scales[color];
    const char* const data = static_cast<const char*>(src.data) + channels[color];
    for (std::int32_t y = 0; y < dst.height; ++y) {
      const std::int32_t position = ScaleAboutCenter(y, refcon->centerY, scale);
      refcon->rows.data()[y].of[color] =
          data + static_cast<std::ptrdiff_t>(FoldCoordinate(position, src.height)) * src.rowbytes;
    }
    for (std::int32_t x = 0; x < dst.width; ++x) {
      const std::int32_t position = ScaleAboutCenter(x, refcon->centerX, scale);
      refcon->columns.data()[x].of[color] =
          static_cast<std::uint32_t>(FoldCoordinate(position, src.width)) *
          static_cast<std::uint32_t>(sizeof(Pixel));
    }
  }
  return PF_Err_NONE;
}

}  // namespace

PF_Err RunChromaticAberration(const StageCall& call) {
  const LX_Info& info = call.info;
  ChromaticRefcon refcon = {
      {1.0f - 0.5f * info.chromaticRedCyan, 1.0f - 0.5f * info.chromaticGreenMagenta,
       1.0f - 0.5f * info.chromaticBlueYellow},
      info.positionX,
      info.positionY,
      &call.io,
      LensMaskView(*call.io.dst),
      LensMaskView(*call.io.dst).Ones(),
      {},
      {}};
  RETURN_IF_ERROR(IsDeep(*call.io.dst) ? FillTables<PF_Pixel16>(&refcon)
                                       : FillTables<PF_Pixel>(&refcon));
  return call.Iterate({ChromaticAberration<PF_Pixel>, ChromaticAberration<PF_Pixel16>}, &refcon);
}

}  // namespace vitrell
