// An effect that makes the host calls of a recorded render and does no work of its own: its passes
// copy each pixel. Its time is what the host itself costs; no effect with the same passes can be
// faster.
#ifndef VITRELL_BENCH_FLOOR_EFFECT_H_
#define VITRELL_BENCH_FLOOR_EFFECT_H_

#include <memory>
#include <vector>

#include "headless/call_log.h"
#include "headless/effect_module.h"

namespace vitrell::bench {

// Makes the floor of the effect whose render made these calls. Every command except RENDER is
// passed to the real module. Only one floor module may exist at a time. Throws std::runtime_error
// for a call that it cannot replay.
std::shared_ptr<const headless::EffectModule> MakeFloorModule(
    std::shared_ptr<const headless::EffectModule> real,
    const std::vector<headless::HostCall>& calls);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_FLOOR_EFFECT_H_
