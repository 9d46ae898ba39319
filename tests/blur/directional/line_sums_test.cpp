// Every vector width of the directional blur's sums against plain sums, bit by bit, and what feeds
// them: split weights, mirrored planes and strips.
#include "blur/directional/line_sums.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "base/pixel_access.h"
#include "blur/directional/color_planes.h"
#include "pass/lazy_strips.h"
#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint32_t kSeed = 20261121;

std::string Seeded(const std::string& what) { return what + ", seed " + std::to_string(kSeed); }

std::uint32_t Bits(float value) { return std::bit_cast<std::uint32_t>(value); }
std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

// A picture of either depth with transparent pixels that still hold colours.
template <typename Pixel>
struct Picture {
  Picture(std::int32_t width, std::int32_t height, std::mt19937* random)
      : pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {
    for (Pixel& pixel : pixels) {
      const auto any = [&] { return static_cast<ChannelOf<Pixel>>((*random)()); };
      pixel = {any(), any(), any(), any()};
      if ((*random)() % 4 == 0) {
        pixel.alpha = 0;
      }
    }
    world.data = pixels.data();
    world.width = width;
    world.height = height;
    world.rowbytes = width * static_cast<std::int32_t>(sizeof(Pixel));
    world.world_flags = sizeof(Pixel) == sizeof(PF_Pixel16) ? PF_WorldFlag_DEEP : 0;
    world.extent_hint = {0, 0, width, height};
  }

  std::vector<Pixel> pixels;
  PF_LayerDef world = {};
};

class LineEnginesTest : public LaneTargetTest {
 protected:
  static constexpr std::int64_t kCount = 200;
  static constexpr std::int64_t kRows = 7;

  void SetUp() override {
    engine_ = EngineFor<LineEngine>(GetParam());
    VITRELL_SKIP_WITHOUT(engine_);
    ASSERT_GT(engine_->lanes, 0);
    ASSERT_LE(engine_->lanes, kMaxLineLanes);
    stride_ = kCount + engine_->lanes;
    for (std::int64_t row = 0; row < kRows; ++row) {
      rows_.push_back((kRows - 1 - row) * stride_);
    }
  }

  void FillPlane(std::uint32_t values) {
    plane_.resize(static_cast<std::size_t>(kRows * stride_));
    for (float& value : plane_) {
      value = static_cast<float>(random_() % values);
    }
  }

  std::vector<LineSumTap> MakeTaps(std::size_t count) {
    std::uniform_real_distribution<double> weight(0.0, 1.0);
    std::vector<LineSumTap> taps;
    while (taps.size() < count) {
      LineSumTap tap = {static_cast<std::int64_t>(random_() % kRows),
                        static_cast<std::int64_t>(random_() % kCount), weight(random_), 0, 0};
      if (SplitWeight(&tap)) {
        taps.push_back(tap);
      }
    }
    return taps;
  }

  float ValueAt(const LineSumTap& tap, std::int64_t column, int lane) const {
    const std::int64_t start = (column + tap.column) % kCount;
    return plane_[static_cast<std::size_t>(rows_[static_cast<std::size_t>(tap.row)] + start +
                                           lane)];
  }

  // Compares one of the single-precision sums, taken in two goes, with the plain one.
  void ExpectSums(bool isSplit, std::uint32_t values) {
    FillPlane(values);
    const auto sum = isSplit ? engine_->sumSplit : engine_->sum;
    for (const std::int64_t column : {0, 3, 64, 199}) {
      const std::vector<LineSumTap> taps = MakeTaps(41);
      const LineView view = {plane_.data(), rows_.data(), column, kCount};
      float sums[kMaxLineLanes] = {};
      sum(view, taps.data(), taps.data() + 17, sums);
      sum(view, taps.data() + 17, taps.data() + taps.size(), sums);
      for (int lane = 0; lane < engine_->lanes; ++lane) {
        float expected = 0;
        for (const LineSumTap& tap : taps) {
          expected +=
              static_cast<float>(static_cast<double>(ValueAt(tap, column, lane)) * tap.weight);
        }
        EXPECT_EQ(Bits(expected), Bits(sums[lane])) << Seeded("lane " + std::to_string(lane));
      }
    }
  }

  const LineEngine* engine_ = nullptr;
  std::mt19937 random_{kSeed};
  std::int64_t stride_ = 0;
  std::vector<float> plane_;
  std::vector<std::ptrdiff_t> rows_;
};

TEST_P(LineEnginesTest, SumsEqualThePlainOnes) { ExpectSums(false, 65536); }

TEST_P(LineEnginesTest, SplitSumsEqualThePlainOnes) { ExpectSums(true, 256); }

