// The host's data records: pixels, worlds, parameters and the input and output records.
//
// The host's records have natural alignment: no packing pragma may surround these declarations.
// Members that this project never uses keep their place and name.
#ifndef VITRELL_HOST_HOST_RECORDS_H_
#define VITRELL_HOST_HOST_RECORDS_H_

#include "host/host_callbacks.h"
#include "host/host_types.h"

// Half-open rectangle: right and bottom are exclusive.
struct PF_LRect {
  A_long left;
  A_long top;
  A_long right;
  A_long bottom;
};

struct PF_Point {
  A_long h;
  A_long v;
};

struct PF_FixedPoint {
  PF_Fixed x;
  PF_Fixed y;
};

struct PF_RationalScale {
  A_long num;
  A_u_long den;
};

struct PF_SpecVersion {
  A_short major;
  A_short minor;
};

// Channels are straight (not premultiplied). 16-bit white is 32768.
struct PF_Pixel {
  A_u_char alpha;
  A_u_char red;
  A_u_char green;
  A_u_char blue;
};

struct PF_Pixel16 {
  A_u_short alpha;
  A_u_short red;
  A_u_short green;
  A_u_short blue;
};

// An image in memory. Rows start rowbytes apart and may be padded.
struct PF_LayerDef {
  void* reserved0;
  void* reserved1;
  PF_WorldFlags world_flags;
  PF_PixelPtr data;
  A_long rowbytes;
  A_long width;
  A_long height;
  PF_LRect extent_hint;
  void* platform_ref;
  A_long reserved_long1;
  void* reserved_long4;
  PF_RationalScale pix_aspect_ratio;
  void* reserved_long2;
  A_long origin_x;
  A_long origin_y;
  A_long reserved_long3;
  A_long dephault;
};

using PF_EffectWorld = PF_LayerDef;

struct PF_SoundFormatInfo {
  PF_FpLong rateF;
  PF_SoundChannels num_channels;
  PF_SoundFormat format;
  PF_SoundSampleSize sample_size;
};

struct PF_SoundWorld {
  PF_SoundFormatInfo fi;
  A_long num_samples;
  void* dataP;
};

struct PF_SliderDef {
  PF_ParamValue value;
  A_char value_str[32];
  A_char value_desc[32];
  PF_ParamValue valid_min;
  PF_ParamValue valid_max;
  PF_ParamValue slider_min;
  PF_ParamValue slider_max;
  PF_ParamValue dephault;
};

struct PF_FixedSliderDef {
  PF_Fixed value;
  A_char value_str[32];
  A_char value_desc[32];
  PF_Fixed valid_min;
  PF_Fixed valid_max;
  PF_Fixed slider_min;
  PF_Fixed slider_max;
  PF_Fixed dephault;
  PF_Precision precision;
  PF_ValueDisplayFlags display_flags;
};

// Only value and phase are double; the limits are float.
struct PF_FloatSliderDef {
  PF_FpLong value;
  PF_FpLong phase;
  A_char value_desc[32];
  PF_FpShort valid_min;
  PF_FpShort valid_max;
  PF_FpShort slider_min;
  PF_FpShort slider_max;
  PF_FpShort dephault;
  PF_Precision precision;
  PF_ValueDisplayFlags display_flags;
  PF_FSliderFlags fs_flags;
  PF_FpShort curve_tolerance;
  PF_Boolean useExponent;
  PF_FpShort exponent;
};

struct PF_AngleDef {
  PF_Fixed value;
  PF_Fixed dephault;
  PF_Fixed valid_min;
  PF_Fixed valid_max;
};

struct PF_CheckBoxDef {
  PF_ParamValue value;
  PF_Boolean dephault;
  A_char reserved;
  A_short reserved1;
  union {
    const A_char* nameptr;
  } u;
};

struct PF_ColorDef {
  PF_Pixel value;
  PF_Pixel dephault;
};

