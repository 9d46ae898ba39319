// Scalar types and constants of the host's effect interface, API 13.18 and later (64-bit).
//
// Every stored integer has an explicit width: the host never stores a C enum or a C long.
// Naming follows the host, so that its documentation applies word for word.
#ifndef VITRELL_HOST_HOST_TYPES_H_
#define VITRELL_HOST_HOST_TYPES_H_

#include <cstdint>

using A_char = char;
using A_u_char = std::uint8_t;
using A_Boolean = std::uint8_t;
using A_short = std::int16_t;
using A_u_short = std::uint16_t;
using A_long = std::int32_t;
using A_u_long = std::uint32_t;
using A_FpShort = float;
using A_FpLong = double;
using PF_Boolean = std::uint8_t;
using PF_FpShort = float;
using PF_FpLong = double;
using PF_Fixed = std::int32_t;  // 16.16 fixed point.

using PF_Err = std::int32_t;
using PF_Cmd = std::int32_t;
using PF_ParamIndex = std::int32_t;
using PF_ParamValue = std::int32_t;
using PF_ParamType = std::int32_t;
using PF_ParamFlags = std::int32_t;
using PF_ParamUIFlags = std::int32_t;
using PF_ChangeFlags = std::int32_t;
using PF_OutFlags = std::int32_t;
using PF_OutFlags2 = std::int32_t;
using PF_InFlags = std::int32_t;
using PF_WorldFlags = std::int32_t;
using PF_NewWorldFlags = std::int32_t;
using PF_PixelFormat = std::int32_t;
using PF_Quality = std::int32_t;
using PF_Field = std::int32_t;
using PF_PathID = std::uint32_t;
using PF_FSliderFlags = std::uint32_t;
using PF_Precision = std::int16_t;
using PF_ValueDisplayFlags = std::int16_t;
using PF_SoundFormat = std::int16_t;
using PF_SoundSampleSize = std::int16_t;
using PF_SoundChannels = std::int16_t;
using A_AppID = std::int32_t;

using SPErr = std::int32_t;
using SPBoolean = std::uint8_t;

// Handles and opaque references.
using PF_Handle = char**;
using PF_ArbitraryH = PF_Handle;
using PF_ProgPtr = struct PF_OpaqueProgram*;
using PF_PixelPtr = void*;

// Command selectors.
inline constexpr PF_Cmd PF_Cmd_ABOUT = 0;
inline constexpr PF_Cmd PF_Cmd_GLOBAL_SETUP = 1;
inline constexpr PF_Cmd PF_Cmd_GLOBAL_SETDOWN = 3;
inline constexpr PF_Cmd PF_Cmd_PARAMS_SETUP = 4;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_SETUP = 5;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_RESETUP = 6;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_FLATTEN = 7;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_SETDOWN = 8;
inline constexpr PF_Cmd PF_Cmd_DO_DIALOG = 9;
inline constexpr PF_Cmd PF_Cmd_FRAME_SETUP = 10;
inline constexpr PF_Cmd PF_Cmd_RENDER = 11;
inline constexpr PF_Cmd PF_Cmd_FRAME_SETDOWN = 12;
inline constexpr PF_Cmd PF_Cmd_USER_CHANGED_PARAM = 13;
inline constexpr PF_Cmd PF_Cmd_UPDATE_PARAMS_UI = 14;
inline constexpr PF_Cmd PF_Cmd_SMART_PRE_RENDER = 23;
inline constexpr PF_Cmd PF_Cmd_SMART_RENDER = 24;
inline constexpr PF_Cmd PF_Cmd_NUM_CMDS = 34;

