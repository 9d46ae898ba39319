// Runs one per-pixel pass through the host's iterate suites.
#include "host/pixel_pass.h"

#include "host/world.h"

namespace vitrell {

PF_Err RunPixelPass(AEGP_SuiteHandler& suites, PF_InData* inData, PF_LayerDef* src,
                    PF_LayerDef* dst, A_long progressFinal, PixelCallbacks callbacks,
                    void* refcon) {
  const bool deep = IsDeep(*dst);
  const bool hasCallback = deep ? callbacks.pixel16 != nullptr : callbacks.pixel8 != nullptr;
  if (IsDeep(*src) != deep || !hasCallback) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  if (deep) {
    return suites.Iterate16Suite1()->iterate(inData, 0, progressFinal, src, nullptr, refcon,
                                             callbacks.pixel16, dst);
  }
  return suites.Iterate8Suite1()->iterate(inData, 0, progressFinal, src, nullptr, refcon,
                                          callbacks.pixel8, dst);
}

}  // namespace vitrell