// Defaults are percentages of the layer's size, values during a render are pixels; both are 16.16
// fixed point.
struct PF_PointDef {
  PF_Fixed x_value;
  PF_Fixed y_value;
  A_char reserved[3];
  PF_Boolean restrict_bounds;
  PF_Fixed x_dephault;
  PF_Fixed y_dephault;
};

struct PF_Point3DDef {
  PF_FpLong x_value;
  PF_FpLong y_value;
  PF_FpLong z_value;
  PF_FpLong x_dephault;
  PF_FpLong y_dephault;
  PF_FpLong z_dephault;
  char reserved[16];
};

// The value is the 1-based position of a choice; the list separates choices by '|'.
struct PF_PopupDef {
  PF_ParamValue value;
  A_short num_choices;
  A_short dephault;
  union {
    const A_char* namesptr;
  } u;
};

struct PF_ButtonDef {
  PF_ParamValue value;
  union {
    const A_char* namesptr;
  } u;
};

struct PF_PathDef {
  PF_PathID path_id;
  A_long reserved0;
  A_long dephault;
};

struct PF_ArbitraryDef {
  A_short id;
  A_short pad;
  PF_ArbitraryH dephault;
  PF_ArbitraryH value;
  void* refconPV;
};

union PF_ParamDefUnion {
  PF_LayerDef ld;
  PF_SliderDef sd;
  PF_FixedSliderDef fd;
  PF_AngleDef ad;
  PF_CheckBoxDef bd;
  PF_ColorDef cd;
  PF_PointDef td;
  PF_PopupDef pd;
  PF_FloatSliderDef fs_d;
  PF_ArbitraryDef arb_d;
  PF_PathDef path_d;
  PF_ButtonDef button_d;
  PF_Point3DDef point3d_d;
};

struct PF_ParamDef {
  union {
    A_long id;
    PF_ChangeFlags change_flags;
  } uu;
  PF_ParamUIFlags ui_flags;
  A_short ui_width;
  A_short ui_height;
  PF_ParamType param_type;
  A_char name[32];
  PF_ParamFlags flags;
  A_long unused;
  PF_ParamDefUnion u;
};

struct PF_UserChangedParamExtra {
  PF_ParamIndex param_index;
};

struct PF_InData {
  PF_InteractCallbacks inter;
  PF_UtilCallbacks* utils;
  PF_ProgPtr effect_ref;
  PF_Quality quality;
  PF_SpecVersion version;
  A_long serial_num;
  A_AppID appl_id;
  A_long num_params;
  A_long reserved;
  A_long what_cpu;
  A_long what_fpu;
  A_long current_time;
  A_long time_step;
  A_long total_time;
  A_long local_time_step;
  A_u_long time_scale;
  PF_Field field;
  PF_Fixed shutter_angle;
  A_long width;
  A_long height;
  PF_LRect extent_hint;
  A_long output_origin_x;
  A_long output_origin_y;
  PF_RationalScale downsample_x;
  PF_RationalScale downsample_y;
  PF_RationalScale pixel_aspect_ratio;
  PF_InFlags in_flags;
  PF_Handle global_data;
  PF_Handle sequence_data;
  PF_Handle frame_data;
  A_long start_sampL;
  A_long dur_sampL;
  A_long total_sampL;
  PF_SoundWorld src_snd;
  SPBasicSuite* pica_basicP;
  A_long pre_effect_source_origin_x;
  A_long pre_effect_source_origin_y;
  PF_Fixed shutter_phase;
};

struct PF_OutData {
  A_u_long my_version;
  A_char name[32];
  PF_Handle global_data;
  A_long num_params;
  PF_Handle sequence_data;
  A_long flat_sdata_size;
  PF_Handle frame_data;
  A_long width;
  A_long height;
  PF_Point origin;
  PF_OutFlags out_flags;
  A_char return_msg[256];
  A_long start_sampL;
  A_long dur_sampL;
  PF_SoundWorld dest_snd;
  PF_OutFlags2 out_flags2;
};

#endif  // VITRELL_HOST_HOST_RECORDS_H_
