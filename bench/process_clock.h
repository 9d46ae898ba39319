// Processor time of RENDER commands and of the host calls within them. Unlike wall-clock time it
// excludes what other programs take on a shared machine.
#ifndef VITRELL_BENCH_PROCESS_CLOCK_H_
#define VITRELL_BENCH_PROCESS_CLOCK_H_

#include <memory>
#include <vector>

#include "headless/effect_module.h"
#include "host/host_api.h"

namespace vitrell::bench {

// A host call that processes a whole frame: a pass or a copy. Seconds since the command began.
struct FrameCall {
  bool isPass = false;
  bool readsLayer = false;
  double beginSeconds = 0;
  double endSeconds = 0;
};

// Processor seconds, summed over all threads.
struct RenderTimes {
  double seconds = 0;
  std::vector<FrameCall> calls;
};

// Measures during its lifetime; afterwards LastRenderTimes() returns the result. Meanwhile the
// record's iterate suites and copy callback are the clock's, which forward to the host's. Only one
// may exist at a time.
class RenderClock {
 public:
  RenderClock(PF_InData* in_data, const PF_LayerDef& layer);
  ~RenderClock();
  RenderClock(const RenderClock&) = delete;
  RenderClock& operator=(const RenderClock&) = delete;
};

const RenderTimes& LastRenderTimes();

// Wraps the module so that its RENDER is timed. Only one such module may exist in a program.
std::shared_ptr<const headless::EffectModule> TimedModule(
    std::shared_ptr<const headless::EffectModule> real);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_PROCESS_CLOCK_H_
