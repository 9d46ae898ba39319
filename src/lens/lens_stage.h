// The lens stage: the processed image inside the lens, the unprocessed one outside it.
#ifndef VITRELL_LENS_LENS_STAGE_H_
#define VITRELL_LENS_LENS_STAGE_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "pass/stage.h"

namespace vitrell {

struct LensRefcon {
  const PF_LayerDef* inputLayer;
  const IO_Params* io;
  std::uint8_t useBlurMap;  // Not 0: the mask is strengthened by blurMapAmount.
  double blurMapAmount;
  std::uint8_t deep;  // The input layer is 16-bit.
};

// Iterate callbacks; in is the processed pixel. The refcon begins with a LensRefcon, followed by
// the tables of the pass. Always return 0.
PF_Err Lens8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
PF_Err Lens16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);

// The stage: composites call.io.src over call.inputLayer into call.io.dst, or copies if there is no
// visible lens. Queries the layer's pixel format in either case. Returns the code of the first
// failing call, or PF_Err_BAD_CALLBACK_PARAM if the layer's rows are too short for pixels of that
// format.
[[nodiscard]] PF_Err RunLensStage(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_LENS_LENS_STAGE_H_
