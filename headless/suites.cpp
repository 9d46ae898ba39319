// The basic suite and the suites that effects acquire through it.
#include <cstring>

#include "headless/current_host.h"
#include "headless/host_maths.h"
#include "headless/host_state.h"
#include "headless/host_tables.h"

namespace vitrell::headless {
namespace {

constexpr auto kOutOfMemory = static_cast<SPErr>(0xFFFFFF6C);

PF_Err UpdateParamUI(PF_ProgPtr effectRef, PF_ParamIndex index, const PF_ParamDef* def) {
  HostState* host = HostOf(effectRef, "PF_UpdateParamUI");
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kUpdateParamUI);
  const std::string text = "update_param_ui " + std::to_string(index);
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  if (def == nullptr || index < 1 || index >= host->parameters.Count()) {
    host->Complain("called PF_UpdateParamUI without a record or for parameter " +
                   std::to_string(index) + ", which has no control");
    return call.Answer(text, PF_Err_INVALID_INDEX);
  }
  if (host->command != PF_Cmd_USER_CHANGED_PARAM && host->command != PF_Cmd_UPDATE_PARAMS_UI) {
    host->Complain("called PF_UpdateParamUI outside the panel commands");
    return call.Answer(text, PF_Err_INVALID_CALLBACK);
  }
  host->parameters.UpdateUI(index, *def);
  return call.Answer(text, PF_Err_NONE);
}

PF_Err NewWorldOfFormat(PF_ProgPtr effectRef, A_long width, A_long height, PF_Boolean clear,
                        PF_PixelFormat format, PF_LayerDef* world) {
  PF_NewWorldFlags flags = clear != 0 ? PF_NewWorldFlag_CLEAR_PIXELS : PF_NewWorldFlag_NONE;
  if (format == PF_PixelFormat_ARGB64) flags |= PF_NewWorldFlag_DEEP_PIXELS;
  return NewWorldCallback(effectRef, width, height, flags, world);
}

PF_Err GetPixelFormat(const PF_LayerDef* world, PF_PixelFormat* format) {
  HostState* host = CurrentHost();
  if (host == nullptr || format == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kGetPixelFormat);
  const std::string text = "get_pixel_format " + host->worlds.NameOf(world);
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  const std::optional<PixelView> view = host->ViewOf(world, "PF_GetPixelFormat");
  if (!view) return call.Answer(text, PF_Err_BAD_CALLBACK_PARAM);
  *format = view->deep ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32;
  return call.Answer(text, PF_Err_NONE);
}

PF_ParamUtilsSuite3 MakeParamUtilsSuite() {
  PF_ParamUtilsSuite3 suite{};
  suite.PF_UpdateParamUI = UpdateParamUI;
  for (UnusedCallback* slot :
       {&suite.PF_GetCurrentState, &suite.PF_AreStatesIdentical, &suite.PF_IsIdenticalCheckout,
        &suite.PF_FindKeyframeTime, &suite.PF_GetKeyframeCount, &suite.PF_CheckoutKeyframe,
        &suite.PF_CheckinKeyframe, &suite.PF_KeyIndexToTime}) {
    *slot = UnservedCallback;
  }
  return suite;
}

struct OfferedSuite {
  const char* name;
  std::int32_t version;
  const void* table;
};

const void* FindSuite(const char* name, std::int32_t version) {
  static const PF_ParamUtilsSuite3 paramUtils = MakeParamUtilsSuite();
  static const PF_Iterate8Suite1 iterate8 = MakeIterate8Suite();
  static const PF_iterate16Suite1 iterate16 = MakeIterate16Suite();
  static const PF_WorldSuite2 worlds = {NewWorldOfFormat, DisposeWorldCallback, GetPixelFormat};
  static const OfferedSuite offered[] = {
      {kPFAnsiSuite, kPFAnsiSuiteVersion1, &HostMaths()},
      {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, &paramUtils},
      {kPFIterate8Suite, kPFIterate8SuiteVersion1, &iterate8},
      {kPFIterate8Suite, 2, &iterate8},
      {kPFIterate16Suite, kPFIterate16SuiteVersion1, &iterate16},
      {kPFIterate16Suite, 2, &iterate16},
      {kPFWorldSuite, kPFWorldSuiteVersion2, &worlds},
  };
  for (const OfferedSuite& suite : offered) {
    if (std::strcmp(suite.name, name) == 0 && suite.version == version) return suite.table;
  }
  return nullptr;
}

SPErr AcquireSuite(const char* name, std::int32_t version, const void** suite) {
  HostState* host = CurrentHost();
  if (host == nullptr || name == nullptr || suite == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kAcquireSuite);
  const std::string text = std::string("acquire_suite ") + name + " " + std::to_string(version);
  *suite = nullptr;
  if (call.Fault() != PF_Err_NONE) return call.Answer(text, call.Fault());
  const void* table = FindSuite(name, version);
  if (table == nullptr || host->recorder.GetFaults().IsRefused(name, version)) {
    return call.Answer(text, kSPSuiteNotFoundError);
  }
  host->suites.Acquire(name, version);
  *suite = table;
  return call.Answer(text, PF_Err_NONE);
}

SPErr ReleaseSuite(const char* name, std::int32_t version) {
  HostState* host = CurrentHost();
  if (host == nullptr || name == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  RecordedCall call(host->recorder, CallKind::kReleaseSuite);
  const std::string text = std::string("release_suite ") + name + " " + std::to_string(version);
  if (!host->suites.Release(name, version)) {
    host->Complain(std::string("released the suite \"") + name + "\" version " +
                   std::to_string(version) + ", which it does not hold");
    return call.Answer(text, kSPSuiteNotFoundError);
  }
  return call.Answer(text, call.Fault());
}

SPBoolean IsEqual(const char* a, const char* b) { return std::strcmp(a, b) == 0 ? 1 : 0; }

SPErr AllocateBlock(std::size_t size, void** block) {
  HostState* host = CurrentHost();
  if (host == nullptr || block == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  *block = host->blocks.Allocate(size);
  return *block != nullptr ? PF_Err_NONE : kOutOfMemory;
}

SPErr FreeBlock(void* block) {
  HostState* host = CurrentHost();
  if (host == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  if (host->blocks.Free(block)) return PF_Err_NONE;
  host->Complain("freed a memory block that is not the host's or was freed before");
  return PF_Err_BAD_CALLBACK_PARAM;
}

SPErr ReallocateBlock(void* block, std::size_t size, void** moved) {
  HostState* host = CurrentHost();
  if (host == nullptr || moved == nullptr) return PF_Err_BAD_CALLBACK_PARAM;
  *moved = host->blocks.Reallocate(block, size);
  return *moved != nullptr ? PF_Err_NONE : kOutOfMemory;
}

SPErr Undefined() {
  UnservedCallback();
  return PF_Err_INVALID_CALLBACK;
}

}  // namespace

SPBasicSuite* BasicSuite() {
  static SPBasicSuite suite = {AcquireSuite, ReleaseSuite,    IsEqual,  AllocateBlock,
                               FreeBlock,    ReallocateBlock, Undefined};
  return &suite;
}

}  // namespace vitrell::headless
