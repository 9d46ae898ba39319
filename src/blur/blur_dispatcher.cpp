// Chains the blur engines that are on over the two working worlds.
#include "blur/blur_dispatcher.h"

#include "base/numeric.h"
#include "blur/directional/directional_blur.h"
#include "blur/fast/fast_blur.h"
#include "blur/optical/optical_distortion.h"
#include "blur/realistic/realistic_blur.h"
#include "blur/trail/trail.h"
#include "host/result.h"
#include "host/suite_handler.h"
#include "host/world.h"

namespace vitrell {
namespace {

// The dispatcher's view of one pass: the context and the two worlds as they were handed in.
struct BlurPass {
  IO_Params* io;
  LX_Info* info;
  PF_LayerDef* w1;  // The picture to blur.
  PF_LayerDef* w2;  // Scratch, and the place of the result.

  void Point(PF_LayerDef* src, PF_LayerDef* dst) const {
    io->src = src;
    io->dst = dst;
  }
  [[nodiscard]] PF_Err Copy(PF_LayerDef* src, PF_LayerDef* dst) const {
    return CopyWorld(io->in_data, src, dst);
  }
};

PF_Err LensMappedPass(const BlurPass& pass) {
  const LX_Info& info = *pass.info;
  if (info.realisticVisible == 1 && info.realisticUseLensAsBlurMap == 1 &&
      info.realisticAmount > 0) {
    RETURN_IF_ERROR(RenderReleasticBlurEffect(pass.io, pass.info));
  } else {
    RETURN_IF_ERROR(pass.Copy(pass.w1, pass.w2));
  }
  if (info.fastBlurVisible == 1 && info.fastBlurUseLensAsBlurMap == 1 && info.fastBlurAmount > 0) {
    pass.Point(pass.w2, pass.w1);
    RETURN_IF_ERROR(RenderFastBlurEffect(pass.io, &info));
  } else {
    RETURN_IF_ERROR(pass.Copy(pass.w2, pass.w1));
  }
  // Kept: without the fast blur this copies W2 onto itself.
  return pass.Copy(pass.io->dst, pass.w2);
}

// W2 -> W1, and the context set for the stages from W1 into W2. pending is the error of the copy
// that stood for the realistic blur.
PF_Err UniformFastBlur(const BlurPass& pass, PF_Err pending) {
  const LX_Info& info = *pass.info;
  // Kept: the lens-map box is not asked here; with it on the blur takes part in both passes.
  if (info.fastBlurVisible == 1 && info.fastBlurAmount > 0) {
    pass.Point(pass.w2, pass.w1);
    RETURN_IF_ERROR(pending);
    RETURN_IF_ERROR(RenderFastBlurEffect(pass.io, &info));
    pass.Point(pass.w1, pass.w2);
    return PF_Err_NONE;
  }
  // Kept: this copy is made even when an error is pending, and the earlier error wins.
  const PF_Err err = pass.Copy(pass.w2, pass.w1);
  pass.Point(pass.w1, pass.w2);
  return pending != 0 ? pending : err;
}

// W1 -> W2.
PF_Err Distortion(const BlurPass& pass, AEGP_SuiteHandler& suites) {
  const LX_Info& info = *pass.info;
  PF_Err err = PF_Err_NONE;
  if (info.opticalVisible == 1 && info.opticalAmount > 0) {
    err = RunOpticalDistortion(suites, pass.io, info);
  } else {
    // Kept: this one copy's failure is ignored.
    static_cast<void>(pass.Copy(pass.w1, pass.w2));
  }
  suites.ReleaseAllSuites();
  return err;
}

template <typename Pixel>
PF_Err Smooth(IO_Params* io, std::int32_t radiusPx) {
  BoxBlurScratch<Pixel> scratch;
  return FastBlurA<Pixel>(io, radiusPx, radiusPx, 0, 0, &scratch);
}

// W2 -> W1, smoothed, when the trail is on; the result is then in both worlds. Either way both hold
// the same picture at the end, and the context is set from W1 into W2.
PF_Err TrailStage(const BlurPass& pass, AEGP_SuiteHandler& suites) {
  const LX_Info& info = *pass.info;
  pass.Point(pass.w2, pass.w1);
  if (!(info.trailAmount > 0 && info.trailVisible == 1)) {
    const PF_Err err = pass.Copy(pass.w2, pass.w1);
    pass.Point(pass.w1, pass.w2);
    return err;
  }
  RETURN_IF_ERROR(RunTrail(suites, pass.io, info));
  pass.Point(pass.w1, pass.w2);
  const std::int32_t radiusPx = TruncateToInt32(static_cast<double>(info.trailAmount) * 2.5 + 0.5);
  const PF_Err err = IsDeep(*pass.w2) ? Smooth<PF_Pixel16>(pass.io, radiusPx)
                                      : Smooth<PF_Pixel>(pass.io, radiusPx);
  suites.ReleaseAllSuites();
  RETURN_IF_ERROR(err);
  return pass.Copy(pass.w1, pass.w2);
}

// W1 -> W2.
PF_Err Directional(const BlurPass& pass) {
  LineTaps taps;
  RETURN_IF_ERROR(taps.Build(pass.io->in_data, *pass.info));
  if (pass.info->directionalVisible == 1 && taps.count() > 1) {
    AEGP_SuiteHandler suites(pass.io->in_data->pica_basicP);
    return RunDirectionalBlur(suites, pass.io, taps);
  }
  return pass.Copy(pass.w1, pass.w2);
}

PF_Err UniformPass(const BlurPass& pass) {
  const LX_Info& info = *pass.info;
  PF_Err pending = PF_Err_NONE;
  if (info.realisticVisible == 1 && info.realisticUseLensAsBlurMap == 0 &&
      info.realisticAmount > 0) {
    RETURN_IF_ERROR(RenderReleasticBlurEffect(pass.io, pass.info));
  } else {
    pending = pass.Copy(pass.w1, pass.w2);
  }
  RETURN_IF_ERROR(UniformFastBlur(pass, pending));
  AEGP_SuiteHandler suites(pass.io->in_data->pica_basicP);
  RETURN_IF_ERROR(Distortion(pass, suites));
  RETURN_IF_ERROR(TrailStage(pass, suites));
  RETURN_IF_ERROR(Directional(pass));
  // Kept: the result is copied onto itself.
  return pass.Copy(pass.w2, pass.w2);
}

}  // namespace

PF_Err RenderBlurEffect(IO_Params* io, LX_Info* info, int pass) {
  const BlurPass worlds = {io, info, io->src, io->dst};
  return pass == 0 ? UniformPass(worlds) : LensMappedPass(worlds);
}

}  // namespace vitrell