TEST_P(LineEnginesTest, WideSumsEqualThePlainOnes) {
  FillPlane(2);
  const std::vector<LineSumTap> taps = MakeTaps(37);
  const LineView view = {plane_.data(), rows_.data(), 150, kCount};
  double sums[kMaxLineLanes] = {};
  engine_->sumWide(view, taps.data(), taps.data() + taps.size(), sums);
  for (int lane = 0; lane < engine_->lanes; ++lane) {
    double expected = 0;
    for (const LineSumTap& tap : taps) {
      expected += ValueAt(tap, 150, lane) != 0.0f ? tap.weight : 0.0;
    }
    EXPECT_EQ(Bits(expected), Bits(sums[lane])) << Seeded("lane " + std::to_string(lane));
  }
}

TEST_P(LineEnginesTest, QuotientsAreTruncatedInDoublePrecision) {
  std::uniform_real_distribution<float> dividend(0.0f, 1.0e7f);
  std::uniform_real_distribution<double> divisor(0.1, 400.0);
  float sums[kMaxLineLanes];
  double divisors[kMaxLineLanes];
  for (int lane = 0; lane < kMaxLineLanes; ++lane) {
    sums[lane] = dividend(random_);
    divisors[lane] = divisor(random_);
  }
  // Just below 3 in double precision, 3 in single precision.
  sums[1] = 3.0f;
  divisors[1] = 1.0000000000000002;
  std::int32_t quotients[kMaxLineLanes];
  engine_->divide(sums, divisors, quotients);
  EXPECT_EQ(quotients[1], 2);
  for (int lane = 0; lane < engine_->lanes; ++lane) {
    const double quotient = static_cast<double>(sums[lane]) / divisors[lane];
    EXPECT_EQ(quotients[lane], static_cast<std::int32_t>(quotient)) << lane;
  }
}

VITRELL_FOR_LANE_TARGETS(LineEnginesTest, LaneTarget::kBaseline, LaneTarget::kAvx2,
                         LaneTarget::kAvx512);

TEST(SplitWeightTest, EveryShallowProductHasTheSameBits) {
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> any(0.0, 1.0);
  int found = 0;
  constexpr int kWeights = 20000;
  for (int i = 0; i < kWeights; ++i) {
    LineSumTap tap = {0, 0, i < 500 ? 1.0 - i / 499.0 : any(random), 0, 0};
    if (!SplitWeight(&tap)) {
      continue;
    }
    ++found;
    for (int value = 0; value < 256; ++value) {
      const float high = static_cast<float>(value) * tap.high;
      const float low = static_cast<float>(value) * tap.low;
      const float sum = high + low;
      ASSERT_EQ(Bits(static_cast<float>(value * tap.weight)), Bits(sum))
          << Seeded("weight " + std::to_string(tap.weight));
    }
  }
  EXPECT_GT(found, kWeights - kWeights / 100);
}

template <typename Pixel>
void ExpectMirroredPlanes(std::int32_t width, std::int32_t reach) {
  constexpr std::int64_t kLanes = 16;
  std::mt19937 random(kSeed);
  const Picture<Pixel> picture(width, 3, &random);
  ColorPlanes planes;
  ASSERT_TRUE(planes.Build(picture.world, -reach, reach, kLanes));
  EXPECT_LE(planes.count(), 2 * std::int64_t{width} - 1);
  for (std::int32_t row = 0; row < 3; ++row) {
    for (std::int32_t tap = -reach; tap <= reach; ++tap) {
      for (std::int32_t column = 0; column < width; ++column) {
        const std::int64_t first = column / kLanes * kLanes + planes.IndexOf(tap);
        const std::int64_t index =
            (first < planes.count() ? first : first - planes.count()) + column % kLanes;
        const Pixel& pixel = *GetPointerFromDataP<Pixel>(&picture.world, row, column + tap, 1);
        const bool isOpaque = pixel.alpha != 0;
        const std::ptrdiff_t at = row * planes.rowStride() + index;
        EXPECT_EQ(planes.Color(0)[at], static_cast<float>(isOpaque ? pixel.red : 0));
        EXPECT_EQ(planes.Color(1)[at], static_cast<float>(isOpaque ? pixel.green : 0));
        EXPECT_EQ(planes.Color(2)[at], static_cast<float>(isOpaque ? pixel.blue : 0));
        if (planes.HasHoles()) {
          EXPECT_EQ(planes.Opacity()[at], isOpaque ? 1.0f : 0.0f);
        } else {
          EXPECT_TRUE(isOpaque);
        }
      }
    }
  }
}

TEST(ColorPlanesTest, EveryReachedColumnIsMirrored) {
  for (const std::int32_t width : {1, 2, 3, 15, 16, 17, 33, 50}) {
    for (const std::int32_t reach : {0, 1, 2, 7, 16, 40, 123}) {
      ExpectMirroredPlanes<PF_Pixel>(width, reach);
      ExpectMirroredPlanes<PF_Pixel16>(width, reach);
    }
  }
}

