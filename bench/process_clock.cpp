// Processor time of RENDER commands and of the host calls within them.
#include "bench/process_clock.h"

#include <ctime>
#include <string_view>
#include <utility>

namespace vitrell::bench {
namespace {

// Global because an entry point and the host's callbacks are plain functions: what they forward to,
// and what they measure.
struct Clock {
  PF_InData* inData = nullptr;
  const void* layerPixels = nullptr;
  double start = 0;
  RenderTimes times;

  // The host's tables, while the record holds those of the clock.
  PF_UtilCallbacks* hostUtils = nullptr;
  decltype(PF_InData::pica_basicP) hostBasic = nullptr;
  const PF_Iterate8Suite1* hostIterate8 = nullptr;
  const PF_iterate16Suite1* hostIterate16 = nullptr;

  PF_UtilCallbacks utils{};
  SPBasicSuite basic{};
  PF_Iterate8Suite1 iterate8{};
  PF_iterate16Suite1 iterate16{};
};
Clock g_clock;
std::shared_ptr<const headless::EffectModule> g_real;

double ProcessSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Calls the host and records the duration.
template <typename Call>
PF_Err Timed(bool isPass, const PF_LayerDef* from, const Call& call) {
  const double begin = ProcessSeconds() - g_clock.start;
  const PF_Err error = call();
  const bool readsLayer = from != nullptr && from->data == g_clock.layerPixels;
  g_clock.times.calls.push_back({isPass, readsLayer, begin, ProcessSeconds() - g_clock.start});
  return error;
}

PF_Err TimedCopy(PF_ProgPtr effectRef, PF_LayerDef* from, PF_LayerDef* to, PF_LRect* fromRect,
                 PF_LRect* toRect) {
  return Timed(false, from,
               [&] { return g_clock.hostUtils->copy(effectRef, from, to, fromRect, toRect); });
}

PF_Err TimedIterate8(PF_InData* inData, A_long base, A_long top, PF_LayerDef* from,
                     const PF_LRect* area, void* refcon, PF_IteratePixel8Func pixel,
                     PF_LayerDef* to) {
  return Timed(true, from, [&] {
    return g_clock.hostIterate8->iterate(inData, base, top, from, area, refcon, pixel, to);
  });
}

PF_Err TimedIterate16(PF_InData* inData, A_long base, A_long top, PF_LayerDef* from,
                      const PF_LRect* area, void* refcon, PF_IteratePixel16Func pixel,
                      PF_LayerDef* to) {
  return Timed(true, from, [&] {
    return g_clock.hostIterate16->iterate(inData, base, top, from, area, refcon, pixel, to);
  });
}

SPErr TimedAcquire(const char* name, std::int32_t version, const void** suite) {
  const SPErr error = g_clock.hostBasic->AcquireSuite(name, version, suite);
  if (error != 0) return error;
  if (name == std::string_view(kPFIterate8Suite)) {
    g_clock.hostIterate8 = static_cast<const PF_Iterate8Suite1*>(*suite);
    g_clock.iterate8 = *g_clock.hostIterate8;
    g_clock.iterate8.iterate = &TimedIterate8;
    *suite = &g_clock.iterate8;
  } else if (name == std::string_view(kPFIterate16Suite)) {
    g_clock.hostIterate16 = static_cast<const PF_iterate16Suite1*>(*suite);
    g_clock.iterate16 = *g_clock.hostIterate16;
    g_clock.iterate16.iterate = &TimedIterate16;
    *suite = &g_clock.iterate16;
  }
  return 0;
}

PF_Err TimedEntryPoint(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output, void* extra) {
  if (cmd != PF_Cmd_RENDER) {
    return g_real->EntryPoint()(cmd, in_data, out_data, params, output, extra);
  }
  const RenderClock clock(in_data, params[0]->u.ld);
  return g_real->EntryPoint()(cmd, in_data, out_data, params, output, extra);
}

}  // namespace

RenderClock::RenderClock(PF_InData* in_data, const PF_LayerDef& layer) {
  g_clock.inData = in_data;
  g_clock.layerPixels = layer.data;
  g_clock.times.calls.clear();
  g_clock.hostUtils = in_data->utils;
  g_clock.utils = *in_data->utils;
  g_clock.utils.copy = &TimedCopy;
  g_clock.hostBasic = in_data->pica_basicP;
  g_clock.basic = *in_data->pica_basicP;
  g_clock.basic.AcquireSuite = &TimedAcquire;
  in_data->utils = &g_clock.utils;
  in_data->pica_basicP = &g_clock.basic;
  g_clock.start = ProcessSeconds();
}

RenderClock::~RenderClock() {
  g_clock.times.seconds = ProcessSeconds() - g_clock.start;
  g_clock.inData->utils = g_clock.hostUtils;
  g_clock.inData->pica_basicP = g_clock.hostBasic;
}

const RenderTimes& LastRenderTimes() { return g_clock.times; }

std::shared_ptr<const headless::EffectModule> TimedModule(
    std::shared_ptr<const headless::EffectModule> real) {
  g_real = std::move(real);
  return std::make_shared<const headless::EffectModule>(&TimedEntryPoint, "timed");
}

}  // namespace vitrell::bench
