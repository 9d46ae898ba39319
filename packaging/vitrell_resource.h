// Vitrell's description of itself for the host.
#ifndef VITRELL_PACKAGING_VITRELL_RESOURCE_H_
#define VITRELL_PACKAGING_VITRELL_RESOURCE_H_

#include "resource_file.h"
#include "shell/entry_point.h"

namespace vitrell::packaging {

// The interface of the first host that renders frames on several threads. With an older version the
// host ignores PF_OutFlag2_SUPPORTS_THREADED_RENDERING.
inline constexpr ApiVersion kApiVersion{13, 25};

// Version and flags are those that the code reports in GLOBAL_SETUP; the host rejects an effect
// whose code and resource disagree. The match name must never change: projects store it.
inline EffectDescription DescribeVitrell() {
  return {.name = "Vitrell",
          .matchName = "VTRL Vitrell",
          .category = "Blur & Sharpen",
          .entryPoint = "EntryPointFunc",
          .apiVersion = kApiVersion,
          .version = kEffectVersion,
          .outFlags = kEffectOutFlags,
          .outFlags2 = kEffectOutFlags2};
}

}  // namespace vitrell::packaging

#endif  // VITRELL_PACKAGING_VITRELL_RESOURCE_H_
