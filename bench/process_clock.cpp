// Processor time of RENDER commands.
#include "bench/process_clock.h"

#include <ctime>
#include <utility>

namespace vitrell::bench {
namespace {

// The entry point of an effect is a plain function; this is what it hands on to, and its clock.
std::shared_ptr<const headless::EffectModule> g_real;
double g_lastSeconds = 0;

double ProcessSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

PF_Err TimedEntryPoint(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output, void* extra) {
  if (cmd != PF_Cmd_RENDER) {
    return g_real->EntryPoint()(cmd, in_data, out_data, params, output, extra);
  }
  const RenderClock clock;
  return g_real->EntryPoint()(cmd, in_data, out_data, params, output, extra);
}

}  // namespace

RenderClock::RenderClock() : start_(ProcessSeconds()) {}

RenderClock::~RenderClock() { g_lastSeconds = ProcessSeconds() - start_; }

double LastRenderProcessSeconds() { return g_lastSeconds; }

std::shared_ptr<const headless::EffectModule> TimedModule(
    std::shared_ptr<const headless::EffectModule> real) {
  g_real = std::move(real);
  return std::make_shared<const headless::EffectModule>(&TimedEntryPoint, "timed");
}

}  // namespace vitrell::bench
