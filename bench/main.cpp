// Benchmarks of whole frames and of each stage alone. Every result is checked before its time is
// reported; a wrong one, or a filter that matches nothing, ends with exit code 1.
//
// Names are CASE/8bit/1080p/DETAIL/threads1. Counters, 0 where not measured: ms, the median over
// the renders; floor_ms, the same for the floor, rendered alternately; x_floor, their ratio;
// other_ms and x_other, the settings that the case is compared with, or for two threads the same
// case on one; best_ms and best_other_ms, the shortest renders; pass_ms, floor_pass_ms and x_pass,
// the stage's own part against one pass of the floor; worlds_mb and rise_mb, the memory of one
// render. Times are processor time, except wall-clock time for whole renders on two threads.
#include <benchmark/benchmark.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_frame.h"
#include "bench/case_label.h"
#include "bench/cases.h"
#include "bench/figures.h"
#include "bench/process_clock.h"

namespace vitrell::bench {
namespace {

struct Size {
  const char* name;
  std::int32_t width;
  std::int32_t height;
};
constexpr Size k1080p = {"1080p", 1920, 1080};
constexpr Size k2160p = {"2160p", 3840, 2160};
constexpr Size k4320p = {"4320p", 7680, 4320};

// How often a case is rendered: at least `fewest` times, then up to `most` while time is left.
struct Patience {
  std::size_t fewest = 3;
  std::size_t most = 11;
  double seconds = 0.8;
  // A single render that takes longer than this is enough: its relative noise is small.
  double longSeconds = 5;
};
// Wall-clock time varies more than processor time.
constexpr Patience kOnTheWall = {5, 21, 2, 5};
constexpr Patience kQuick = {1, 3, 0.2, 1};

struct Bench {
  std::shared_ptr<const headless::EffectModule> module;
  bool quick = false;
  bool failed = false;
};

FrameCase MakeFrameCase(const BenchCase& benchCase, const Size& size, bool deep, int threads) {
  return {benchCase.settings, size.width, size.height, deep, threads, benchCase.customLayer};
}

Patience PatienceFor(const Bench& bench, int threads) {
  if (bench.quick) return kQuick;
  return threads > 1 ? kOnTheWall : Patience{};
}

bool Enough(const Patience& patience, std::size_t count, double seconds) {
  return (count >= patience.fewest && seconds >= patience.seconds) || count >= patience.most ||
         (count >= 1 && seconds / static_cast<double>(count) >= patience.longSeconds);
}

double Ratio(double a, double b) { return b > 0 ? a / b : 0; }

void Tell(benchmark::State& state, const Figures& figures, const BenchFrame& frame,
          const Memory& memory) {
  state.SetItemsProcessed(static_cast<std::int64_t>(frame.Pixels()));
  state.counters["ms"] = figures.whole.Get() * 1e3;
  state.counters["floor_ms"] = figures.floor.Get() * 1e3;
  state.counters["x_floor"] = Ratio(figures.whole.Get(), figures.floor.Get());
  state.counters["other_ms"] = figures.other.Get() * 1e3;
  state.counters["x_other"] = Ratio(figures.whole.Get(), figures.other.Get());
  state.counters["best_ms"] = figures.whole.Best() * 1e3;
  state.counters["best_other_ms"] = figures.other.Best() * 1e3;
  state.counters["pass_ms"] = figures.part.Get() * 1e3;
  state.counters["floor_pass_ms"] = figures.floorPass.Get() * 1e3;
  state.counters["x_pass"] = Ratio(figures.part.Get(), figures.floorPass.Get());
  state.counters["worlds_mb"] = memory.worlds / 1e6;
  state.counters["rise_mb"] = memory.rise / 1e6;
}

void Fail(benchmark::State& state, Bench& bench, const std::string& wrong) {
  bench.failed = true;
  state.SkipWithError(wrong.substr(0, wrong.find('\n')).c_str());
}

// The case that this one is compared with: on one thread, or with the other settings; null if none.
std::unique_ptr<BenchFrame> MakeOther(const Bench& bench, const BenchCase& benchCase,
                                      FrameCase frameCase) {
  if (frameCase.threads == 1) {
    if (benchCase.other.empty()) return nullptr;
    frameCase.settings = benchCase.other;
  }
  frameCase.threads = 1;
  return std::make_unique<BenchFrame>(bench.module, frameCase);
}

void Run(benchmark::State& state, Bench& bench, const BenchCase& benchCase,
         const FrameCase& frameCase) {
  const auto other = MakeOther(bench, benchCase, frameCase);
  BenchFrame frame(bench.module, frameCase);
  std::string wrong = frame.Check();
  if (wrong.empty() && benchCase.pass >= 0 &&
      CountPasses(frame.RenderFloor()) != benchCase.passes) {
    wrong = "the render has another number of passes";
  }
  if (!wrong.empty()) return Fail(state, bench, wrong);
  const Patience patience = PatienceFor(bench, frameCase.threads);
  Figures figures(frameCase.threads);
  while (state.KeepRunning()) {
    double seconds = 0;
    while (!Enough(patience, figures.whole.Count(), seconds)) {
      const Timing own = frame.Render();
      figures.Add(benchCase, own, frame.RenderFloor());
      if (other != nullptr) figures.AddOther(figures.SecondsOf(other->Render()));
      seconds += own.wallSeconds;
    }
    state.SetIterationTime(figures.whole.Get());
  }
  Tell(state, figures, frame, frameCase.threads == 1 ? frame.MeasureMemory() : Memory{});
}

// Everything on; other_ms is the sum of the lens alone and of what each stage adds to it.
void RunEverything(benchmark::State& state, Bench& bench, FrameCase frameCase) {
  const auto makeFrame = [&](const Settings& settings) {
    frameCase.settings = settings;
    return std::make_unique<BenchFrame>(bench.module, frameCase);
  };
  const auto circle = makeFrame(CircleAlone());
  std::vector<std::unique_ptr<BenchFrame>> alone;
  for (const Settings& settings : EachAlone()) alone.push_back(makeFrame(settings));
  const auto frame = makeFrame(EverythingOn());
  const std::string wrong = frame->Check();
  if (!wrong.empty()) return Fail(state, bench, wrong);
  const BenchCase everything;
  Figures figures(frameCase.threads);
  while (state.KeepRunning()) {
    while (figures.whole.Count() < PatienceFor(bench, 1).fewest) {
      figures.Add(everything, frame->Render(), frame->RenderFloor());
      const double base = circle->Render().process.seconds;
      double sum = base;
      for (const auto& stage : alone) sum += stage->Render().process.seconds - base;
      figures.AddOther(sum);
    }
    state.SetIterationTime(figures.whole.Get());
  }
  Tell(state, figures, *frame, frame->MeasureMemory());
}

template <typename Function>
void Register(const BenchCase& benchCase, const Size& size, bool deep, int threads,
              const Function& function) {
  const std::string label = CaseLabel(benchCase.name, benchCase.detail, size.name, deep, threads);
  benchmark::RegisterBenchmark(label.c_str(), function, benchCase,
                               MakeFrameCase(benchCase, size, deep, threads))
      ->Iterations(1)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

void RegisterAll(Bench& bench) {
  const auto run = [&bench](benchmark::State& state, const BenchCase& benchCase,
                            const FrameCase& frameCase) {
    Run(state, bench, benchCase, frameCase);
  };
  const auto runEverything = [&bench](benchmark::State& state, const BenchCase&,
                                      const FrameCase& frameCase) {
    RunEverything(state, bench, frameCase);
  };
  BenchCase everything;
  everything.name = "Everything";
  for (const Size& size : {k1080p, k2160p, k4320p}) {
    const bool huge = size.width == k4320p.width;
    for (const bool deep : {false, true}) {
      for (const BenchCase& benchCase : AllCases()) {
        if (huge && !benchCase.huge) continue;
        Register(benchCase, size, deep, 1, run);
        if (!huge) Register(benchCase, size, deep, 2, run);
      }
      if (!huge) Register(everything, size, deep, 1, runEverything);
    }
  }
}

}  // namespace
}  // namespace vitrell::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  CLI::App app("Times of whole frames and single stages; see also --benchmark_filter.");
  std::string module = VITRELL_MODULE_PATH;
  bool quick = false;
  app.add_option("--module", module, "The effect to measure")->capture_default_str();
  app.add_flag("--quick", quick, "Fewer renders of each case");
  CLI11_PARSE(app, argc, argv);
  try {
    vitrell::bench::Bench bench;
    bench.module = vitrell::bench::TimedModule(
        std::make_shared<const vitrell::headless::EffectModule>(module));
    bench.quick = quick;
    vitrell::bench::RegisterAll(bench);
    return benchmark::RunSpecifiedBenchmarks() > 0 && !bench.failed ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vitrell_bench: %s\n", error.what());
    return 1;
  }
}
