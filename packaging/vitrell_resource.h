// How Vitrell describes itself to the host.
#ifndef VITRELL_PACKAGING_VITRELL_RESOURCE_H_
#define VITRELL_PACKAGING_VITRELL_RESOURCE_H_

#include "resource_file.h"
#include "shell/entry_point.h"

namespace vitrell::packaging {

// The interface of the first host that renders frames on several threads. Under an older number
// the host does not believe PF_OutFlag2_SUPPORTS_THREADED_RENDERING.
inline constexpr ApiVersion kApiVersion{13, 25};

// The version and the flags are those the code registers; the host refuses an effect whose code
// and resource disagree. The match name never changes: projects find the effect by it.
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
