// Benchmarks of whole frames and of each stage alone.
//
// WholeDefault/8bit/1080p/threads1 is a frame with the controls as they are at first; Floor/... is
// the same frame's host calls with passes that copy. A stage's frame has everything else off; its
// counter stage_ms is what it takes longer than AllOff/..., and x_floor the ratio to its own floor.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_frame.h"

namespace vitrell::bench {
namespace {

// Renders of each frame. The counters tell the best of them, which other work on the machine
// disturbs least; the table's own time is their mean.
constexpr int kRenders = 7;

struct Named {
  std::string name;
  std::string detail;  // Behind the size, such as "r20"; may be empty.
  std::vector<Setting> settings;
  // With a trail the picture depends on the threads' timing: it can only be checked on one.
  bool oneThreadOnly = false;
};

// Everything off: no lens, no stage that is visible.
std::vector<Setting> AllOff(std::vector<Setting> more = {}) {
  std::vector<Setting> settings = {{"lens.type", 1},
                                   {"fast-blur.visible", 0},
                                   {"realistic-blur.visible", 0},
                                   {"optical-distortion.visible", 0},
                                   {"trail.visible", 0},
                                   {"directional-blur.visible", 0},
                                   {"lightness.visible", 0},
                                   {"color.visible", 0},
                                   {"chromatic-aberration.visible", 0}};
  settings.insert(settings.end(), more.begin(), more.end());
  return settings;
}

std::vector<Named> Stages() {
  return {
      {"LensCircle", "feather50", AllOff({{"lens.type", 2}, {"lens.feather", 50}})},
      {"FastBlur", "r20", AllOff({{"fast-blur.visible", 1}, {"fast-blur.amount", 20}})},
      {"FastBlur", "r127", AllOff({{"fast-blur.visible", 1}, {"fast-blur.amount", 127}})},
      {"FastBlurMapped", "r20",
       AllOff({{"lens.type", 2},
               {"lens.feather", 100},
               {"fast-blur.visible", 1},
               {"fast-blur.amount", 20},
               {"fast-blur.use-lens-as-blur-map", 1}})},
      {"RealisticBlur", "r20",
       AllOff({{"realistic-blur.visible", 1}, {"realistic-blur.amount", 20}})},
      {"RealisticBlurMapped", "r8",
       AllOff({{"lens.type", 2},
               {"lens.feather", 100},
               {"realistic-blur.visible", 1},
               {"realistic-blur.amount", 8},
               {"realistic-blur.use-lens-as-blur-map", 1}})},
      {"OpticalDistortion", "90deg",
       AllOff({{"optical-distortion.visible", 1}, {"optical-distortion.amount", 90}})},
      {"Trail", "30", AllOff({{"trail.visible", 1}, {"trail.amount", 30}}), true},
      {"DirectionalBlur", "20px",
       AllOff({{"directional-blur.visible", 1}, {"directional-blur.amount", 20}})},
      {"Lightness", "40", AllOff({{"lightness.visible", 1}, {"lightness.amount", 40}})},
      {"Color", "50", AllOff({{"color.visible", 1}, {"color.opacity", 50}})},
      {"ChromaticAberration", "10",
       AllOff({{"chromatic-aberration.visible", 1}, {"chromatic-aberration.red-cyan", 10}})},
  };
}

double BestFloor(BenchFrame& frame) {
  double best = frame.FloorSeconds();
  for (int i = 1; i < kRenders; ++i) best = std::min(best, frame.FloorSeconds());
  return best;
}

std::string Label(bool deep, int threads, const std::string& detail) {
  std::string label = deep ? "/16bit/1080p" : "/8bit/1080p";
  if (!detail.empty()) label += "/" + detail;
  return label + "/threads" + std::to_string(threads);
}

// Best seconds of the AllOff frames, by depth and threads; they run before the stages.
std::map<std::pair<bool, int>, double> g_allOffSeconds;

enum class Kind { kFrame, kAllOff, kStage, kFloor };

void Run(benchmark::State& state, const FrameCase& frameCase, Kind kind) {
  BenchFrame frame(frameCase);
  const std::string wrong = frame.Check();
  if (!wrong.empty()) {
    state.SkipWithError(wrong.substr(0, wrong.find('\n')).c_str());
    return;
  }
  const double floorSeconds = BestFloor(frame);
  double best = std::numeric_limits<double>::infinity();
  for (auto _ : state) {
    const double seconds = kind == Kind::kFloor ? frame.FloorSeconds() : frame.RenderSeconds();
    state.SetIterationTime(seconds);
    best = std::min(best, seconds);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(frame.Pixels()) * state.iterations());
  state.counters["best_ms"] = best * 1e3;
  // Every frame has every counter: the csv form wants the same columns in each line.
  state.counters["x_floor"] = kind == Kind::kFloor ? 1 : best / floorSeconds;
  state.counters["stage_ms"] = 0;
  const std::pair<bool, int> key{frameCase.deep, frameCase.threads};
  if (kind == Kind::kAllOff) g_allOffSeconds[key] = best;
  if (kind == Kind::kStage && g_allOffSeconds.contains(key)) {
    state.counters["stage_ms"] = (best - g_allOffSeconds[key]) * 1e3;
  }
}

void Register(const Named& named, Kind kind) {
  for (const bool deep : {false, true}) {
    for (const int threads : {1, 2}) {
      if (named.oneThreadOnly && threads != 1) continue;
      FrameCase frameCase;
      frameCase.settings = named.settings;
      frameCase.deep = deep;
      frameCase.threads = threads;
      frameCase.oneThreadOnly = named.oneThreadOnly;
      benchmark::RegisterBenchmark((named.name + Label(deep, threads, named.detail)).c_str(), &Run,
                                   frameCase, kind)
          ->Iterations(kRenders)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    }
  }
}

}  // namespace
}  // namespace vitrell::bench

int main(int argc, char** argv) {
  using vitrell::bench::Kind;
  vitrell::bench::Register({"WholeDefault", "", {}}, Kind::kFrame);
  vitrell::bench::Register({"Floor", "", {}}, Kind::kFloor);
  vitrell::bench::Register({"AllOff", "", vitrell::bench::AllOff()}, Kind::kAllOff);
  for (const auto& stage : vitrell::bench::Stages()) {
    vitrell::bench::Register(stage, Kind::kStage);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
