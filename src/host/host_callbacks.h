// The host's function tables: the callbacks of the input record and the suites.
//
// Slots that this project never calls are UnusedCallback: they only keep the others at their
// offsets.
#ifndef VITRELL_HOST_HOST_CALLBACKS_H_
#define VITRELL_HOST_HOST_CALLBACKS_H_

#include <cstddef>
#include <cstdint>

#include "host/host_types.h"

struct PF_InData;
struct PF_LayerDef;
struct PF_LRect;
struct PF_ParamDef;
struct PF_Pixel;
struct PF_Pixel16;

using UnusedCallback = void (*)();

// Called once for each pixel, from any thread and in any order. A non-zero result stops the pass.
using PF_IteratePixel8Func = PF_Err (*)(void* refcon, A_long x, A_long y, PF_Pixel* in,
                                        PF_Pixel* out);
using PF_IteratePixel16Func = PF_Err (*)(void* refcon, A_long x, A_long y, PF_Pixel16* in,
                                         PF_Pixel16* out);

struct PF_InteractCallbacks {
  PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time,
                           A_long time_step, A_u_long time_scale, PF_ParamDef* param);
  PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
  PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDef* def);
  PF_Err (*abort)(PF_ProgPtr effect_ref);
  PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);
  UnusedCallback register_ui;
  UnusedCallback checkout_layer_audio;
  UnusedCallback checkin_layer_audio;
  UnusedCallback get_audio_data;
  void* reserved_str[3];
  void* reserved[10];
};

// sprintf must be declared variadic: arm64 passes variadic arguments differently.
struct PF_ANSICallbacks {
  A_FpLong (*atan)(A_FpLong);
  A_FpLong (*atan2)(A_FpLong y, A_FpLong x);
  A_FpLong (*ceil)(A_FpLong);
  A_FpLong (*cos)(A_FpLong);
  A_FpLong (*exp)(A_FpLong);
  A_FpLong (*fabs)(A_FpLong);
  A_FpLong (*floor)(A_FpLong);
  A_FpLong (*fmod)(A_FpLong x, A_FpLong y);
  A_FpLong (*hypot)(A_FpLong x, A_FpLong y);
  A_FpLong (*log)(A_FpLong);
  A_FpLong (*log10)(A_FpLong);
  A_FpLong (*pow)(A_FpLong x, A_FpLong y);
  A_FpLong (*sin)(A_FpLong);
  A_FpLong (*sqrt)(A_FpLong);
  A_FpLong (*tan)(A_FpLong);
  int (*sprintf)(A_char*, const A_char*, ...);
  A_char* (*strcpy)(A_char*, const A_char*);
  A_FpLong (*asin)(A_FpLong);
  A_FpLong (*acos)(A_FpLong);
  A_long ansi_procs[1];
};

struct PF_UtilCallbacks {
  UnusedCallback begin_sampling;
  UnusedCallback subpixel_sample;
  UnusedCallback area_sample;
  UnusedCallback get_batch_func_is_deprecated;
  UnusedCallback end_sampling;
  UnusedCallback composite_rect;
  UnusedCallback blend;
  UnusedCallback convolve;
  PF_Err (*copy)(PF_ProgPtr effect_ref, PF_LayerDef* src, PF_LayerDef* dst, PF_LRect* src_r,
                 PF_LRect* dst_r);
  PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_LRect* dst_rect,
                 PF_LayerDef* world);
  UnusedCallback gaussian_kernel;
  UnusedCallback iterate;
  UnusedCallback premultiply;
  UnusedCallback premultiply_color;
  PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                      PF_LayerDef* world);
  PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_LayerDef* world);
  UnusedCallback iterate_origin;
  UnusedCallback iterate_lut;
  UnusedCallback transfer_rect;
  UnusedCallback transform_world;
  UnusedCallback host_new_handle;
  UnusedCallback host_lock_handle;
  UnusedCallback host_unlock_handle;
  UnusedCallback host_dispose_handle;
  UnusedCallback get_callback_addr;
  UnusedCallback app;
  PF_ANSICallbacks ansi;
  UnusedCallback colorCB[8];
  UnusedCallback get_platform_data;
  UnusedCallback host_get_handle_size;
  UnusedCallback iterate_origin_non_clip_src;
  UnusedCallback iterate_generic;
  UnusedCallback host_resize_handle;
  UnusedCallback subpixel_sample16;
  UnusedCallback area_sample16;
  PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* color, const PF_LRect* dst_rect,
                   PF_LayerDef* world);
  UnusedCallback premultiply_color16;
  UnusedCallback iterate16;
  UnusedCallback iterate_origin16;
  UnusedCallback iterate_origin_non_clip_src16;
  UnusedCallback get_pixel_data8;
  UnusedCallback get_pixel_data16;
  A_long reserved[1];
};

