// One group of settings rendered at one size and depth: first checked, then timed.
#ifndef VITRELL_BENCH_BENCH_FRAME_H_
#define VITRELL_BENCH_BENCH_FRAME_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/process_clock.h"
#include "headless/effect_host.h"

namespace vitrell::bench {

// A control's path and value: the number of a slider or angle, the 1-based choice of a popup, 0 or
// 1 of a checkbox. Points keep their defaults.
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
  // Whether a custom layer is attached as the lens.
  bool customLayer = false;
};

// Times of one render.
struct Timing {
  RenderTimes process;     // Processor time.
  double wallSeconds = 0;  // Wall-clock time of the RENDER command.
};

// Peak memory of one render, in bytes.
struct Memory {
  double worlds = 0;  // Sizes of the worlds that the host made for it.
  double rise = 0;    // Growth of the process, including the worlds.
};

class BenchFrame {
 public:
  // The module must come from TimedModule().
  BenchFrame(std::shared_ptr<const headless::EffectModule> module, FrameCase frameCase);

  // Returns an empty string if the effect's results are right, or else what is wrong. They are
  // right if at a small size they equal the literal render, if at full size another number of
  // threads and padded rows make no difference, and if the floor makes the same host calls.
  std::string Check();
  // Renders once.
  Timing Render();
  // Makes the same host calls, with passes that only copy. Check() has to be called first.
  Timing RenderFloor();
  // Renders once in a fresh host. Throws std::runtime_error if the system does not report memory
  // use.
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
