// The running sums of 8-bit lines for a block of neighbouring pixels, one channel per vector lane.
#ifndef VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_SUMS_H_
#define VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_SUMS_H_

#include <cstddef>
#include <cstdint>

#include "blur/directional/line_sums.h"
#include "blur/directional/running_line.h"
#include "simd/lane_target.h"

namespace vitrell {

inline constexpr int kChannels = 4;
inline constexpr int kRunPixels = 64;
inline constexpr int kRunValues = kRunPixels * kChannels;

// The line through the first pixel of a block, or of a group: the tap at a distance of d pixels
// lies at column + rows[d x rowStep] + d x columnStep, and those of the other pixels behind it.
struct LinePixels {
  const std::uint8_t* column;
  const std::ptrdiff_t* rows;
  std::ptrdiff_t columnStep;  // In bytes.
  std::int32_t rowStep;
  std::int32_t length;
};

// The sums T of a block, and by how much they differ from those one pixel further along the lines.
struct RunningSums {
  alignas(64) std::int32_t sums[kRunValues];
  alignas(64) std::int32_t slopes[kRunValues];
};

// The same for one pixel.
struct RunningPixel {
  std::int32_t sums[kChannels];
  std::int32_t slopes[kChannels];
};

// As many groups of pixels are summed in order side by side, since one alone would wait for its own
// previous addition.
inline constexpr int kOrderedGroups = 4;
inline constexpr int kMaxGroupValues = 16;

struct RunningEngine {
  int groupPixels;  // At most kMaxGroupValues / kChannels; divides kRunPixels.

  // Sums up the lines through a block's pixels.
  void (*start)(const LinePixels& line, RunningSums* block);

  // Moves a block by one pixel along its lines. `line` is the one before.
  void (*advance)(const LinePixels& line, RunningSums* block);

  // The same for a pixel of a row whose line is this row: startPixel sums up, sumRow stores the
  // sums of the pixel and those to its right and moves on to the first pixel behind them.
  void (*startPixel)(const LinePixels& line, RunningPixel* pixel);
  void (*sumRow)(const LinePixels& line, RunningPixel* pixel, std::int32_t* sums);

  // Stores the truncated averages of a block, and as alpha 255, or 0 if all taps are transparent.
  // Bit i of the result is set if the ith group of pixels contains a value for which the limits of
  // the average do not agree; that value is undefined.
  std::uint64_t (*average)(const std::int32_t* sums, const AverageLimits& limits,
                           std::uint8_t* values);

  // The groups of a block for whose pixels all taps with a weight are alike, as such bits.
  std::uint64_t (*findUniform)(const LinePixels& line);

  // Adds the colours' products with split weights in the taps' order, in single precision. A tap's
  // row and column are relative to the groups', the column in bytes.
  void (*sumInOrder)(const LinePixels* groups, const LineSumTap* begin, const LineSumTap* end,
                     float (*sums)[kMaxGroupValues]);
};

template <>
const LaneEngines<RunningEngine>& EnginesOf<RunningEngine>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_DIRECTIONAL_RUNNING_LINE_SUMS_H_
