// One set of settings rendered at one size and depth: checked first, then timed.
#ifndef VITRELL_BENCH_BENCH_FRAME_H_
#define VITRELL_BENCH_BENCH_FRAME_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "headless/effect_host.h"

namespace vitrell::bench {

// A control's path and its number: sliders and angles their value, popups the 1-based choice,
// checkboxes 0 or 1. Points keep their defaults.
struct Setting {
  std::string path;
  double value = 0;
};

struct FrameCase {
  std::vector<Setting> settings;
  std::int32_t width = 1920;
  std::int32_t height = 1080;
  bool deep = false;
  int threads = 1;
  // Whether only renders on one thread agree; the second check then keeps to one.
  bool oneThreadOnly = false;
};

class BenchFrame {
 public:
  explicit BenchFrame(FrameCase frameCase);

  // An empty string when the effect's pictures are right: at a small size equal to the literal
  // render; at the full size the same with another number of threads and padded rows; and when the
  // floor makes the same host calls. Otherwise what is wrong.
  std::string Check();
  // Renders once; the seconds that the RENDER command took.
  double RenderSeconds();
  // The same for the floor.
  double FloorSeconds();

  [[nodiscard]] double Pixels() const;

 private:
  std::string CheckSmall();
  std::string CheckFull();
  std::string CheckFloor();
  [[nodiscard]] headless::RenderOptions Options() const;

  FrameCase case_;
  std::shared_ptr<const headless::EffectModule> module_;
  headless::EffectHost host_;
  headless::WorldBuffer input_;
  headless::WorldBuffer output_;
  std::shared_ptr<const headless::EffectModule> floorModule_;
  std::unique_ptr<headless::EffectHost> floor_;
};

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_BENCH_FRAME_H_
