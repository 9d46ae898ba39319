// Processor time of RENDER commands and of the host calls within them. The machine may be shared:
// what other programs take is not in it, unlike in the time on the wall.
#ifndef VITRELL_BENCH_PROCESS_CLOCK_H_
#define VITRELL_BENCH_PROCESS_CLOCK_H_

#include <memory>
#include <vector>

#include "headless/effect_module.h"
#include "host/host_api.h"

namespace vitrell::bench {

// A host call that goes over a whole frame: a pass or a copy. Seconds since the command began.
struct FrameCall {
  bool isPass = false;
  bool readsLayer = false;
  double beginSeconds = 0;
  double endSeconds = 0;
};

// Seconds are processor time, all threads together.
struct RenderTimes {
  double seconds = 0;
  std::vector<FrameCall> calls;
};

// Measures while it lives; its end is what LastRenderTimes() tells. Meanwhile the record's iterate
// suites and its copy are the clock's own, which hand on to the host's. One at a time.
class RenderClock {
 public:
  RenderClock(PF_InData* in_data, const PF_LayerDef& layer);
  ~RenderClock();
  RenderClock(const RenderClock&) = delete;
  RenderClock& operator=(const RenderClock&) = delete;
};

const RenderTimes& LastRenderTimes();

// The module with a clock around its RENDER. A program makes one such module.
std::shared_ptr<const headless::EffectModule> TimedModule(
    std::shared_ptr<const headless::EffectModule> real);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_PROCESS_CLOCK_H_
