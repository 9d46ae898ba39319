// Passes: every order and number of threads visits each pixel once.
#include "headless/iterate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <vector>

#include "headless/world_buffer.h"

namespace vitrell::headless {
namespace {

constexpr std::array kOrders = {IterateOrder::kRows, IterateOrder::kReversedRows,
                                IterateOrder::kShuffledPixels, IterateOrder::kSinglePixels};

PixelView ViewOf(WorldBuffer& world) {
  return {world.Row(0), world.RowBytes(), world.Width(), world.Height(), world.Deep()};
}

struct Visits {
  WorldBuffer* source = nullptr;
  WorldBuffer* destination = nullptr;
  std::vector<std::atomic<int>> counts;
  std::atomic<int> wrongPointers{0};
  std::atomic<int> total{0};
  int failAt = -1;  // The visit that answers an error.
};

template <typename Pixel>
Pixel* Address(WorldBuffer& world, A_long x, A_long y) {
  return reinterpret_cast<Pixel*>(world.Row(y)) + x;
}

template <typename Pixel>
PF_Err Visit(void* refcon, A_long x, A_long y, Pixel* in, Pixel* out) {
  auto& visits = *static_cast<Visits*>(refcon);
  const auto position = static_cast<std::size_t>(y * visits.destination->Width() + x);
  visits.counts[position].fetch_add(1);
  const bool inRight =
      visits.source == nullptr ? in == nullptr : in == Address<Pixel>(*visits.source, x, y);
  const bool outRight = out == Address<Pixel>(*visits.destination, x, y);
  if (!inRight || !outRight) visits.wrongPointers.fetch_add(1);
  return visits.total.fetch_add(1) == visits.failAt ? 99 : PF_Err_NONE;
}

template <typename Pixel>
PixelPass<Pixel> PassOver(Visits& visits, const PF_LRect& area) {
  PixelPass<Pixel> pass;
  if (visits.source != nullptr) pass.source = ViewOf(*visits.source);
  pass.destination = ViewOf(*visits.destination);
  pass.area = area;
  pass.refcon = &visits;
  pass.function = Visit<Pixel>;
  return pass;
}

template <typename Pixel>
void ExpectEachPixelOnce(IterateOrder order, int threads, bool withSource) {
  constexpr bool kDeep = sizeof(Pixel) == sizeof(PF_Pixel16);
  WorldBuffer source(37, 23, kDeep, {.rowPadding = 4}), destination(37, 23, kDeep);
  const PF_LRect area = {2, 1, 36, 23};
  Visits visits;
  visits.source = withSource ? &source : nullptr;
  visits.destination = &destination;
  visits.counts = std::vector<std::atomic<int>>(37 * 23);
  PassSettings settings;
  settings.order = order;
  settings.threads = threads;
  ThreadPool pool;
  const PassOutcome outcome = RunPass(PassOver<Pixel>(visits, area), settings, pool, nullptr);
  EXPECT_EQ(outcome.error, PF_Err_NONE);
  EXPECT_EQ(visits.wrongPointers.load(), 0);
  for (int y = 0; y < 23; ++y) {
    for (int x = 0; x < 37; ++x) {
      const bool inside = x >= area.left && x < area.right && y >= area.top && y < area.bottom;
      ASSERT_EQ(visits.counts[static_cast<std::size_t>(y * 37 + x)].load(), inside ? 1 : 0)
          << "at " << x << ", " << y << ", order " << static_cast<int>(order) << ", threads "
          << threads;
    }
  }
}

TEST(IterateTest, EveryOrderVisitsEachPixelOnce) {
  for (const IterateOrder order : kOrders) {
    for (const int threads : {1, 2, 7}) {
      ExpectEachPixelOnce<PF_Pixel>(order, threads, true);
      ExpectEachPixelOnce<PF_Pixel16>(order, threads, true);
    }
  }
}

TEST(IterateTest, WithoutSourceTheInputPixelIsNull) {
  for (const IterateOrder order : kOrders) ExpectEachPixelOnce<PF_Pixel>(order, 2, false);
}

std::vector<int> SequenceOf(IterateOrder order, std::uint64_t seed) {
  static std::vector<int> sequence;
  sequence.clear();
  WorldBuffer world(3, 2, false);
  PixelPass<PF_Pixel> pass;
  pass.destination = ViewOf(world);
  pass.area = {0, 0, 3, 2};
  pass.function = [](void*, A_long x, A_long y, PF_Pixel*, PF_Pixel*) -> PF_Err {
    sequence.push_back(10 * y + x);
    return PF_Err_NONE;
  };
  PassSettings settings;
  settings.order = order;
  settings.seed = seed;
  ThreadPool pool;
  (void)RunPass(pass, settings, pool, nullptr);
  return sequence;
}

TEST(IterateTest, OrdersAreWhatTheirNamesSay) {
  EXPECT_EQ(SequenceOf(IterateOrder::kRows, 1), (std::vector<int>{0, 1, 2, 10, 11, 12}));
  EXPECT_EQ(SequenceOf(IterateOrder::kReversedRows, 1), (std::vector<int>{12, 11, 10, 2, 1, 0}));
  EXPECT_EQ(SequenceOf(IterateOrder::kSinglePixels, 1), (std::vector<int>{0, 1, 2, 10, 11, 12}));
  EXPECT_EQ(SequenceOf(IterateOrder::kShuffledPixels, 4),
            SequenceOf(IterateOrder::kShuffledPixels, 4));
  EXPECT_NE(SequenceOf(IterateOrder::kShuffledPixels, 4),
            SequenceOf(IterateOrder::kShuffledPixels, 5));
}

TEST(IterateTest, ErrorStopsThePassAndIsHandedOn) {
  for (const IterateOrder order : kOrders) {
    for (const int threads : {1, 2}) {
      WorldBuffer world(64, 64, false);
      Visits visits;
      visits.destination = &world;
      visits.counts = std::vector<std::atomic<int>>(64 * 64);
      visits.failAt = 70;
      PassSettings settings;
      settings.order = order;
      settings.threads = threads;
      ThreadPool pool;
      const PassOutcome outcome =
          RunPass(PassOver<PF_Pixel>(visits, {0, 0, 64, 64}), settings, pool, nullptr);
      EXPECT_EQ(outcome.error, 99);
      EXPECT_FALSE(outcome.threw);
      // With one thread nothing is visited behind the failing pixel.
      if (threads == 1) {
        EXPECT_EQ(visits.total.load(), 71);
      }
    }
  }
}

TEST(IterateTest, CancelStopsWith517) {
  std::atomic<bool> cancel = false;
  WorldBuffer world(8, 8, false);
  PixelPass<PF_Pixel> pass;
  pass.destination = ViewOf(world);
  pass.area = {0, 0, 8, 8};
  pass.refcon = &cancel;
  pass.function = [](void* refcon, A_long, A_long y, PF_Pixel*, PF_Pixel* out) -> PF_Err {
    if (y == 3) *static_cast<std::atomic<bool>*>(refcon) = true;
    out->red = 1;
    return PF_Err_NONE;
  };
  world.FillBytes(0);
  PassSettings settings;
  settings.cancel = &cancel;
  ThreadPool pool;
  EXPECT_EQ(RunPass(pass, settings, pool, nullptr).error, PF_Interrupt_CANCEL);
  EXPECT_EQ(world.At8(7, 3).red, 1);
  EXPECT_EQ(world.At8(0, 4).red, 0);
}

TEST(IterateTest, ExceptionOfTheFunctionIsCaught) {
  WorldBuffer world(4, 4, true);
  PixelPass<PF_Pixel16> pass;
  pass.destination = ViewOf(world);
  pass.area = {0, 0, 4, 4};
  pass.function = [](void*, A_long, A_long, PF_Pixel16*, PF_Pixel16*) -> PF_Err {
    throw std::runtime_error("thrown by a pixel");
  };
  PassSettings settings;
  settings.threads = 2;
  ThreadPool pool;
  const PassOutcome outcome = RunPass(pass, settings, pool, nullptr);
  EXPECT_TRUE(outcome.threw);
  EXPECT_EQ(outcome.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST(IterateTest, ProgressCountsRowsUpToTheEnd) {
  for (const IterateOrder order : kOrders) {
    std::vector<A_long> done;
    WorldBuffer world(5, 40, false);
    PixelPass<PF_Pixel> pass;
    pass.destination = ViewOf(world);
    pass.area = {0, 0, 5, 40};
    pass.function = [](void*, A_long, A_long, PF_Pixel*, PF_Pixel*) -> PF_Err { return 0; };
    PassSettings settings;
    settings.order = order;
    settings.progress = [&](A_long rows, A_long total) {
      EXPECT_EQ(total, 40);
      done.push_back(rows);
    };
    ThreadPool pool;
    (void)RunPass(pass, settings, pool, nullptr);
    EXPECT_TRUE(std::is_sorted(done.begin(), done.end()));
    EXPECT_EQ(done.back(), 40);
  }
}

TEST(ThreadPoolTest, RoundsOfChangingSizeRunEveryNumberOnce) {
  ThreadPool pool;
  for (int round = 0; round < 200; ++round) {
    const int threads = 1 + round % 5;
    std::array<std::atomic<int>, 5> runs{};
    pool.Run(threads, [&](int worker) { runs[static_cast<std::size_t>(worker)].fetch_add(1); });
    for (int worker = 0; worker < 5; ++worker) {
      ASSERT_EQ(runs[static_cast<std::size_t>(worker)].load(), worker < threads ? 1 : 0);
    }
  }
}

TEST(ThreadPoolTest, RoundInsideARoundRunsAlone) {
  ThreadPool pool;
  std::atomic<int> inner{0};
  pool.Run(2, [&](int) { pool.Run(3, [&](int) { inner.fetch_add(1); }); });
  EXPECT_EQ(inner.load(), 6);
}

}  // namespace
}  // namespace vitrell::headless
