// The arguments of a stage of the chain.
#ifndef VITRELL_PASS_STAGE_H_
#define VITRELL_PASS_STAGE_H_

#include "base/render_records.h"
#include "host/host_api.h"
#include "host/pixel_pass.h"
#include "host/suite_handler.h"
#include "host/world.h"

namespace vitrell {

// One call of a stage. The records it refers to outlive the call and do not change during it.
struct StageCall {
  AEGP_SuiteHandler& suites;  // Suites that a stage acquires here stay acquired.
  IO_Params io;
  const LX_Info& info;
  const RenderPlan& plan;
  PF_LayerDef* inputLayer;  // The unprocessed layer.

  // The same call with other worlds.
  StageCall Between(PF_LayerDef* src, PF_LayerDef* dst) const {
    return {suites, {io.in_data, io.out_data, src, dst}, info, plan, inputLayer};
  }

  // The same call with another suite handler.
  StageCall With(AEGP_SuiteHandler& own) const { return {own, io, info, plan, inputLayer}; }

  [[nodiscard]] PF_Err Copy() const { return CopyWorld(io.in_data, io.src, io.dst); }

  // Iterates the callback of the destination's depth from io.src into io.dst, with progress up to
  // the height of the destination's extent hint, and returns the host's result.
  [[nodiscard]] PF_Err Iterate(PixelCallbacks callbacks, void* refcon) const {
    return RunPixelPass(suites, io.in_data, io.src, io.dst, ExtentLines(*io.dst), callbacks,
                        refcon);
  }
};

// The signature of every stage: reads call.io.src, writes call.io.dst and returns the host's code;
// a missing suite throws.
using Stage = PF_Err (*)(const StageCall& call);

}  // namespace vitrell

#endif  // VITRELL_PASS_STAGE_H_
