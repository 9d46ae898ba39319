// The running sums of weighted pixels against the loop over every tap, each vector width on its
// own.
#include "blur/fast/weighted_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "pass/lazy_strips.h"
#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint64_t kSeed = 20261121;

// Some neighbouring lines, stored position by position.
template <typename Pixel>
struct Case {
  std::int32_t count;
  std::int32_t length;
  std::int32_t radiusPx;
  bool isBlended;
  std::vector<double> weights;
  std::vector<Pixel> pixels;
  std::vector<Pixel> unblurred;

  WeightedLines Lines() const {
    const std::ptrdiff_t rowBytes = count * static_cast<std::ptrdiff_t>(sizeof(Pixel));
    return {.count = count,
            .length = length,
            .radiusPx = radiusPx,
            .weights = weights.data(),
            .pixels = reinterpret_cast<const char*>(pixels.data()),
            .unblurred = isBlended ? reinterpret_cast<const char*>(unblurred.data()) : nullptr,
            .step = count,
            .pixelStep = rowBytes,
            .unblurredStep = rowBytes};
  }

  // The loop over every tap, in double precision.
  Pixel EveryTap(std::int32_t position, std::int32_t line) const {
    const auto index = [&](std::int32_t i) { return static_cast<std::size_t>(i * count + line); };
    const double m = weights[index(position)];
    const std::int32_t reach = TruncateToInt32(radiusPx * m);
    double red = 0, green = 0, blue = 0, weightSum = 0;
    for (std::int32_t i = position - reach; i <= position + reach; ++i) {
      const bool isInside = i >= 0 && i < length;
      const double w = isInside ? weights[index(i)] : 0.0;
      const Pixel tap = isInside ? pixels[index(i)] : Pixel{};
      red += w * tap.red;
      green += w * tap.green;
      blue += w * tap.blue;
      weightSum += w;
    }
    const double t = std::min(1.0, std::max(0.0, (m * radiusPx - 1.0) * 0.25));
    const auto channel = [&](double sum, double before) {
      const double mean = sum / weightSum;
      return TruncateToChannel<ChannelOf<Pixel>>((isBlended ? before * (1 - t) + mean * t : mean) +
                                                 0.5);
    };
    const Pixel& before = unblurred[index(position)];
    return {0, channel(red, before.red), channel(green, before.green), channel(blue, before.blue)};
  }
};

struct Counts {
  std::int64_t decided = 0;
  std::int64_t undecided = 0;
};

struct Sums {
  std::vector<WeightedSums> memory;
  WeightedSums* aligned;

  explicit Sums(const WeightedLines& lines)
      : memory(static_cast<std::size_t>((lines.length + 1) * lines.count) + 1) {
    const auto address = reinterpret_cast<std::uintptr_t>(memory.data());
    aligned = reinterpret_cast<WeightedSums*>((address + 31) / 32 * 32);
  }
};

// Every pixel that the engine decides is what the loop over the taps gives.
template <typename Pixel>
void ExpectEveryTap(const WeightedEngine<Pixel>& engine, const Case<Pixel>& weighted,
                    const std::string& what, Counts* counts) {
  const WeightedLines lines = weighted.Lines();
  const Sums sums(lines);
  const Pixel untouched = {7, 7, 7, 7};
  std::vector<Pixel> out(weighted.pixels.size(), untouched);
  ASSERT_TRUE(engine.sumLines(lines, sums.aligned)) << what;
  const auto end = static_cast<std::int64_t>(out.size());
  std::int64_t next = engine.storeMeans(lines, sums.aligned, 0, out.data());
  for (std::int64_t i = 0; i < end; ++i) {
    const double m = weighted.weights[static_cast<std::size_t>(i)];
    const Pixel& pixel = out[static_cast<std::size_t>(i)];
    if (i == next) {
      ASSERT_TRUE(m > 0 && m < 1) << what << " index " << i;
      ++counts->undecided;
      next = engine.storeMeans(lines, sums.aligned, i + 1, out.data());
      ASSERT_GT(next, i) << what;
    } else if (m > 0 && m < 1) {
      ++counts->decided;
      const Pixel expected = weighted.EveryTap(static_cast<std::int32_t>(i / lines.count),
                                               static_cast<std::int32_t>(i % lines.count));
      ASSERT_EQ(pixel.red, expected.red) << what << " index " << i << " weight " << m;
      ASSERT_EQ(pixel.green, expected.green) << what << " index " << i << " weight " << m;
      ASSERT_EQ(pixel.blue, expected.blue) << what << " index " << i << " weight " << m;
    } else {
      ASSERT_EQ(pixel.red, untouched.red) << what << " index " << i;
    }
  }
  EXPECT_EQ(next, end) << what;
}