// Error codes. 517 is the result of a cancelled render.
inline constexpr PF_Err PF_Err_NONE = 0;
inline constexpr PF_Err PF_Err_OUT_OF_MEMORY = 4;
inline constexpr PF_Err PF_Err_INTERNAL_STRUCT_DAMAGED = 512;
inline constexpr PF_Err PF_Err_INVALID_INDEX = 513;
inline constexpr PF_Err PF_Err_UNRECOGNIZED_PARAM_TYPE = 514;
inline constexpr PF_Err PF_Err_INVALID_CALLBACK = 515;
inline constexpr PF_Err PF_Err_BAD_CALLBACK_PARAM = 516;
inline constexpr PF_Err PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518;
inline constexpr PF_Err PF_Interrupt_CANCEL = 517;

// Parameter types.
inline constexpr PF_ParamType PF_Param_LAYER = 0;
inline constexpr PF_ParamType PF_Param_SLIDER = 1;
inline constexpr PF_ParamType PF_Param_FIX_SLIDER = 2;
inline constexpr PF_ParamType PF_Param_ANGLE = 3;
inline constexpr PF_ParamType PF_Param_CHECKBOX = 4;
inline constexpr PF_ParamType PF_Param_COLOR = 5;
inline constexpr PF_ParamType PF_Param_POINT = 6;
inline constexpr PF_ParamType PF_Param_POPUP = 7;
inline constexpr PF_ParamType PF_Param_CUSTOM = 8;
inline constexpr PF_ParamType PF_Param_NO_DATA = 9;
inline constexpr PF_ParamType PF_Param_FLOAT_SLIDER = 10;
inline constexpr PF_ParamType PF_Param_ARBITRARY_DATA = 11;
inline constexpr PF_ParamType PF_Param_PATH = 12;
inline constexpr PF_ParamType PF_Param_GROUP_START = 13;
inline constexpr PF_ParamType PF_Param_GROUP_END = 14;
inline constexpr PF_ParamType PF_Param_BUTTON = 15;
inline constexpr PF_ParamType PF_Param_POINT_3D = 18;

// PF_ParamDef::flags. Bit 5 has two names: twirl collapsed and start collapsed.
inline constexpr PF_ParamFlags PF_ParamFlag_NONE = 0;
inline constexpr PF_ParamFlags PF_ParamFlag_CANNOT_TIME_VARY = 0x2;
inline constexpr PF_ParamFlags PF_ParamFlag_CANNOT_INTERP = 0x4;
inline constexpr PF_ParamFlags PF_ParamFlag_COLLAPSE_TWIRLY = 0x20;
inline constexpr PF_ParamFlags PF_ParamFlag_SUPERVISE = 0x40;
inline constexpr PF_ParamFlags PF_ParamFlag_START_COLLAPSED = 0x20;
inline constexpr PF_ParamFlags PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 0x80;
inline constexpr PF_ParamFlags PF_ParamFlag_LAYER_PARAM_IS_TRACKMATTE = 0x80;
inline constexpr PF_ParamFlags PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED = 0x100;
inline constexpr PF_ParamFlags PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 0x200;

// PF_ParamDef::ui_flags.
inline constexpr PF_ParamUIFlags PF_PUI_NONE = 0;
inline constexpr PF_ParamUIFlags PF_PUI_TOPIC = 0x1;
inline constexpr PF_ParamUIFlags PF_PUI_CONTROL = 0x2;
inline constexpr PF_ParamUIFlags PF_PUI_STD_CONTROL_ONLY = 0x4;
inline constexpr PF_ParamUIFlags PF_PUI_NO_ECW_UI = 0x8;
inline constexpr PF_ParamUIFlags PF_PUI_ECW_SEPARATOR = 0x10;
inline constexpr PF_ParamUIFlags PF_PUI_DISABLED = 0x20;
inline constexpr PF_ParamUIFlags PF_PUI_DONT_ERASE_TOPIC = 0x40;
inline constexpr PF_ParamUIFlags PF_PUI_DONT_ERASE_CONTROL = 0x80;
inline constexpr PF_ParamUIFlags PF_PUI_RADIO_BUTTON = 0x100;
inline constexpr PF_ParamUIFlags PF_PUI_INVISIBLE = 0x200;

