// The maths functions that the host provides to an effect.
#ifndef VITRELL_HEADLESS_HOST_MATHS_H_
#define VITRELL_HEADLESS_HOST_MATHS_H_

#include "host/host_api.h"

namespace vitrell::headless {

// They return the same bits on every platform, see headless/pinned_maths.h. The callbacks of the
// input record and of the suite are these very pointers, so that a reference computation that calls
// them uses the effect's own numbers.
const PF_ANSICallbacksSuite1& HostMaths();

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_MATHS_H_
