// The per-pixel pass: calls a function once for every pixel of an area, on several threads.
#ifndef VITRELL_HEADLESS_ITERATE_H_
#define VITRELL_HEADLESS_ITERATE_H_

#include <atomic>
#include <cstdint>
#include <functional>

#include "headless/pixel_transfer.h"
#include "headless/render.h"
#include "headless/thread_pool.h"
#include "host/host_api.h"

namespace vitrell::headless {

class HostState;

// Pixel is PF_Pixel or PF_Pixel16. If there is no source, `function` gets a null `in`.
template <typename Pixel>
struct PixelPass {
  using Function = PF_Err (*)(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out);

  PixelView source;
  PixelView destination;
  PF_LRect area{};  // Lies within both worlds.
  void* refcon = nullptr;
  Function function = nullptr;
};

struct PassSettings {
  int threads = 1;
  IterateOrder order = IterateOrder::kRows;
  std::uint64_t seed = 1;
  const std::atomic<bool>* cancel = nullptr;
  // Called with rows done and rows in all, on the calling thread; may be empty.
  std::function<void(A_long, A_long)> progress;
};

struct PassOutcome {
  // The first non-zero result of the function on any thread, or 517 if cancelled. Other pixels may
  // have been visited before the pass stopped.
  PF_Err error = PF_Err_NONE;
  bool threw = false;  // The function threw; the error is then 512.
};

// Visits every pixel of the area once. On all threads `host` is current during the pass.
template <typename Pixel>
PassOutcome RunPass(const PixelPass<Pixel>& pass, const PassSettings& settings, ThreadPool& pool,
                    HostState* host);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_ITERATE_H_
