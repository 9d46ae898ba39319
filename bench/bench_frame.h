// One set of settings rendered at one size and depth: checked first, then timed.
#ifndef VITRELL_BENCH_BENCH_FRAME_H_
#define VITRELL_BENCH_BENCH_FRAME_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/process_clock.h"
#include "headless/effect_host.h"

namespace vitrell::bench {

// A control's path and its number: sliders and angles their value, popups the 1-based choice,
// checkboxes 0 or 1. Points keep their defaults.
struct Setting {
  std::string path;
  double value = 0;
};
using Settings = std::vector<Setting>;

struct FrameCase {
  Settings settings;
  std::int32_t width = 1920;
  std::int32_t height = 1080;
  bool deep = false;
  int threads = 1;
  // Whether only renders on one thread agree; the check of the full size then keeps to one.
  bool oneThreadOnly = false;
  // Whether the frame has a custom layer for its lens.
  bool customLayer = false;
};

// What one render took.
struct Timing {
  RenderTimes process;     // Processor time.
  double wallSeconds = 0;  // From the begin to the end of the RENDER command.
};

// The most memory that one render held at a time, in bytes.
struct Memory {
  double worlds = 0;  // Worlds that the host made for it, by their sizes.
  double rise = 0;    // By how much the process grew, the worlds included.
};

class BenchFrame {
 public:
  // The module comes from TimedModule().
  BenchFrame(std::shared_ptr<const headless::EffectModule> module, FrameCase frameCase);

  // An empty string when the effect's pictures are right: at a small size equal to the literal
  // render; at the full size the same with another number of threads and padded rows; and when the
  // floor makes the same host calls. Otherwise what is wrong.
  std::string Check();
  // Renders once.
  Timing Render();
  // The same host calls with passes that only copy. Check() makes them known.
  Timing RenderFloor();
  // Renders once in a fresh host. Throws std::runtime_error where the system does not tell.
  [[nodiscard]] Memory MeasureMemory();

  [[nodiscard]] double Pixels() const;

 private:
  std::string CheckSmall();
  std::string CheckFull();
  std::string CheckFloor(const headless::RenderResult& real);
  [[nodiscard]] std::unique_ptr<headless::EffectHost> MakeHost() const;
  headless::RenderResult RenderIn(headless::EffectHost& host);
  [[nodiscard]] headless::RenderOptions Options() const;

  FrameCase case_;
  std::shared_ptr<const headless::EffectModule> module_;
  std::unique_ptr<headless::EffectHost> host_;
  headless::WorldBuffer input_;
  headless::WorldBuffer output_;
  headless::WorldBuffer custom_;
  std::shared_ptr<const headless::EffectModule> floorModule_;
  std::unique_ptr<headless::EffectHost> floor_;
};

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_BENCH_FRAME_H_
