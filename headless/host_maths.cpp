// Connects the pinned maths to the host's tables.
#include "headless/host_maths.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "headless/pinned_maths.h"

namespace vitrell::headless {

// The five functions taken from the C library have results that IEEE 754 defines to the bit.
const PF_ANSICallbacksSuite1& HostMaths() {
  static constexpr PF_ANSICallbacksSuite1 kSuite = {
      pinned::Atan, pinned::Atan2, std::ceil,   pinned::Cos,   pinned::Exp, std::fabs,   std::floor,
      std::fmod,    pinned::Hypot, pinned::Log, pinned::Log10, pinned::Pow, pinned::Sin, std::sqrt,
      pinned::Tan,  std::sprintf,  std::strcpy, pinned::Asin,  pinned::Acos};
  return kSuite;
}

}  // namespace vitrell::headless
