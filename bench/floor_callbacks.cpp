// The floor's passes, which copy each pixel. They are built as a separate module, like an effect's
// callbacks, because a call into another module costs more than one within a program.
#include "host/host_api.h"

extern "C" {

__attribute__((visibility("default"))) PF_Err CopyPixel8(void* /*refcon*/, A_long /*x*/,
                                                         A_long /*y*/, PF_Pixel* in,
                                                         PF_Pixel* out) {
  *out = *in;
  return PF_Err_NONE;
}

__attribute__((visibility("default"))) PF_Err CopyPixel16(void* /*refcon*/, A_long /*x*/,
                                                          A_long /*y*/, PF_Pixel16* in,
                                                          PF_Pixel16* out) {
  *out = *in;
  return PF_Err_NONE;
}

}  // extern "C"
