// Sums of box windows around neighbouring pixels, and their rounded means, with wide vectors.
#ifndef VITRELL_BLUR_FAST_BOX_LINES_H_
#define VITRELL_BLUR_FAST_BOX_LINES_H_

#include <cstdint>

#include "blur/fast/box_means.h"
#include "host/host_api.h"
#include "simd/lane_target.h"
#include "simd/pixel_lanes.h"

namespace vitrell {

// Pixels that are summed together.
inline constexpr std::int32_t kBoxBlock = 64;

// Sums are those of a pixel's four channels, modulo 2^32 or 2^64. Counts are at most kBoxBlock.
template <typename Pixel, typename Sums = U32Lanes>
struct BoxEngine {
  // Moves a window along a row: for each of `count` pixels *window gains one pixel, loses another,
  // and is stored.
  void (*slide)(const Pixel* entering, const Pixel* leaving, std::int32_t count, Sums* window,
                Sums* sums);

  // Adds a row's pixels to the sums of their columns, or takes them away.
  void (*add)(const Pixel* row, std::int32_t count, Sums* sums);
  void (*subtract)(const Pixel* row, std::int32_t count, Sums* sums);

  // Stores the rounded means; 32-bit sums must be below 2^31. Alpha is averaged like the colours.
  void (*means)(const Sums* sums, std::int32_t count, const BoxScale& scale, Pixel* out);

  // Moves windows down by a row: adds one row, subtracts another and stores the means.
  void (*advance)(const Pixel* entering, const Pixel* leaving, std::int32_t count,
                  const BoxScale& scale, Sums* sums, Pixel* out);
};

// With 32-bit sums, for each target.
// With 32-bit sums, for each target.
template <>
const LaneEngines<BoxEngine<PF_Pixel>>& EnginesOf<BoxEngine<PF_Pixel>>();
template <>
const LaneEngines<BoxEngine<PF_Pixel16>>& EnginesOf<BoxEngine<PF_Pixel16>>();

// With 64-bit sums, pixel by pixel.
template <typename Pixel>
const BoxEngine<Pixel, WideSums>& WideBoxEngine();
template <>
const BoxEngine<PF_Pixel, WideSums>& WideBoxEngine<PF_Pixel>();
template <>
const BoxEngine<PF_Pixel16, WideSums>& WideBoxEngine<PF_Pixel16>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_FAST_BOX_LINES_H_