// PF_ParamDef::uu.change_flags.
inline constexpr PF_ChangeFlags PF_ChangeFlag_NONE = 0;
inline constexpr PF_ChangeFlags PF_ChangeFlag_CHANGED_VALUE = 0x1;
inline constexpr PF_ChangeFlags PF_ChangeFlag_SET_TO_VARY = 0x4;
inline constexpr PF_ChangeFlags PF_ChangeFlag_SET_TO_CONSTANT = 0x8;

// PF_OutData::out_flags.
inline constexpr PF_OutFlags PF_OutFlag_NONE = 0;
inline constexpr PF_OutFlags PF_OutFlag_KEEP_RESOURCE_OPEN = 0x1;
inline constexpr PF_OutFlags PF_OutFlag_WIDE_TIME_INPUT = 0x2;
inline constexpr PF_OutFlags PF_OutFlag_NON_PARAM_VARY = 0x4;
inline constexpr PF_OutFlags PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 0x10;
inline constexpr PF_OutFlags PF_OutFlag_I_DO_DIALOG = 0x20;
inline constexpr PF_OutFlags PF_OutFlag_USE_OUTPUT_EXTENT = 0x40;
inline constexpr PF_OutFlags PF_OutFlag_SEND_DO_DIALOG = 0x80;
inline constexpr PF_OutFlags PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x100;
inline constexpr PF_OutFlags PF_OutFlag_I_EXPAND_BUFFER = 0x200;
inline constexpr PF_OutFlags PF_OutFlag_PIX_INDEPENDENT = 0x400;
inline constexpr PF_OutFlags PF_OutFlag_I_WRITE_INPUT_BUFFER = 0x800;
inline constexpr PF_OutFlags PF_OutFlag_I_SHRINK_BUFFER = 0x1000;
inline constexpr PF_OutFlags PF_OutFlag_WORKS_IN_PLACE = 0x2000;
inline constexpr PF_OutFlags PF_OutFlag_CUSTOM_UI = 0x8000;
inline constexpr PF_OutFlags PF_OutFlag_REFRESH_UI = 0x20000;
inline constexpr PF_OutFlags PF_OutFlag_NOP_RENDER = 0x40000;
inline constexpr PF_OutFlags PF_OutFlag_I_USE_SHUTTER_ANGLE = 0x80000;
inline constexpr PF_OutFlags PF_OutFlag_I_USE_AUDIO = 0x100000;
inline constexpr PF_OutFlags PF_OutFlag_I_AM_OBSOLETE = 0x200000;
inline constexpr PF_OutFlags PF_OutFlag_FORCE_RERENDER = 0x400000;
inline constexpr PF_OutFlags PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 0x800000;
inline constexpr PF_OutFlags PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES = 0x1000000;
inline constexpr PF_OutFlags PF_OutFlag_DEEP_COLOR_AWARE = 0x2000000;
inline constexpr PF_OutFlags PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x4000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_FLOAT_ONLY = 0x8000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_IIR = 0x10000000;
inline constexpr PF_OutFlags PF_OutFlag_I_SYNTHESIZE_AUDIO = 0x20000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_EFFECT_TOO = 0x40000000;
inline constexpr PF_OutFlags PF_OutFlag_AUDIO_EFFECT_ONLY = INT32_MIN;

// PF_OutData::out_flags2.
inline constexpr PF_OutFlags2 PF_OutFlag2_NONE = 0;
inline constexpr PF_OutFlags2 PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 0x8;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_SMART_RENDER = 0x400;
inline constexpr PF_OutFlags2 PF_OutFlag2_FLOAT_COLOR_AWARE = 0x1000;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_GPU_RENDER_F32 = 0x2000000;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 0x8000000;

// PF_LayerDef::world_flags, and the flags passed to new_world. These are two enumerations: 16-bit
// depth is bit 0 in an existing world and bit 1 in a request for one.
inline constexpr PF_WorldFlags PF_WorldFlag_DEEP = 0x1;
inline constexpr PF_WorldFlags PF_WorldFlag_WRITEABLE = 0x2;
inline constexpr PF_NewWorldFlags PF_NewWorldFlag_NONE = 0;
inline constexpr PF_NewWorldFlags PF_NewWorldFlag_CLEAR_PIXELS = 0x1;
inline constexpr PF_NewWorldFlags PF_NewWorldFlag_DEEP_PIXELS = 0x2;

