// The realistic blur's sums for many neighbouring pixels at once, one pixel in each vector lane.
//
// Lanes never mix: each one adds the same taps in the same order and with the same roundings as
// TapSums does for its pixel.
#ifndef VITRELL_BLUR_REALISTIC_LANE_SUMS_H_
#define VITRELL_BLUR_REALISTIC_LANE_SUMS_H_

#include <cstdint>

#include "blur/realistic/highlight_map.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/tap_sums.h"
#include "simd/lane_target.h"

namespace vitrell {

inline constexpr int kMaxLanes = 64;
inline constexpr int kMaxLaneRows = 4;
static_assert(kMaxLanes <= HighlightMap::kLinePadding);

// The running sums of neighbouring pixels. Lanes beyond an engine's number are not touched.
struct LaneSums {
  alignas(64) float red[kMaxLanes];
  alignas(64) float green[kMaxLanes];
  alignas(64) float blue[kMaxLanes];
  alignas(64) float weight[kMaxLanes];

  TapSums Lane(int lane) const { return {red[lane], green[lane], blue[lane], weight[lane]}; }

  void SetLane(int lane, const LaneSums& from) {
    red[lane] = from.red[lane];
    green[lane] = from.green[lane];
    blue[lane] = from.blue[lane];
    weight[lane] = from.weight[lane];
  }
};

// A highlight map seen from the pixel of lane 0. The map must be contiguous in the lanes'
// direction.
struct LaneView {
  const float* origin;  // Highlight weight of the map's first pixel.
  std::int64_t center;  // Offset of the lane 0 pixel's from there; may lie outside the map.
  std::int64_t planeStride;
  std::int64_t dxStride;
  std::int64_t dyStride;
};

// The offsets, both ends included, whose taps are added; the others are skipped. Every address that
// a tap within them reaches must lie in the map or its padding.
struct LaneWindow {
  std::int64_t firstDx;
  std::int64_t lastDx;
  std::int64_t firstDy;
  std::int64_t lastDy;
};

// A tap of the sliding window with its address resolved.
struct LaneTap {
  std::int64_t offset;  // From the centre.
  std::int32_t dx;
  float weight;
};

// Neighbouring lanes that share a kernel.
struct LaneGroup {
  const IrisKernel* kernel;
  int firstLane;
  int endLane;
};

// The lanes of one row: groups come from the left, one at least, and do not overlap.
struct LaneRow {
  const LaneGroup* groups;
  int groupCount;
};

// Weights must be finite: a tap that is outside the map for some lanes only reads zeros there.
struct IrisEngine {
  int lanes;

  // Sums a kernel from scratch, in the order of the weight grid.
  void (*sumKernel)(const LaneView& view, const LaneWindow& window, const IrisKernel& kernel,
                    LaneSums* sums);

  // Adds the taps from begin up to end whose dx lies within the window; its rows are not consulted.
  void (*addTaps)(const LaneView& view, const LaneWindow& window, const LaneTap* begin,
                  const LaneTap* end, LaneSums* sums);

  // Sums from scratch rowCount neighbouring rows of at most rowLanes lanes, with a kernel for each
  // group of lanes. View and window are those of the first row; the map is one for sums by mask. No
  // weight may be negative. The sums of lanes without a group mean nothing.
  int rowCount;  // At most kMaxLaneRows.
  int rowLanes;
  void (*sumRows)(const LaneView& view, const LaneWindow& window, const LaneRow* rows,
                  LaneSums* sums);
};

template <>
const LaneEngines<IrisEngine>& EnginesOf<IrisEngine>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_LANE_SUMS_H_
