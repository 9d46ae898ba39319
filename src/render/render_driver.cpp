// The render command: from the host's parameters to the finished output world.
#include "render/render_driver.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "base/global_mutex.h"
#include "base/parameter_index.h"
#include "blur/blur_dispatcher.h"
#include "colour/blend_pass.h"
#include "colour/chromatic_aberration.h"
#include "colour/color_effect.h"
#include "colour/lightness.h"
#include "host/result.h"
#include "host/suite_handler.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "lens/lens_stage.h"
#include "pass/stage.h"
#include "render/plan.h"
#include "render/settings.h"

namespace vitrell {
namespace {

GlobalMutex globalMutex;

// Frees the lens mask at the end of the render. g_LensMask is then null, or, if the render failed
// before its first stage, keeps its dangling address. From within a host call the host may render
// another frame on the same thread: the inner frame's scope saves the outer frame's mask and
// restores it.
class LensMaskScope {
 public:
  LensMaskScope() : outerMask_(g_LensMask), outerSize_(g_LensMaskSize), outerRows_(g_LensMaskRows) {
    g_LensMaskSize = 0;
  }
  ~LensMaskScope() {
    FreeLensMask(!stagesStarted_);
    if (outerSize_ != 0) {
      g_LensMask = outerMask_;
      g_LensMaskSize = outerSize_;
      g_LensMaskRows = outerRows_;
    }
  }
  LensMaskScope(const LensMaskScope&) = delete;
  LensMaskScope& operator=(const LensMaskScope&) = delete;
  void StagesStart() { stagesStarted_ = true; }

 private:
  double* outerMask_;
  std::size_t outerSize_;
  MaskRows outerRows_;
  bool stagesStarted_ = false;
};

// Copies the image of the "Custom Layer" parameter, if there is one. A failed checkout counts as no
// layer. An abort request does not end the render; it only leaves the parameter checked out.
//
// Kept: the layer's world flags are passed as creation flags, which are another enumeration. The
// copy may therefore differ from the layer in depth; its own flags say how it is read.
PF_Err CopyCustomLayer(PF_InData* inData, OwnedWorld* copy) {
  PF_ParamDef layer = {};
  if (inData->inter.checkout_param(inData->effect_ref, PARAM_CUSTOM_LAYER, inData->current_time,
                                   inData->time_step, inData->time_scale, &layer) != 0) {
    return PF_Err_NONE;
  }
  const PF_Err abortRequest = inData->inter.abort(inData->effect_ref);
  PF_Err err = PF_Err_NONE;
  if (layer.u.ld.data != nullptr) {
    err = copy->Create(layer.u.ld.width, layer.u.ld.height, layer.u.ld.world_flags);
    if (err == 0) {
      err = CopyWorld(inData, &layer.u.ld, copy->get());
    }
  }
  if (abortRequest == 0) {
    const PF_Err checkin = inData->inter.checkin_param(inData->effect_ref, &layer);
    err = err != 0 ? err : checkin;
  }
  return err;
}

bool HasMaths(const PF_ANSICallbacks& maths, const RenderPlan& plan) {
  return (maths.pow != nullptr || !plan.needsPow) && (maths.tan != nullptr || !plan.needsTan) &&
         (maths.atan != nullptr || !plan.needsAtan);
}

PF_Err UniformBlurs(const StageCall& call) { return RenderBlurEffect(call, BlurPass::kUniform); }
PF_Err MappedBlurs(const StageCall& call) { return RenderBlurEffect(call, BlurPass::kLensMapped); }

// One stage of the chain. A stage that is off either copies, so that the result always is in the
// world that the next stage reads, or is skipped where that world holds the image anyway.
struct ChainRow {
  enum class WhenOff { kCopies, kIsPassedOver };
  enum class Worlds { kAToB, kBToA };