template <typename Pixel>
Case<Pixel> RandomCase(std::mt19937_64* random, int kindOfWeights, int kindOfColours) {
  const auto below = [&](std::int64_t n) {
    return static_cast<std::int32_t>((*random)() % static_cast<std::uint64_t>(n));
  };
  constexpr std::int32_t kMax = std::numeric_limits<ChannelOf<Pixel>>::max();
  Case<Pixel> weighted = {.count = 1 + below(17),
                          .length = 1 + below(140),
                          .radiusPx = 1 + below(below(4) == 0 ? 500 : 40),
                          .isBlended = below(2) == 0,
                          .weights = {},
                          .pixels = {},
                          .unblurred = {}};
  const double plateau = std::vector<double>{0.1, 0.5, 0.3, 1.0 / 3}[(*random)() % 4];
  const std::int32_t base = below(kMax);
  for (std::int32_t i = 0; i < weighted.count * weighted.length; ++i) {
    const double u = static_cast<double>((*random)() >> 11) * 0x1p-53;
    const double choices[] = {u,       u * 1e-3, u * 1e-9, u * 1e-12, 1e-300, 5e-324,
                              plateau, plateau,  1,        0,         1 - u,  u};
    weighted.weights.push_back(kindOfWeights == 0   ? u
                               : kindOfWeights == 1 ? plateau
                                                    : choices[below(12)]);
    const auto colour = [&] {
      const std::int32_t value = kindOfColours == 0   ? below(kMax + 1)
                                 : kindOfColours == 1 ? base + below(2)
                                                      : below(2) * kMax;
      return static_cast<ChannelOf<Pixel>>(value);
    };
    weighted.pixels.push_back({colour(), colour(), colour(), colour()});
    weighted.unblurred.push_back({colour(), colour(), colour(), colour()});
  }
  return weighted;
}

class WeightedLinesTest : public LaneTargetTest {
 protected:
  template <typename Pixel>
  static void ExpectRandomCases() {
    const WeightedEngine<Pixel>* const engine = EngineFor<WeightedEngine<Pixel>>(GetParam());
    VITRELL_SKIP_WITHOUT(engine);
    std::mt19937_64 random(kSeed);
    for (int kindOfWeights = 0; kindOfWeights < 3; ++kindOfWeights) {
      for (int kindOfColours = 0; kindOfColours < 3; ++kindOfColours) {
        Counts counts;
        for (int i = 0; i < 60; ++i) {
          const auto weighted = RandomCase<Pixel>(&random, kindOfWeights, kindOfColours);
          const std::string what = "weights " + std::to_string(kindOfWeights) + " colours " +
                                   std::to_string(kindOfColours) + " case " + std::to_string(i) +
                                   " seed " + std::to_string(kSeed);
          ASSERT_NO_FATAL_FAILURE(ExpectEveryTap(*engine, weighted, what, &counts));
        }
        // The means of noise are hardly ever near a half.
        if (kindOfWeights == 0 && kindOfColours == 0) {
          EXPECT_LT(counts.undecided * 500, counts.decided);
        }
      }
    }
  }
};

