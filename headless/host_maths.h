// The maths functions that the host gives to an effect.
#ifndef VITRELL_HEADLESS_HOST_MATHS_H_
#define VITRELL_HEADLESS_HOST_MATHS_H_

#include "host/host_api.h"

namespace vitrell::headless {

// The same bits on every platform, see headless/pinned_maths.h. The callbacks of the input record
// and the suite hold these very pointers, so a reference computation that uses them sees the
// effect's own numbers.
const PF_ANSICallbacksSuite1& HostMaths();

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_HOST_MATHS_H_
