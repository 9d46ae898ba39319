// Calls one stage of the chain as the driver does.
#ifndef VITRELL_TESTS_PASS_CALL_STAGE_H_
#define VITRELL_TESTS_PASS_CALL_STAGE_H_

#include "host/suite_handler.h"
#include "pass/stage.h"
#include "render/plan.h"

namespace vitrell {

// The plan is made from the settings; the suites are the call's own.
inline PF_Err CallStage(Stage stage, PF_InData* inData, PF_LayerDef* src, PF_LayerDef* dst,
                        const LX_Info& info, PF_LayerDef* inputLayer = nullptr) {
  AEGP_SuiteHandler suites(inData->pica_basicP);
  const RenderPlan plan = MakePlan(info);
  return stage({suites, {inData, nullptr, src, dst}, info, plan, inputLayer});
}

}  // namespace vitrell

#endif  // VITRELL_TESTS_PASS_CALL_STAGE_H_