TEST(LazyStripsTest, EveryStripIsFilledOnceOnAnyNumberOfThreads) {
  constexpr std::int32_t kWidth = 9;
  constexpr std::int32_t kHeight = 45;
  constexpr int kThreads = 4;
  LazyStrips<PF_Pixel16, 4> strips;
  ASSERT_TRUE(strips.Reset(kWidth, kHeight));
  int filled[kHeight] = {};
  const auto fill = [&](std::int32_t firstRow, std::int32_t endRow, PF_Pixel16* out) {
    for (std::int32_t row = firstRow; row < endRow; ++row) {
      ++filled[row];
      for (std::int32_t x = 0; x < kWidth; ++x) {
        *out++ = {1, static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(row), 0};
      }
    }
    return true;
  };
  // Rows dealt out in turn: every strip is wanted by all threads at once.
  const auto work = [&](int thread) {
    for (std::int32_t row = thread; row < kHeight; row += kThreads) {
      for (std::int32_t x = 0; x < kWidth; ++x) {
        if (const PF_Pixel16* const pixel = strips.PixelOrFill(x, row, fill)) {
          EXPECT_EQ(pixel->red, x);
          EXPECT_EQ(pixel->green, row);
        }
      }
    }
  };
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back(work, thread);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (std::int32_t row = 0; row < kHeight; ++row) {
    EXPECT_EQ(filled[row], 1) << row;
    EXPECT_NE(strips.ReadyPixel(0, row), nullptr) << row;
  }
  EXPECT_EQ(strips.ReadyPixel(-1, 0), nullptr);
  EXPECT_EQ(strips.ReadyPixel(kWidth, 0), nullptr);
  EXPECT_EQ(strips.ReadyPixel(0, kHeight), nullptr);
  EXPECT_EQ(strips.PixelOrFill(0, -1, fill), nullptr);
}

// The thread that has to wait works out another strip.
TEST(LazyStripsTest, AStripInOtherHandsLeavesTheNextOne) {
  LazyStrips<PF_Pixel, 2> strips;
  ASSERT_TRUE(strips.Reset(3, 6));
  std::vector<std::int32_t> order;
  strips.PixelOrFill(0, 0, [&](std::int32_t firstRow, std::int32_t, PF_Pixel*) {
    order.push_back(firstRow);
    EXPECT_EQ(strips.PixelOrFill(1, 1,
                                 [&](std::int32_t nextRow, std::int32_t, PF_Pixel*) {
                                   order.push_back(nextRow);
                                   return true;
                                 }),
              nullptr);
    return true;
  });
  EXPECT_EQ(order, (std::vector<std::int32_t>{0, 2}));
  EXPECT_NE(strips.ReadyPixel(1, 1), nullptr);
  EXPECT_NE(strips.ReadyPixel(2, 3), nullptr);
  EXPECT_EQ(strips.ReadyPixel(2, 4), nullptr);
}

// Nothing is lost by a fill that could not do its work.
TEST(LazyStripsTest, AStripThatWasNotFilledIsAskedForAgain) {
  LazyStrips<PF_Pixel, 2> strips;
  ASSERT_TRUE(strips.Reset(3, 3));
  int calls = 0;
  const auto decline = [&](std::int32_t, std::int32_t, PF_Pixel*) {
    ++calls;
    return false;
  };
  EXPECT_EQ(strips.PixelOrFill(1, 2, decline), nullptr);
  EXPECT_EQ(strips.PixelOrFill(1, 2, decline), nullptr);
  EXPECT_EQ(calls, 2);
  const auto fill = [](std::int32_t, std::int32_t, PF_Pixel* out) {
    out[1] = {1, 2, 3, 4};
    return true;
  };
  const PF_Pixel* const pixel = strips.PixelOrFill(1, 2, fill);
  ASSERT_NE(pixel, nullptr);
  EXPECT_EQ(pixel->red, 2);
  EXPECT_EQ(strips.ReadyPixel(1, 2), pixel);
}

// Memory of a larger pass serves a smaller one, which starts without strips.
TEST(LazyStripsTest, MemoryIsHandedOnWithoutItsStrips) {
  StripMemory<PF_Pixel> memory;
  const auto fill = [](std::int32_t, std::int32_t, PF_Pixel* out) {
    out[0] = {1, 2, 3, 4};
    return true;
  };
  LazyStrips<PF_Pixel, 1> rows;
  ASSERT_TRUE(rows.Reset(4, 4, &memory));
  const PF_Pixel* const first = rows.PixelOrFill(0, 0, fill);
  ASSERT_NE(first, nullptr);
  LazyStrips<PF_Pixel, 2, StripLines::kColumns> columns;
  ASSERT_TRUE(columns.Reset(3, 3, &memory));
  EXPECT_EQ(columns.ReadyPixel(0, 0), nullptr);
  EXPECT_EQ(columns.PixelOrFill(0, 0, fill), first);
}

}  // namespace
}  // namespace vitrell