TEST_P(WeightedLinesTest, ShallowMeansEqualEveryTap) { ExpectRandomCases<PF_Pixel>(); }

TEST_P(WeightedLinesTest, DeepMeansEqualEveryTap) { ExpectRandomCases<PF_Pixel16>(); }

// Twenty taps of 0.1 over 10 and 11: the mean is 10.5, and whether the loop's roundings leave it
// there is not for the running sums to say.
TEST_P(WeightedLinesTest, HalvesAreLeftToTheLoop) {
  const WeightedEngine<PF_Pixel>* const engine = EngineFor<WeightedEngine<PF_Pixel>>(GetParam());
  VITRELL_SKIP_WITHOUT(engine);
  Case<PF_Pixel> halves = {1, 20, 500, false, std::vector<double>(20, 0.1), {}, {}};
  for (int i = 0; i < 20; ++i) {
    const auto colour = static_cast<std::uint8_t>(10 + i % 2);
    halves.pixels.push_back({255, colour, colour, colour});
  }
  halves.unblurred = halves.pixels;
  const Sums sums(halves.Lines());
  ASSERT_TRUE(engine->sumLines(halves.Lines(), sums.aligned));
  std::vector<PF_Pixel> out(20);
  for (std::int64_t i = 0; i < 20; ++i) {
    EXPECT_EQ(engine->storeMeans(halves.Lines(), sums.aligned, i, out.data()), i);
  }
}

TEST_P(WeightedLinesTest, OnlyWeightsFromZeroToOneAreSummed) {
  const WeightedEngine<PF_Pixel16>* const engine =
      EngineFor<WeightedEngine<PF_Pixel16>>(GetParam());
  VITRELL_SKIP_WITHOUT(engine);
  Case<PF_Pixel16> weighted = {3, 5, 2, false, std::vector<double>(15, 0.5), {}, {}};
  weighted.pixels.resize(15);
  const Sums sums(weighted.Lines());
  EXPECT_TRUE(engine->sumLines(weighted.Lines(), sums.aligned));
  for (const double wrong : {-1e-300, 1.0000001, std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity()}) {
    for (const std::size_t index : {0U, 7U, 14U}) {
      weighted.weights[index] = wrong;
      EXPECT_FALSE(engine->sumLines(weighted.Lines(), sums.aligned)) << wrong << " at " << index;
      weighted.weights[index] = 0.5;
    }
  }
}

VITRELL_FOR_LANE_TARGETS(WeightedLinesTest, LaneTarget::kBaseline, LaneTarget::kAvx2);

// Strips of two columns: rows of a strip are one image width apart in memory.
TEST(LazyStripsTest, ColumnsAreFilledStripByStrip) {
  LazyStrips<PF_Pixel, 2, StripLines::kColumns> strips;
  ASSERT_TRUE(strips.Reset(5, 3));
  int fills = 0;
  const auto fill = [&](std::int32_t first, std::int32_t end, PF_Pixel* out) {
    ++fills;
    for (std::int32_t column = first; column < end; ++column) {
      for (std::int32_t row = 0; row < 3; ++row) {
        out[row * 5 + column - first].red = static_cast<std::uint8_t>(10 * row + column);
      }
    }
    return true;
  };
  EXPECT_EQ(strips.ReadyPixel(4, 2), nullptr);
  for (std::int32_t row = 0; row < 3; ++row) {
    for (std::int32_t column = 0; column < 5; ++column) {
      const PF_Pixel* const pixel = strips.ReadyPixel(column, row) != nullptr
                                        ? strips.ReadyPixel(column, row)
                                        : strips.PixelOrFill(column, row, fill);
      ASSERT_NE(pixel, nullptr);
      EXPECT_EQ(pixel->red, 10 * row + column);
    }
  }
  EXPECT_EQ(fills, 3);
}

}  // namespace
}  // namespace vitrell
