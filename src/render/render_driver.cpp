// The render command: from the host's parameters to the finished output picture.
#include "render/render_driver.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "base/parameter_index.h"
#include "blur/blur_dispatcher.h"
#include "colour/blend_pass.h"
#include "colour/chromatic_aberration.h"
#include "colour/color_effect.h"
#include "colour/lightness.h"
#include "host/pixel_pass.h"
#include "host/result.h"
#include "host/suite_handler.h"
#include "host/world.h"
#include "lens/lens_mask.h"
#include "lens/lens_stage.h"
#include "render/settings.h"

namespace vitrell {
namespace {

std::recursive_mutex globalMutex;

// Frees the lens mask at the end of the render. Until the first stage starts g_LensMask keeps its
// old address, later it is set null. A host may render another frame on this thread from within a
// host call: the outer frame's mask is put aside meanwhile.
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

// Copies the image of the "Custom Layer" parameter, if it has one. A failing checkout means that
// there is none; an abort request only leaves the parameter checked out, it does not end the
// render.
PF_Err CopyCustomLayer(PF_InData* inData, OwnedWorld* copy) {
  PF_ParamDef layer = {};
  if (inData->inter.checkout_param(inData->effect_ref, PARAM_CUSTOM_LAYER, inData->current_time,
                                   inData->time_step, inData->time_scale, &layer) != 0) {
    return PF_Err_NONE;
  }
  const PF_Err abortRequest = inData->inter.abort(inData->effect_ref);
  PF_Err err = PF_Err_NONE;
  if (layer.u.ld.data != nullptr) {
    err = copy->CreateLike(layer.u.ld);
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

// The lens-mapped fast blur runs as blur pass 1: the feather is wide against the amount.
bool IsFastBlurMapped(const LX_Info& info) {
  return info.fastBlurVisible == 1 && info.fastBlurUseLensAsBlurMap == 1 &&
         info.fastBlurAmount > 0 && info.fastBlurAmount / 100.0F < 2.0F * info.feather;
}

bool IsRealisticMapped(const LX_Info& info) {
  return info.realisticVisible == 1 && info.realisticUseLensAsBlurMap == 1 &&
         info.realisticAmount > 0;
}

// The host's maths that not every render needs.
bool HasMaths(const PF_ANSICallbacks& maths, const LX_Info& info) {
  const bool realistic = info.realisticVisible == 1 && info.realisticAmount > 0;
  const bool needsPow =
      info.lightnessVisible == 1 || (realistic && info.realisticUseLensAsBlurMap != 0);
  const bool needsTan = info.opticalVisible == 1 && info.opticalAmount > 0;
  const bool needsAtan = realistic || info.lensType == kLensTriangle;
  return (maths.pow != nullptr || !needsPow) && (maths.tan != nullptr || !needsTan) &&
         (maths.atan != nullptr || !needsAtan);
}

// One stage reads src and writes dst, or copies when it is off.
struct StageRunner {
  AEGP_SuiteHandler& suites;
  IO_Params& io;
  const LX_Info& info;

  using Stage = PF_Err (*)(AEGP_SuiteHandler&, IO_Params*, const LX_Info&);

  [[nodiscard]] PF_Err Run(bool on, Stage stage, PF_LayerDef* src, PF_LayerDef* dst) const {
    io.src = src;
    io.dst = dst;
    return on ? stage(suites, &io, info) : CopyWorld(io.in_data, src, dst);
  }
};

// Every stage in order. a holds the input picture on entry and the finished picture at the end.
PF_Err RunStages(AEGP_SuiteHandler& suites, IO_Params& io, LX_Info& info, PF_LayerDef* input,
                 PF_LayerDef* a, PF_LayerDef* b) {
  const auto point = [&io](PF_LayerDef* src, PF_LayerDef* dst) {
    io.src = src;
    io.dst = dst;
  };
  const StageRunner stages = {suites, io, info};
  const bool colorOn = info.colorVisible == 1 && info.colorOpacity > 0;
  const bool chromaticOn = IsChromaticAberrationOn(info);
  const bool mappedPass = IsFastBlurMapped(info) || IsRealisticMapped(info);

  point(a, b);
  RETURN_IF_ERROR(RenderBlurEffect(&io, &info, 0));
  RETURN_IF_ERROR(stages.Run(info.lightnessVisible == 1, RunLightness, b, a));
  RETURN_IF_ERROR(stages.Run(colorOn, RunColorEffect, a, b));
  RETURN_IF_ERROR(stages.Run(chromaticOn, RunChromaticAberration, b, a));
  if (!mappedPass || chromaticOn) {
    point(a, b);
    RETURN_IF_ERROR(RenderEffect(&io, &info, input));
  }  // Otherwise the processed picture is in both worlds.
  point(b, a);
  RETURN_IF_ERROR(RunLensStage(suites, &io, info, input));
  if (mappedPass) {
    point(a, b);
    RETURN_IF_ERROR(RenderBlurEffect(&io, &info, 1));
    point(b, a);
    RETURN_IF_ERROR(RenderEffect(&io, &info, input));
  }
  return PF_Err_NONE;
}

}  // namespace

PF_Err RenderFrame(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[],
                   PF_LayerDef* output) {
  const std::lock_guard<std::recursive_mutex> lock(globalMutex);
  AEGP_SuiteHandler suites(inData->pica_basicP);
  OwnedWorld customLayer(inData);
  LensMaskScope mask;
  // Destroyed in reverse: A, B, mask, custom layer, suites, lock.
  OwnedWorld b(inData);
  OwnedWorld a(inData);

  LX_Info info = {};
  info.customLayer = customLayer.get();
  RETURN_IF_ERROR(CopyCustomLayer(inData, &customLayer));
  RETURN_IF_ERROR(SetInfoFromParam(inData, &info, params));
  if (!HasMaths(inData->utils->ansi, info)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }

  PF_LayerDef* const input = &params[PARAM_INPUT]->u.ld;
  RETURN_IF_ERROR(BuildLensMask(
      {.inData = inData,
       .output = output,
       .inputExtent = input->extent_hint,
       .inputPixels = std::int64_t{std::max(input->width, 0)} * std::max(input->height, 0)},
      info));
  RETURN_IF_ERROR(a.Create(input->width, input->height, PF_NewWorldFlag_NONE));
  RETURN_IF_ERROR(b.Create(input->width, input->height, PF_NewWorldFlag_NONE));
  input->extent_hint.left = 0;
  input->extent_hint.top = 0;
  RETURN_IF_ERROR(CopyWorld(inData, input, a.get()));

  mask.StagesStart();
  IO_Params io = {.in_data = inData, .out_data = outData, .src = a.get(), .dst = b.get()};
  RETURN_IF_ERROR(RunStages(suites, io, info, input, a.get(), b.get()));
  return CopyWorld(inData, a.get(), output);
}

PF_Err RenderEffect(IO_Params* io, const LX_Info* info, PF_LayerDef* inputLayer) {
  AEGP_SuiteHandler suites(io->in_data->pica_basicP);
  PF_PixelFormat format = PF_PixelFormat_ARGB32;
  // Kept: a failing query leaves the preset format, and a failing blend is not told to anybody.
  static_cast<void>(suites.WorldSuite2()->PF_GetPixelFormat(inputLayer, &format));
  suites.ReleaseAllSuites();
  const bool deep = format == PF_PixelFormat_ARGB64;
  if (!HoldsPixels(*inputLayer, deep)) {
    return PF_Err_BAD_CALLBACK_PARAM;
  }
  const BlendRefcon blend = {.inputLayer = inputLayer,
                             .intensity = info->intensity,
                             .mode = info->mode,
                             .io = io,
                             .deep = static_cast<std::uint8_t>(deep ? 1 : 0),
                             .mask = LensMaskView(*io->dst)};
  BlendPass pass(blend);
  RETURN_IF_ERROR(pass.Prepare());
  static_cast<void>(pass.Run(suites));
  return PF_Err_NONE;
}

}  // namespace vitrell
