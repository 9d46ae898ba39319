// Turns the settings of a render into its plan.
#ifndef VITRELL_RENDER_PLAN_H_
#define VITRELL_RENDER_PLAN_H_

#include "base/render_records.h"

namespace vitrell {

// Makes every decision that depends on the settings alone. Called once per render; the stages read
// the plan and do not derive from the settings whether or how they run.
RenderPlan MakePlan(const LX_Info& info);

}  // namespace vitrell

#endif  // VITRELL_RENDER_PLAN_H_
