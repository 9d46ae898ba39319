// The uniform realistic blur's rows, advancing side by side in vector lanes.
#ifndef VITRELL_BLUR_REALISTIC_UNIFORM_STRIPS_H_
#define VITRELL_BLUR_REALISTIC_UNIFORM_STRIPS_H_

#include "base/buffer.h"
#include "blur/realistic/highlight_map.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"
#include "host/host_api.h"

namespace vitrell {

// Everything a uniform pass reads. The map is column-major.
struct UniformTables {
  const PF_LayerDef* input;
  const PF_LayerDef* output;  // Of the input's depth.
  std::int32_t radius;
  HighlightMap map;
  IrisKernel kernel;         // Taps of a window, every weight that is not 0.
  Buffer<Weight_Pt> points;  // Taps of a step to the right.
};

// Writes the whole output, strips of engine.lanes rows from the top. All weights must be finite.
// PF_Err_OUT_OF_MEMORY, with nothing written, when there is no memory for its tables.
[[nodiscard]] PF_Err BlurStrips(const UniformTables& pass, const IrisEngine& engine);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_UNIFORM_STRIPS_H_
