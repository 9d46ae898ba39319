// Runs one per-pixel pass through the host's iterate suites.
#ifndef VITRELL_HOST_PIXEL_PASS_H_
#define VITRELL_HOST_PIXEL_PASS_H_

#include "host/host_api.h"
#include "host/suite_handler.h"

namespace vitrell {

// One per-pixel callback in its two depths.
struct PixelCallbacks {
  PF_IteratePixel8Func pixel8;
  PF_IteratePixel16Func pixel16;
};

// Callbacks for a pass whose refcon was made for one depth, that of its destination.
constexpr PixelCallbacks CallbackOfDepth(PF_IteratePixel8Func callback) {
  return {callback, nullptr};
}
constexpr PixelCallbacks CallbackOfDepth(PF_IteratePixel16Func callback) {
  return {nullptr, callback};
}

// Iterates over the whole of both worlds with the callback of the destination's depth, reports
// progress from 0 to progressFinal, and returns the host's result. The iterate suite is acquired
// through suites and stays acquired; a missing one throws.
//
// Returns PF_Err_BAD_CALLBACK_PARAM if the worlds differ in depth, since the callback would then
// read one of its two pixels as the wrong type, and if there is no callback of that depth.
[[nodiscard]] PF_Err RunPixelPass(AEGP_SuiteHandler& suites, PF_InData* inData, PF_LayerDef* src,
                                  PF_LayerDef* dst, A_long progressFinal, PixelCallbacks callbacks,
                                  void* refcon);

}  // namespace vitrell

#endif  // VITRELL_HOST_PIXEL_PASS_H_
