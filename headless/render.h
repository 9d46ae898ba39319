// How a frame is rendered, and what comes of it.
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

// In which order a pass visits its pixels. Every order visits each pixel exactly once, on all
// threads; an effect must give the same picture in each.
enum class IterateOrder {
  kRows,            // Whole rows, left to right; threads take rows from the top.
  kReversedRows,    // The bottom row first, right to left.
  kShuffledPixels,  // A seeded permutation of all pixels.
  kSinglePixels,    // Neighbouring pixels go to different threads.
};

// The depth of worlds that new_world makes when its flags do not ask for a deep one.
enum class NewWorldDepth {
  kRenderDepth,  // That of the input, as the host does.
  kEightBit,     // 8-bit ones; copies convert.
};

struct RenderProgress {
  int pass = 0;  // Counts the iterate passes of this render from 1.
  A_long rowsDone = 0;
  A_long rowsTotal = 0;
};

struct RenderOptions {
  int threads = 1;  // For iterate passes and copies; 0 is one for each processor.
  IterateOrder order = IterateOrder::kRows;
  std::uint64_t seed = 1;  // Of kShuffledPixels.
  NewWorldDepth newWorldDepth = NewWorldDepth::kRenderDepth;
  // Of the worlds that new_world makes. baseOffset is even for deep worlds whatever is asked.
  WorldLayout newWorldLayout;
  // Set in the records of those worlds beside the depth. Beware: PF_WorldFlag_WRITEABLE has the
  // value by which new_world is asked for a deep world.
  PF_WorldFlags extraWorldFlags = 0;

  A_long currentTime = 0;
  A_long timeStep = 1;
  A_long totalTime = 1;
  A_u_long timeScale = 30;
  PF_Quality quality = PF_Quality_HI;
  PF_RationalScale downsampleX{1, 1};
  PF_RationalScale downsampleY{1, 1};
  PF_RationalScale pixelAspect{1, 1};

  // Called on the rendering thread while passes run, at most once a row. Must not call the host.
  std::function<void(const RenderProgress&)> progress;
  // When it becomes true, abort answers 517 and passes stop with 517 at the next row.
  const std::atomic<bool>* cancel = nullptr;

  // Verify that the pixels of the input and the custom layer stay as they were.
  bool verifyInputs = true;
};

struct RenderResult {
  PF_Err error = PF_Err_NONE;  // Of the first command that failed.
  std::string description;     // DescribeError(error); empty on success.
  std::string message;         // What the effect left in return_msg.
  double seconds = 0;          // Of the RENDER command alone.
  std::vector<HostCall> calls;
  std::vector<std::string> complaints;  // Of this render.
  PF_LayerDef inputRecord{};            // The input world's record as the effect left it.

  bool Ok() const { return error == PF_Err_NONE; }
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_RENDER_H_
