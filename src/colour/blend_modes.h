// The final blend of the processed picture over the unprocessed layer inside the lens.
#ifndef VITRELL_COLOUR_BLEND_MODES_H_
#define VITRELL_COLOUR_BLEND_MODES_H_

#include <cstdint>

#include "base/render_records.h"
#include "host/host_api.h"
#include "lens/lens_mask.h"

namespace vitrell {

struct BlendRefcon {
  const PF_LayerDef* inputLayer;  // The background.
  float intensity;                // Opacity, 0 to 1.
  std::int32_t mode;              // BlendMode; any other value leaves the destination's colour.
  const IO_Params* io;            // Its dst is the world of the mask look-up.
  std::uint8_t deep;              // The background is 16-bit.
  LensMaskView mask;              // The mask as io->dst sees it.
};

// Iterate callbacks; in is the processed pixel. Alpha goes through the same formula as the colours.
// The depths differ in how the mask enters: 16-bit fades every mode along the feather, 8-bit Normal
// ignores it. Always return 0.
PF_Err OpacityWithMode8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
PF_Err OpacityWithMode16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_BLEND_MODES_H_
