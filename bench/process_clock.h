// Processor time of RENDER commands. The machine may be shared: what other programs take is not in
// it, unlike in the time on the wall.
#ifndef VITRELL_BENCH_PROCESS_CLOCK_H_
#define VITRELL_BENCH_PROCESS_CLOCK_H_

#include <memory>

#include "headless/effect_module.h"

namespace vitrell::bench {

// Measures while it lives; its end is what LastRenderProcessSeconds() tells.
class RenderClock {
 public:
  RenderClock();
  ~RenderClock();
  RenderClock(const RenderClock&) = delete;
  RenderClock& operator=(const RenderClock&) = delete;

 private:
  double start_;
};

double LastRenderProcessSeconds();

// The module with a clock around its RENDER. A program makes one such module.
std::shared_ptr<const headless::EffectModule> TimedModule(
    std::shared_ptr<const headless::EffectModule> real);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_PROCESS_CLOCK_H_