  Stage stage;
  bool RenderPlan::*isOn;  // Null: always on.
  WhenOff whenOff;
  Worlds worlds;
};

// The image is in A before the first row and after the last. RenderEffect before the lens stage is
// skipped only when chromatic aberration is off and has copied B to A, so that B still holds the
// image.
constexpr auto kCopies = ChainRow::WhenOff::kCopies;
constexpr auto kIsPassedOver = ChainRow::WhenOff::kIsPassedOver;
constexpr auto kAToB = ChainRow::Worlds::kAToB;
constexpr auto kBToA = ChainRow::Worlds::kBToA;
constexpr ChainRow kChain[] = {
    {UniformBlurs, nullptr, kCopies, kAToB},
    {RunLightness, &RenderPlan::isLightnessOn, kCopies, kBToA},
    {RunColorEffect, &RenderPlan::isColorOn, kCopies, kAToB},
    {RunChromaticAberration, &RenderPlan::isChromaticOn, kCopies, kBToA},
    {RenderEffect, &RenderPlan::isBlendBeforeLens, kIsPassedOver, kAToB},
    {RunLensStage, nullptr, kCopies, kBToA},
    {MappedBlurs, &RenderPlan::isMappedPassOn, kIsPassedOver, kAToB},
    {RenderEffect, &RenderPlan::isMappedPassOn, kIsPassedOver, kBToA},
};

// a holds the input on entry and the result on return. The worlds in call.io are ignored.
PF_Err RunChain(const StageCall& call, PF_LayerDef* a, PF_LayerDef* b) {
  for (const ChainRow& row : kChain) {
    const StageCall own = row.worlds == kAToB ? call.Between(a, b) : call.Between(b, a);
    if (row.isOn == nullptr || call.plan.*row.isOn) {
      RETURN_IF_ERROR(row.stage(own));
    } else if (row.whenOff == kCopies) {
      RETURN_IF_ERROR(own.Copy());
    }
  }
  return PF_Err_NONE;
}

}  // namespace

PF_Err RenderFrame(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                   PF_LayerDef* output) {
  const std::lock_guard<GlobalMutex> lock(globalMutex);
  AEGP_SuiteHandler suites(inData->pica_basicP);
  OwnedWorld customLayer(inData);
  LensMaskScope mask;
  // Destroyed in reverse order: A, B, mask, custom layer, suites, lock.
  OwnedWorld b(inData);
  OwnedWorld a(inData);

  LX_Info info = {};
  info.customLayer = customLayer.get();
  RETURN_IF_ERROR(CopyCustomLayer(inData, &customLayer));
  RETURN_IF_ERROR(SetInfoFromParam(&info, params));
  const RenderPlan plan = MakePlan(info);
  if (!HasMaths(inData->utils->ansi, plan)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }

  PF_LayerDef* const input = &params[PARAM_INPUT]->u.ld;
  RETURN_IF_ERROR(BuildLensMask(
      {.inData = inData,
       .output = output,
       .inputExtent = input->extent_hint,
       .inputPixels = std::int64_t{std::max(input->width, 0)} * std::max(input->height, 0)},
      info, plan.mask));
  RETURN_IF_ERROR(a.Create(input->width, input->height, PF_NewWorldFlag_NONE));
  RETURN_IF_ERROR(b.Create(input->width, input->height, PF_NewWorldFlag_NONE));
  input->extent_hint.left = 0;
  input->extent_hint.top = 0;
  RETURN_IF_ERROR(CopyWorld(inData, input, a.get()));

  mask.StagesStart();
  const StageCall call = {.suites = suites,
                          .io = {inData, outData, a.get(), b.get()},
                          .info = info,
                          .plan = plan,
                          .inputLayer = input};
  RETURN_IF_ERROR(RunChain(call, a.get(), b.get()));
  return CopyWorld(inData, a.get(), output);
}

PF_Err RenderEffect(const StageCall& call) {
  AEGP_SuiteHandler suites(call.io.in_data->pica_basicP);
  PF_PixelFormat format = PF_PixelFormat_ARGB32;
  // Kept: a failed query leaves the default format, and a failed blend goes unreported.
  static_cast<void>(suites.WorldSuite2()->PF_GetPixelFormat(call.inputLayer, &format));
  suites.ReleaseAllSuites();
  const bool deep = format == PF_PixelFormat_ARGB64;
  if (!HoldsPixels(*call.inputLayer, deep)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  const BlendRefcon blend = {.inputLayer = call.inputLayer,
                             .intensity = call.info.intensity,
                             .mode = call.info.mode,
                             .io = &call.io,
                             .deep = static_cast<std::uint8_t>(deep ? 1 : 0)};
  BlendPass pass(blend);
  RETURN_IF_ERROR(pass.Prepare());
  static_cast<void>(pass.Run(suites));
  return PF_Err_NONE;
}

}  // namespace vitrell
