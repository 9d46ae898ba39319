// The utility table: worlds and maths are implemented, every other slot complains.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "headless/host_maths.h"
#include "headless/host_tables.h"

namespace vitrell::headless {
namespace {

void FillUnserved(PF_UtilCallbacks& callbacks) {
  UnusedCallback* const slots[] = {
      &callbacks.begin_sampling,
      &callbacks.subpixel_sample,
      &callbacks.area_sample,
      &callbacks.get_batch_func_is_deprecated,
      &callbacks.end_sampling,
      &callbacks.composite_rect,
      &callbacks.blend,
      &callbacks.convolve,
      &callbacks.gaussian_kernel,
      &callbacks.iterate,
      &callbacks.premultiply,
      &callbacks.premultiply_color,
      &callbacks.iterate_origin,
      &callbacks.iterate_lut,
      &callbacks.transfer_rect,
      &callbacks.transform_world,
      &callbacks.host_new_handle,
      &callbacks.host_lock_handle,
      &callbacks.host_unlock_handle,
      &callbacks.host_dispose_handle,
      &callbacks.get_callback_addr,
      &callbacks.app,
      &callbacks.get_platform_data,
      &callbacks.host_get_handle_size,
      &callbacks.iterate_origin_non_clip_src,
      &callbacks.iterate_generic,
      &callbacks.host_resize_handle,
      &callbacks.subpixel_sample16,
      &callbacks.area_sample16,
      &callbacks.premultiply_color16,
      &callbacks.iterate16,
      &callbacks.iterate_origin16,
      &callbacks.iterate_origin_non_clip_src16,
      &callbacks.get_pixel_data8,
      &callbacks.get_pixel_data16,
  };
  for (UnusedCallback* slot : slots) *slot = UnservedCallback;
  std::fill(std::begin(callbacks.colorCB), std::end(callbacks.colorCB), UnservedCallback);
}

}  // namespace

PF_UtilCallbacks MakeUtilCallbacks() {
  PF_UtilCallbacks callbacks{};
  FillUnserved(callbacks);
  FillWorldCallbacks(callbacks);
  // The embedded table is the suite's, followed by one reserved word.
  static_assert(offsetof(PF_ANSICallbacks, ansi_procs) == sizeof(PF_ANSICallbacksSuite1));
  std::memcpy(&callbacks.ansi, &HostMaths(), sizeof(PF_ANSICallbacksSuite1));
  return callbacks;
}

}  // namespace vitrell::headless
