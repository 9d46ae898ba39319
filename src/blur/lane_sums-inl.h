// The lane sums' one source, included once for each target.
//
// The including file defines VITRELL_LANES_NAMESPACE, VITRELL_LANES_BYTES (size of a vector) and
// VITRELL_LANES_TARGET (the attribute of every function here); they are undefined at the end.
//
// Why a tap may be added in lanes for which it lies outside the picture: the padding there holds
// zeros, so each product is +0 or -0 (weights are finite). A sum that starts at +0 never becomes
// -0, since rounding to nearest gives -0 only for (-0) + (-0); adding +-0 to it changes nothing.

namespace vitrell {
namespace {
namespace VITRELL_LANES_NAMESPACE {

using Vector = float __attribute__((vector_size(VITRELL_LANES_BYTES)));
constexpr int kWidth = VITRELL_LANES_BYTES / static_cast<int>(sizeof(float));

#define VITRELL_LANES_INLINE VITRELL_LANES_TARGET __attribute__((always_inline)) inline

template <int kVectors>
struct Accumulators {
  Vector red[kVectors];
  Vector green[kVectors];
  Vector blue[kVectors];
  Vector weight[kVectors];
};

VITRELL_LANES_INLINE void Load(const float* from, Vector* vector) {
  __builtin_memcpy(vector, from, sizeof(Vector));
}

VITRELL_LANES_INLINE void Store(const Vector& vector, float* to) {
  __builtin_memcpy(to, &vector, sizeof(Vector));
}

template <int kVectors>
VITRELL_LANES_INLINE void Add(const float* source, std::int64_t planeStride, float tapWeight,
                              Accumulators<kVectors>* sums) {
  for (int i = 0; i < kVectors; ++i) {
    Vector weight;
    Vector red;
    Vector green;
    Vector blue;
    Load(source + i * kWidth, &weight);
    Load(source + planeStride + i * kWidth, &red);
    Load(source + 2 * planeStride + i * kWidth, &green);
    Load(source + 3 * planeStride + i * kWidth, &blue);
    weight = weight * tapWeight;
    sums->red[i] += weight * red;
    sums->green[i] += weight * green;
    sums->blue[i] += weight * blue;
    sums->weight[i] += weight;
  }
}

template <int kVectors>
VITRELL_LANES_INLINE void StoreSums(const Accumulators<kVectors>& from, LaneSums* to) {
  for (int i = 0; i < kVectors; ++i) {
    Store(from.red[i], to->red + i * kWidth);
    Store(from.green[i], to->green + i * kWidth);
    Store(from.blue[i], to->blue + i * kWidth);
    Store(from.weight[i], to->weight + i * kWidth);
  }
}

template <int kVectors>
VITRELL_LANES_TARGET void SumKernelLanes(const LaneView& view, const LaneWindow& window,
                                         const IrisKernel& kernel, LaneSums* sums) {
  Accumulators<kVectors> total = {};
  const std::int64_t lastKernelDy = kernel.firstDy + kernel.rowCount - 1;
  const std::int64_t firstDy = window.firstDy > kernel.firstDy ? window.firstDy : kernel.firstDy;
  const std::int64_t lastDy = window.lastDy < lastKernelDy ? window.lastDy : lastKernelDy;
  for (std::int64_t dy = firstDy; dy <= lastDy; ++dy) {
    const std::size_t* const rowStart = kernel.rowStart.data() + (dy - kernel.firstDy);
    const KernelSpan* const endSpan = kernel.spans.data() + rowStart[1];
    for (const KernelSpan* span = kernel.spans.data() + rowStart[0]; span != endSpan; ++span) {
      const std::int64_t lastOfSpan = std::int64_t{span->dx} + span->count - 1;
      const std::int64_t firstDx = window.firstDx > span->dx ? window.firstDx : span->dx;
      const std::int64_t lastDx = window.lastDx < lastOfSpan ? window.lastDx : lastOfSpan;
      std::int64_t offset = view.centre + dy * view.dyStride + firstDx * view.dxStride;
      for (std::int64_t dx = firstDx; dx <= lastDx; ++dx) {
        Add<kVectors>(view.origin + offset, view.planeStride, span->weight, &total);
        offset += view.dxStride;
      }
    }
  }
  StoreSums<kVectors>(total, sums);
}

template <int kVectors>
VITRELL_LANES_TARGET void AddTapsLanes(const LaneView& view, const LaneWindow& window,
                                       const LaneTap* begin, const LaneTap* end, LaneSums* sums) {
  Accumulators<kVectors> total;
  for (int i = 0; i < kVectors; ++i) {
    Load(sums->red + i * kWidth, &total.red[i]);
    Load(sums->green + i * kWidth, &total.green[i]);
    Load(sums->blue + i * kWidth, &total.blue[i]);
    Load(sums->weight + i * kWidth, &total.weight[i]);
  }
  for (const LaneTap* tap = begin; tap != end; ++tap) {
    if (tap->dx >= window.firstDx && tap->dx <= window.lastDx) {
      Add<kVectors>(view.origin + (view.centre + tap->offset), view.planeStride, tap->weight,
                    &total);
    }
  }
  StoreSums<kVectors>(total, sums);
}

constexpr LaneEngines kEngines = {{kWidth, SumKernelLanes<1>, AddTapsLanes<1>},
                                  {2 * kWidth, SumKernelLanes<2>, AddTapsLanes<2>}};
static_assert(2 * kWidth <= kMaxLanes);

#undef VITRELL_LANES_INLINE

}  // namespace VITRELL_LANES_NAMESPACE
}  // namespace
}  // namespace vitrell

#undef VITRELL_LANES_NAMESPACE
#undef VITRELL_LANES_BYTES
#undef VITRELL_LANES_TARGET