// Small enumerations.
inline constexpr PF_Quality PF_Quality_DRAWING_AUDIO = -1;
inline constexpr PF_Quality PF_Quality_LO = 0;
inline constexpr PF_Quality PF_Quality_HI = 1;
inline constexpr PF_Field PF_Field_FRAME = 0;
inline constexpr PF_Field PF_Field_UPPER = 1;
inline constexpr PF_Field PF_Field_LOWER = 2;
inline constexpr PF_Precision PF_Precision_INTEGER = 0;
inline constexpr PF_Precision PF_Precision_TENTHS = 1;
inline constexpr PF_Precision PF_Precision_HUNDREDTHS = 2;
inline constexpr PF_Precision PF_Precision_THOUSANDTHS = 3;
inline constexpr PF_Precision PF_Precision_TEN_THOUSANDTHS = 4;
inline constexpr PF_FSliderFlags PF_FSliderFlag_NONE = 0;
inline constexpr PF_FSliderFlags PF_FSliderFlag_WANT_PHASE = 1;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_NONE = 0;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_PERCENT = 1;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_PIXEL = 2;
inline constexpr PF_ValueDisplayFlags PF_ValueDisplayFlag_REVERSE = 8;
inline constexpr A_long PF_LayerDefault_MYSELF = -1;
inline constexpr A_long PF_LayerDefault_NONE = 0;
inline constexpr A_u_long PF_Stage_DEVELOP = 0;
inline constexpr A_u_long PF_Stage_ALPHA = 1;
inline constexpr A_u_long PF_Stage_BETA = 2;
inline constexpr A_u_long PF_Stage_RELEASE = 3;
inline constexpr PF_InFlags PF_InFlag_NONE = 0;
inline constexpr PF_InFlags PF_InFlag_PROJECT_IS_RENDER_ONLY = 1;
inline constexpr A_long PF_MAX_CHAN8 = 255;
inline constexpr A_long PF_MAX_CHAN16 = 32768;  // 16-bit white is 0x8000, not 65535.

// Pixel formats: four characters, the first in the least significant byte.
constexpr PF_PixelFormat MakePixelFormat(char a, char b, char c, char d) {
  return static_cast<PF_PixelFormat>(
      static_cast<std::uint32_t>(static_cast<std::uint8_t>(a)) |
      static_cast<std::uint32_t>(static_cast<std::uint8_t>(b)) << 8 |
      static_cast<std::uint32_t>(static_cast<std::uint8_t>(c)) << 16 |
      static_cast<std::uint32_t>(static_cast<std::uint8_t>(d)) << 24);
}
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB32 = MakePixelFormat('a', 'r', 'g', 'b');
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB64 = MakePixelFormat('a', 'e', '1', '6');
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB128 = MakePixelFormat('a', 'e', '3', '2');
inline constexpr PF_PixelFormat PF_PixelFormat_INVALID = MakePixelFormat('b', 'a', 'd', 'f');

// The host's identity in PF_InData::appl_id: four characters, the first in the most significant
// byte.
inline constexpr A_AppID kHostAppId = 0x46585443;

// The version word of an effect: build in bits 0-8, stage 9-10, bug-fix 11-14, sub-version 15-18,
// version 19-21. Versions above 7 would need the word's high field too, which this function does
// not set.
constexpr A_u_long PackEffectVersion(A_u_long version, A_u_long subversion, A_u_long bugFix,
                                     A_u_long stage, A_u_long build) {
  return (version & 7U) << 19U | (subversion & 15U) << 15U | (bugFix & 15U) << 11U |
         (stage & 3U) << 9U | (build & 511U);
}

#endif  // VITRELL_HOST_HOST_TYPES_H_
