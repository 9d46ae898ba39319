// Runs those blurs that are on, one after another, over the two working worlds.
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

// The two directions of a pass: W1 is the world that holds the input, W2 the one that receives the
// result.
struct Worlds {
  StageCall forward;   // W1 -> W2.
  StageCall backward;  // W2 -> W1.
};

PF_Err LensMappedPass(const Worlds& worlds) {
  const RenderPlan& plan = worlds.forward.plan;
  RETURN_IF_ERROR(plan.realisticBlur.isInMappedPass ? RenderReleasticBlurEffect(worlds.forward)
                                                    : worlds.forward.Copy());
  if (plan.fastBlur.isInMappedPass) {
    RETURN_IF_ERROR(RenderFastBlurEffect(worlds.backward));
    return worlds.forward.Copy();
  }
  RETURN_IF_ERROR(worlds.backward.Copy());
  // Kept: the result is copied onto itself.
  return worlds.forward.Between(worlds.forward.io.dst, worlds.forward.io.dst).Copy();
}

// W2 -> W1. pending is the error of the copy that replaced the realistic blur.
PF_Err UniformFastBlur(const Worlds& worlds, PF_Err pending) {
  if (worlds.backward.plan.fastBlur.isInUniformPass) {
    RETURN_IF_ERROR(pending);
    return RenderFastBlurEffect(worlds.backward);
  }
  // Kept: the copy is made even if an error is pending; the earlier error is returned.
  const PF_Err err = worlds.backward.Copy();
  return pending != 0 ? pending : err;
}

// W1 -> W2.
PF_Err Distortion(const Worlds& worlds, AEGP_SuiteHandler& suites) {
  PF_Err err = PF_Err_NONE;
  if (worlds.forward.plan.isOpticalOn) {
    err = RunOpticalDistortion(worlds.forward.With(suites));
  } else {
    // Kept: the failure of this copy alone is ignored.
    static_cast<void>(worlds.forward.Copy());
  }
  suites.ReleaseAllSuites();
  return err;
}

template <typename Pixel>
PF_Err Smooth(const IO_Params& io, std::int32_t radiusPx) {
  BoxBlurScratch<Pixel> scratch;
  return FastBlurA<Pixel>(io, radiusPx, radiusPx, 0, &scratch);
}

// W2 -> W1, then a small box blur and a copy to W2; or, if the trail is off, only a copy to W1.
// Either way both worlds end up equal.
PF_Err TrailAndSmoothing(const Worlds& worlds, AEGP_SuiteHandler& suites) {
  if (!worlds.backward.plan.isTrailOn) {
    return worlds.backward.Copy();
  }
  RETURN_IF_ERROR(RunTrail(worlds.backward.With(suites)));
  const IO_Params& io = worlds.forward.io;
  const double amount = worlds.forward.info.trailAmount;
  const std::int32_t radiusPx = TruncateToInt32(amount * 2.5 + 0.5);
  const PF_Err err =
      IsDeep(*io.dst) ? Smooth<PF_Pixel16>(io, radiusPx) : Smooth<PF_Pixel>(io, radiusPx);
  suites.ReleaseAllSuites();
  RETURN_IF_ERROR(err);
  return worlds.forward.Copy();
}

PF_Err UniformPass(const Worlds& worlds) {
  PF_Err pending = PF_Err_NONE;
  if (worlds.forward.plan.realisticBlur.isInUniformPass) {
    RETURN_IF_ERROR(RenderReleasticBlurEffect(worlds.forward));
  } else {
    pending = worlds.forward.Copy();
  }
  RETURN_IF_ERROR(UniformFastBlur(worlds, pending));
  AEGP_SuiteHandler suites(worlds.forward.io.in_data->pica_basicP);
  RETURN_IF_ERROR(Distortion(worlds, suites));
  RETURN_IF_ERROR(TrailAndSmoothing(worlds, suites));
  RETURN_IF_ERROR(RunDirectionalBlur(worlds.forward));
  // Kept: the result is copied onto itself.
  return worlds.forward.Between(worlds.forward.io.dst, worlds.forward.io.dst).Copy();
}

}  // namespace

PF_Err RenderBlurEffect(const StageCall& call, BlurPass pass) {
  const Worlds worlds = {call, call.Between(call.io.dst, call.io.src)};
  return pass == BlurPass::kUniform ? UniformPass(worlds) : LensMappedPass(worlds);
}

}  // namespace vitrell
