// The instruction sets that an engine is compiled for, and the choice among them.
#ifndef VITRELL_SIMD_LANE_TARGET_H_
#define VITRELL_SIMD_LANE_TARGET_H_

namespace vitrell {

enum class LaneTarget { kBaseline, kAvx2, kAvx512 };

// One engine, which is a table of functions, compiled for several instruction sets; null where
// there is none.
template <typename Engine>
struct LaneEngines {
  const Engine* baseline;
  const Engine* avx2;
  const Engine* avx512;

  // Null also if this processor does not support the target.
  const Engine* For(LaneTarget target) const {
    switch (target) {
      case LaneTarget::kBaseline:
        return baseline;
#if defined(__x86_64__)
      case LaneTarget::kAvx2:
        return __builtin_cpu_supports("avx2") ? avx2 : nullptr;
      case LaneTarget::kAvx512:
        return __builtin_cpu_supports("avx512f") ? avx512 : nullptr;
#endif
      default:
        return nullptr;
    }
  }

  // The widest engine that this processor supports.
  const Engine& Best() const {
    if (const Engine* const engine = For(LaneTarget::kAvx512)) {
      return *engine;
    }
    if (const Engine* const engine = For(LaneTarget::kAvx2)) {
      return *engine;
    }
    return *baseline;
  }
};

// Specialised next to each engine's kernels, which for_each_target.inc compiles.
template <typename Engine>
const LaneEngines<Engine>& EnginesOf();

// The engine for an instruction set, for tests; null if this processor does not support it.
template <typename Engine>
const Engine* EngineFor(LaneTarget target) {
  return EnginesOf<Engine>().For(target);
}

// The fastest engine that this processor supports.
template <typename Engine>
const Engine& BestEngine() {
  return EnginesOf<Engine>().Best();
}

}  // namespace vitrell

#endif  // VITRELL_SIMD_LANE_TARGET_H_
