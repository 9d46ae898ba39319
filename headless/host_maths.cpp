// The C library's maths behind the host's tables.
#include "headless/host_maths.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

namespace vitrell::headless {

const PF_ANSICallbacksSuite1& HostMaths() {
  static constexpr PF_ANSICallbacksSuite1 kSuite = {
      ::atan,  ::atan2, ::ceil, ::cos,  ::exp, ::fabs,    ::floor,  ::fmod, ::hypot, ::log,
      ::log10, ::pow,   ::sin,  ::sqrt, ::tan, ::sprintf, ::strcpy, ::asin, ::acos};
  return kSuite;
}

}  // namespace vitrell::headless
