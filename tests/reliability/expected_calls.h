// The result and the calls that a render must produce when host calls fail, derived from the rules.
#ifndef VITRELL_RELIABILITY_EXPECTED_CALLS_H_
#define VITRELL_RELIABILITY_EXPECTED_CALLS_H_

#include <string>
#include <vector>

#include "literal/host_calls.h"
#include "literal/render/render_driver.h"

namespace vitrell::reliability {

// The nth host call of a render answers this error. n from 1.
struct PlannedFailure {
  int call;
  int error;
};

struct ExpectedOutcome {
  int error = 0;
  std::vector<std::string> calls;  // As the headless host writes them.
};

// Shares no code with the effect. The rules: the first failing call ends its stage and the render,
// clean-up runs in any case. Ignored are a failing checkout (there is then no custom image), an
// abort request (it only skips the check-in), the first two rounds of the fast blur, in every round
// the copy aside and the horizontal pass, the copies in place of the distortion and of a realistic
// blur of next to nothing, the trail's own pass, and in the final blend all but the suites. A copy
// in place of the realistic blur stays pending while the next one is made. A missing suite is 516,
// and so is the lens map's second new_world that fails or gives the wrong depth again.
ExpectedOutcome ExpectRender(const literal::RenderInputs& inputs, const literal::RenderTime& time,
                             const std::vector<PlannedFailure>& failures);

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_EXPECTED_CALLS_H_
