// The realistic blur's sums for many neighbouring pixels at once, one pixel per vector lane.
//
// Lanes never mix: each adds the same taps in the same order and with the same roundings as TapSums
// does for its pixel.
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

// The running sums of neighbouring pixels. Lanes beyond an engine's number are left unchanged.
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

// A highlight map as seen from the pixel of lane 0. The map's lines must run in the direction in
// which the lanes are neighbours.
struct LaneView {
  const float* origin;  // Highlight weight of pixel (0, 0).
  std::int64_t center;  // Offset from origin of lane 0's pixel; may lie outside the map.
  std::int64_t planeStride;
  std::int64_t dxStride;
  std::int64_t dyStride;
};

// The closed range of offsets whose taps are added; others are skipped. All addresses that taps
// within it reach must lie in the map or its padding.
struct LaneWindow {
  std::int64_t firstDx;
  std::int64_t lastDx;
  std::int64_t firstDy;
  std::int64_t lastDy;
};

// A tap of the sliding window as an address offset.
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

// The lanes of one row: at least one group, ordered from the left and without overlap.
struct LaneRow {
  const LaneGroup* groups;
  int groupCount;
};

// Weights must be finite: where a tap lies outside the map for only some lanes, these read zeros.
struct IrisEngine {
  int lanes;

  // Computes a kernel's sums from scratch, in grid order.
  void (*sumKernel)(const LaneView& view, const LaneWindow& window, const IrisKernel& kernel,
                    LaneSums* sums);

  // Adds the taps [begin, end) whose dx lies within the window; the window's rows are ignored.
  void (*addTaps)(const LaneView& view, const LaneWindow& window, const LaneTap* begin,
                  const LaneTap* end, LaneSums* sums);

  // Computes the sums of rowCount neighbouring rows of at most rowLanes lanes from scratch, with a
  // kernel for each group of lanes. View and window are those of the first row; the map must have
  // been built for use by mask. Weights must not be negative. Sums of lanes without a group are
  // undefined.
  int rowCount;  // At most kMaxLaneRows.
  int rowLanes;
  void (*sumRows)(const LaneView& view, const LaneWindow& window, const LaneRow* rows,
                  LaneSums* sums);
};

template <>
const LaneEngines<IrisEngine>& EnginesOf<IrisEngine>();

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_LANE_SUMS_H_
