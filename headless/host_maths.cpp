// The C library's maths behind the host's tables.
#include "headless/host_maths.h"

#include <cmath>
#include <cstdio>
#include <cstring>

namespace vitrell::headless {

const PF_ANSICallbacksSuite1& HostMaths() {
  static constexpr PF_ANSICallbacksSuite1 kSuite = {
      std::atan, std::atan2,   std::ceil,   std::cos,   std::exp, std::fabs, std::floor,
      std::fmod, std::hypot,   std::log,    std::log10, std::pow, std::sin,  std::sqrt,
      std::tan,  std::sprintf, std::strcpy, std::asin,  std::acos};
  return kSuite;
}

}  // namespace vitrell::headless
