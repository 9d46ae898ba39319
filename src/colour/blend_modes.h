// The final blend of the processed image over the unprocessed layer inside the lens.
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
  std::int32_t mode;              // BlendMode.
  const IO_Params* io;            // The worlds of the pass: src is the front.
  std::uint8_t deep;              // The background is 16-bit.
};

// The refcon of the callbacks.
struct MaskedBlend {
  BlendRefcon blend;
  LensMaskView mask;  // The mask indexed by the extent of blend.io->dst.
};

// Iterate callbacks; refcon is a MaskedBlend, in is the processed pixel. Alpha is blended by the
// colours' formula. The mask acts differently in each depth: 16 bits fade every mode along the
// feather, 8-bit Normal ignores it. With a mode that is none of the four, the destination's own
// value takes the place of the blend. Always return 0.
PF_Err OpacityWithMode8(void* refcon, A_long x, A_long y, PF_Pixel* in, PF_Pixel* out);
PF_Err OpacityWithMode16(void* refcon, A_long x, A_long y, PF_Pixel16* in, PF_Pixel16* out);

}  // namespace vitrell

#endif  // VITRELL_COLOUR_BLEND_MODES_H_
