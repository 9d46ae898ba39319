// The options of a render, and its result.
#ifndef VITRELL_HEADLESS_RENDER_H_
#define VITRELL_HEADLESS_RENDER_H_

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "headless/call_log.h"
#include "headless/world_buffer.h"
#include "host/host_api.h"

namespace vitrell::headless {

// The order in which a pass visits its pixels. Each order visits every pixel exactly once on any
// number of threads; the effect must produce the same image in all of them.
enum class IterateOrder {
  kRows,            // Left to right; threads take rows from the top down.
  kReversedRows,    // From the bottom row up, right to left.
  kShuffledPixels,  // A seeded permutation of all pixels.
  kSinglePixels,    // Neighbouring pixels go to different threads.
};

// The depth of worlds that new_world makes if its flags do not request a 16-bit one.
enum class NewWorldDepth {
  kRenderDepth,  // The input's depth, as the host does.
  kEightBit,     // 8 bits; copies convert.
};

struct RenderProgress {
  int pass = 0;  // Number of the iterate pass within this render, from 1.
  A_long rowsDone = 0;
  A_long rowsTotal = 0;
};

struct RenderOptions {
  int threads = 1;  // For iterate passes and copies; 0 means one per processor.
  IterateOrder order = IterateOrder::kRows;
  std::uint64_t seed = 1;  // Of kShuffledPixels.
  NewWorldDepth newWorldDepth = NewWorldDepth::kRenderDepth;
  // Layout of the worlds that new_world makes. An odd baseOffset is rounded down for 16-bit ones.
  WorldLayout newWorldLayout;
  // Set in the records of those worlds in addition to the depth. PF_WorldFlag_WRITEABLE has the
  // same value as the new_world flag that requests a 16-bit world.
  PF_WorldFlags extraWorldFlags = 0;

  A_long currentTime = 0;
  A_long timeStep = 1;
  A_long totalTime = 1;
  A_u_long timeScale = 30;
  PF_Quality quality = PF_Quality_HI;
  PF_RationalScale downsampleX{1, 1};
  PF_RationalScale downsampleY{1, 1};
  PF_RationalScale pixelAspect{1, 1};

  // Called on the rendering thread during passes, at most once per row. Must not call the host.
  std::function<void(const RenderProgress&)> progress;
  // Once it is true, abort returns 517 and passes stop with 517 at the next row.
  const std::atomic<bool>* cancel = nullptr;

  // Check that the effect does not change pixels of the input or the custom layer.
  bool verifyInputs = true;
};

struct RenderResult {
  PF_Err error = PF_Err_NONE;  // That of the first command that failed.
  std::string description;     // DescribeError(error); empty on success.
  std::string message;         // The effect's return_msg.
  double seconds = 0;          // Wall-clock time of the RENDER command alone.
  std::vector<HostCall> calls;
  std::vector<std::string> complaints;  // Those of this render.
  PF_LayerDef inputRecord{};            // As the effect left it.

  bool Ok() const { return error == PF_Err_NONE; }
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_RENDER_H_
