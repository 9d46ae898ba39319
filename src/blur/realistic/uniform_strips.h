// The uniform realistic blur in strips: as many rows as there are vector lanes advance together.
#ifndef VITRELL_BLUR_REALISTIC_UNIFORM_STRIPS_H_
#define VITRELL_BLUR_REALISTIC_UNIFORM_STRIPS_H_

#include "base/buffer.h"
#include "blur/realistic/highlight_map.h"
#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/lane_sums.h"
#include "host/host_api.h"

namespace vitrell {

// The inputs of a uniform pass. The map is column-major.
struct UniformTables {
  const PF_LayerDef* input;
  const PF_LayerDef* output;  // Of the input's depth.
  std::int32_t radius;
  HighlightMap map;
  IrisKernel kernel;         // The window: every weight that is not 0.
  Buffer<Weight_Pt> points;  // The step to the next pixel of a row.
};

// Computes the whole output, in strips of engine.lanes rows from the top. All weights must be
// finite. If memory is short, nothing is written and the result is PF_Err_OUT_OF_MEMORY.
[[nodiscard]] PF_Err BlurStrips(const UniformTables& pass, const IrisEngine& engine);

}  // namespace vitrell

#endif  // VITRELL_BLUR_REALISTIC_UNIFORM_STRIPS_H_