// 0 is success; AcquireSuite returns kSPSuiteNotFoundError for an unknown name or version.
inline constexpr SPErr kSPSuiteNotFoundError = 0x53214664;

struct SPBasicSuite {
  SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
  SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
  SPBoolean (*IsEqual)(const char* token1, const char* token2);
  SPErr (*AllocateBlock)(std::size_t size, void** block);
  SPErr (*FreeBlock)(void* block);
  SPErr (*ReallocateBlock)(void* block, std::size_t newSize, void** newblock);
  SPErr (*Undefined)();
};

// Suites are matched by exact name and version. The iterate suites differ in the case of a letter.
inline constexpr char kPFAnsiSuite[] = "PF ANSI Suite";
inline constexpr std::int32_t kPFAnsiSuiteVersion1 = 1;
inline constexpr char kPFParamUtilsSuite[] = "PF Param Utils Suite";
inline constexpr std::int32_t kPFParamUtilsSuiteVersion3 = 3;
inline constexpr char kPFIterate8Suite[] = "PF Iterate8 Suite";
inline constexpr std::int32_t kPFIterate8SuiteVersion1 = 1;
inline constexpr char kPFIterate16Suite[] = "PF iterate16 Suite";
inline constexpr std::int32_t kPFIterate16SuiteVersion1 = 1;
inline constexpr char kPFWorldSuite[] = "PF World Suite";
inline constexpr std::int32_t kPFWorldSuiteVersion2 = 2;

struct PF_ANSICallbacksSuite1 {
  A_FpLong (*atan)(A_FpLong);
  A_FpLong (*atan2)(A_FpLong y, A_FpLong x);
  A_FpLong (*ceil)(A_FpLong);
  A_FpLong (*cos)(A_FpLong);
  A_FpLong (*exp)(A_FpLong);
  A_FpLong (*fabs)(A_FpLong);
  A_FpLong (*floor)(A_FpLong);
  A_FpLong (*fmod)(A_FpLong x, A_FpLong y);
  A_FpLong (*hypot)(A_FpLong x, A_FpLong y);
  A_FpLong (*log)(A_FpLong);
  A_FpLong (*log10)(A_FpLong);
  A_FpLong (*pow)(A_FpLong x, A_FpLong y);
  A_FpLong (*sin)(A_FpLong);
  A_FpLong (*sqrt)(A_FpLong);
  A_FpLong (*tan)(A_FpLong);
  int (*sprintf)(A_char*, const A_char*, ...);
  A_char* (*strcpy)(A_char*, const A_char*);
  A_FpLong (*asin)(A_FpLong);
  A_FpLong (*acos)(A_FpLong);
};

struct PF_ParamUtilsSuite3 {
  PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index,
                             const PF_ParamDef* defP);
  UnusedCallback PF_GetCurrentState;
  UnusedCallback PF_AreStatesIdentical;
  UnusedCallback PF_IsIdenticalCheckout;
  UnusedCallback PF_FindKeyframeTime;
  UnusedCallback PF_GetKeyframeCount;
  UnusedCallback PF_CheckoutKeyframe;
  UnusedCallback PF_CheckinKeyframe;
  UnusedCallback PF_KeyIndexToTime;
};

struct PF_Iterate8Suite1 {
  PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                    PF_LayerDef* src, const PF_LRect* area, void* refcon,
                    PF_IteratePixel8Func pix_fn, PF_LayerDef* dst);
  UnusedCallback iterate_origin;
  UnusedCallback iterate_lut;
  UnusedCallback iterate_origin_non_clip_src;
  UnusedCallback iterate_generic;
};

struct PF_iterate16Suite1 {
  PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                    PF_LayerDef* src, const PF_LRect* area, void* refcon,
                    PF_IteratePixel16Func pix_fn, PF_LayerDef* dst);
  UnusedCallback iterate_origin;
  UnusedCallback iterate_origin_non_clip_src;
};

struct PF_WorldSuite2 {
  PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long widthL, A_long heightL, PF_Boolean clear_pixB,
                        PF_PixelFormat pixel_format, PF_LayerDef* worldP);
  PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_LayerDef* worldP);
  PF_Err (*PF_GetPixelFormat)(const PF_LayerDef* worldP, PF_PixelFormat* pixel_formatP);
};

#endif  // VITRELL_HOST_HOST_CALLBACKS_H_
