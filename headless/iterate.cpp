// Distributes a pass over threads, in each of the orders.
#include "headless/iterate.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <vector>

#include "headless/current_host.h"

namespace vitrell::headless {
namespace {

constexpr std::int64_t kMaxRowsPerTurn = 16;
constexpr std::int64_t kTurnsPerThread = 8;
constexpr std::int64_t kShuffledPixelsPerTurn = 256;

template <typename Pixel>
class PassRunner {
 public:
  PassRunner(const PixelPass<Pixel>& pass, const PassSettings& settings)
      : pass_(pass),
        settings_(settings),
        width_(pass.area.right - pass.area.left),
        height_(pass.area.bottom - pass.area.top),
        byRows_(settings.order == IterateOrder::kRows ||
                settings.order == IterateOrder::kReversedRows),
        units_(byRows_ ? height_ : std::int64_t{width_} * height_) {
    if (settings.order == IterateOrder::kShuffledPixels) {
      permutation_.resize(static_cast<std::size_t>(units_));
      std::iota(permutation_.begin(), permutation_.end(), 0U);
      std::shuffle(permutation_.begin(), permutation_.end(), std::mt19937_64(settings.seed));
      unitsPerTurn_ = kShuffledPixelsPerTurn;
    } else if (byRows_) {
      unitsPerTurn_ = std::clamp(units_ / (settings.threads * kTurnsPerThread), std::int64_t{1},
                                 kMaxRowsPerTurn);
    }
  }

  // Claims and visits groups of units until none is left or the pass stops.
  void Work(int worker) {
    while (!Stopped()) {
      const std::int64_t begin = next_.fetch_add(unitsPerTurn_, std::memory_order_relaxed);
      if (begin >= units_) return;
      const std::int64_t end = std::min(begin + unitsPerTurn_, units_);
      Stop(RunTurn(begin, end));
      done_.fetch_add(end - begin, std::memory_order_relaxed);
      if (worker == 0) Report();
    }
  }

  void Report() const {
    if (!settings_.progress) return;
    const std::int64_t done = done_.load(std::memory_order_relaxed);
    settings_.progress(static_cast<A_long>(byRows_ ? done : done / width_), height_);
  }

  PassOutcome Outcome() const {
    return {error_.load(std::memory_order_relaxed), threw_.load(std::memory_order_relaxed)};
  }

 private:
  bool Stopped() {
    if (settings_.cancel != nullptr && settings_.cancel->load(std::memory_order_relaxed)) {
      Stop(PF_Interrupt_CANCEL);
    }
    return error_.load(std::memory_order_relaxed) != PF_Err_NONE;
  }

  // Only the first error is kept.
  void Stop(PF_Err error) {
    PF_Err none = PF_Err_NONE;
    if (error != PF_Err_NONE) {
      error_.compare_exchange_strong(none, error, std::memory_order_relaxed);
    }
  }

  // Exceptions must not propagate out of the effect's callback through the host.
  PF_Err RunTurn(std::int64_t begin, std::int64_t end) {
    try {
      for (std::int64_t unit = begin; unit < end; ++unit) {
        const PF_Err error = Visit(unit);
        if (error != PF_Err_NONE) return error;
        if (byRows_ && Stopped()) return PF_Err_NONE;
      }
      return PF_Err_NONE;
    } catch (...) {
      threw_.store(true, std::memory_order_relaxed);
      return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
  }

  PF_Err Visit(std::int64_t unit) const {
    switch (settings_.order) {
      case IterateOrder::kRows:
        return VisitRow(static_cast<A_long>(unit));
      case IterateOrder::kReversedRows:
        return VisitRowBackwards(height_ - 1 - static_cast<A_long>(unit));
      case IterateOrder::kShuffledPixels:
        return VisitPixel(permutation_[static_cast<std::size_t>(unit)]);
      case IterateOrder::kSinglePixels:
        return VisitPixel(unit);
    }
    return PF_Err_NONE;
  }

  static Pixel* RowOf(const PixelView& world, A_long y) {
    if (world.data == nullptr) return nullptr;
    return reinterpret_cast<Pixel*>(static_cast<std::byte*>(world.data) +
                                    static_cast<std::ptrdiff_t>(y) * world.rowbytes);
  }

  PF_Err VisitRow(A_long row) const {
    const A_long y = pass_.area.top + row;
    const A_long end = pass_.area.right;
    const std::ptrdiff_t inStep = pass_.source.data != nullptr ? 1 : 0;
    Pixel* in = RowOf(pass_.source, y) + inStep * pass_.area.left;
    Pixel* out = RowOf(pass_.destination, y) + pass_.area.left;
    const auto function = pass_.function;
    void* refcon = pass_.refcon;
    for (A_long x = pass_.area.left; x < end; ++x, in += inStep, ++out) {
      const PF_Err error = function(refcon, x, y, in, out);
      if (error != PF_Err_NONE) [[unlikely]] {
        return error;
      }
    }
    return PF_Err_NONE;
  }

  PF_Err VisitRowBackwards(A_long row) const {
    for (std::int64_t column = width_; column-- > 0;) {
      const PF_Err error = VisitPixel(std::int64_t{row} * width_ + column);
      if (error != PF_Err_NONE) return error;
    }
    return PF_Err_NONE;
  }

  PF_Err VisitPixel(std::int64_t number) const {
    const A_long x = pass_.area.left + static_cast<A_long>(number % width_);
    const A_long y = pass_.area.top + static_cast<A_long>(number / width_);
    Pixel* in = RowOf(pass_.source, y);
    Pixel* out = RowOf(pass_.destination, y);
    return pass_.function(pass_.refcon, x, y, in != nullptr ? in + x : nullptr, out + x);
  }

  const PixelPass<Pixel>& pass_;
  const PassSettings& settings_;
  const A_long width_;
  const A_long height_;
  const bool byRows_;
  const std::int64_t units_;  // Rows or pixels, depending on the order.
  std::int64_t unitsPerTurn_ = 1;
  std::vector<std::uint32_t> permutation_;
  std::atomic<std::int64_t> next_{0};
  std::atomic<std::int64_t> done_{0};
  std::atomic<PF_Err> error_{PF_Err_NONE};
  std::atomic<bool> threw_{false};
};

}  // namespace

template <typename Pixel>
PassOutcome RunPass(const PixelPass<Pixel>& pass, const PassSettings& settings, ThreadPool& pool,
                    HostState* host) {
  if (pass.area.right <= pass.area.left || pass.area.bottom <= pass.area.top) return {};
  PassRunner<Pixel> runner(pass, settings);
  pool.Run(settings.threads, [&](int worker) {
    const CurrentHostScope scope(host);
    runner.Work(worker);
  });
  runner.Report();
  return runner.Outcome();
}

template PassOutcome RunPass(const PixelPass<PF_Pixel>&, const PassSettings&, ThreadPool&,
                             HostState*);
template PassOutcome RunPass(const PixelPass<PF_Pixel16>&, const PassSettings&, ThreadPool&,
                             HostState*);

}  // namespace vitrell::headless
