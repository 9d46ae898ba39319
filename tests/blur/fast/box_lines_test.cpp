// Window sums and their means against plain arithmetic, each vector width on its own.
#include "blur/fast/box_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "base/depth_traits.h"
#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint64_t kSeed = 20261123;
constexpr std::int32_t kGuards = 8;  // Pixels and sums behind the last one, which nobody writes.

using Sum = std::vector<U32Lanes>;

template <typename Pixel>
struct Rows {
  using Channel = ChannelOf<Pixel>;
  static constexpr std::uint32_t kMax = std::numeric_limits<Channel>::max();

  std::mt19937_64 random{kSeed};

  std::uint32_t Below(std::uint32_t end) { return static_cast<std::uint32_t>(random() % end); }
  Channel Any() {
    const std::uint32_t kind = Below(4);
    return static_cast<Channel>(kind == 0 ? kMax : kind == 1 ? 0 : Below(kMax + 1));
  }
  std::vector<Pixel> Noise(std::int32_t count) {
    std::vector<Pixel> row(static_cast<std::size_t>(count + kGuards));
    for (Pixel& pixel : row) {
      pixel = {Any(), Any(), Any(), Any()};
    }
    return row;
  }
  Sum NoiseSums(std::int32_t count, std::uint32_t end) {
    Sum sums(static_cast<std::size_t>(count + kGuards));
    for (U32Lanes& sum : sums) {
      sum = U32Lanes{Below(end), Below(end), Below(end), Below(end)};
    }
    return sums;
  }
};

template <typename Pixel>
std::uint32_t ChannelAt(const Pixel& pixel, int channel) {
  const std::uint32_t channels[4] = {pixel.alpha, pixel.red, pixel.green, pixel.blue};
  return channels[channel];
}

// The definition, in double precision.
std::uint32_t MeanOf(std::uint32_t sum, std::int32_t radiusPx) {
  return static_cast<std::uint32_t>(static_cast<double>(sum) / (2.0 * radiusPx + 1.0) + 0.5);
}

// All counts up to some blocks' rest, and the block itself.
std::vector<std::int32_t> Counts() {
  std::vector<std::int32_t> counts = {kBoxBlock - 1, kBoxBlock};
  for (std::int32_t count = 0; count <= 19; ++count) {
    counts.push_back(count);
  }
  return counts;
}

template <typename Pixel>
void ExpectMovedSums(const BoxEngine<Pixel>& engine) {
  Rows<Pixel> rows;
  for (const std::int32_t count : Counts()) {
    const std::vector<Pixel> entering = rows.Noise(count);
    const std::vector<Pixel> leaving = rows.Noise(count);
    const Sum before = rows.NoiseSums(count, 0xFFFFFFFF);
    Sum added = before;
    engine.add(entering.data(), count, added.data());
    Sum taken = before;
    engine.subtract(leaving.data(), count, taken.data());
    Sum slid = before;
    U32Lanes window = before[0];
    engine.slide(entering.data(), leaving.data(), count, &window, slid.data());
    U32Lanes expectedWindow = before[0];
    for (std::size_t i = 0; i < before.size(); ++i) {
      const bool isWritten = i < static_cast<std::size_t>(count);
      for (int channel = 0; channel < 4; ++channel) {
        const std::uint32_t in = isWritten ? ChannelAt(entering[i], channel) : 0;
        const std::uint32_t out = isWritten ? ChannelAt(leaving[i], channel) : 0;
        expectedWindow[channel] += in - out;
        ASSERT_EQ(added[i][channel], before[i][channel] + in) << count << " at " << i;
        ASSERT_EQ(taken[i][channel], before[i][channel] - out) << count << " at " << i;
        ASSERT_EQ(slid[i][channel], isWritten ? expectedWindow[channel] : before[i][channel])
            << count << " at " << i;
      }
    }
    for (int channel = 0; channel < 4; ++channel) {
      EXPECT_EQ(window[channel], expectedWindow[channel]) << count;
    }
  }
}

template <typename Pixel>
void ExpectMeans(const BoxEngine<Pixel>& engine) {
  Rows<Pixel> rows;
  for (const std::int32_t radius : {0, 1, 2, 20, 299, 4095, 4096, 4097, 16383}) {
    const auto taps = static_cast<std::uint32_t>(2 * radius + 1);
    const BoxScale scale(radius);
    for (const std::int32_t count : Counts()) {
      // Every other sum has a mean next to a half, on either side.
      Sum sums = rows.NoiseSums(count, Rows<Pixel>::kMax * taps + 1);
      for (std::size_t i = 0; i < sums.size(); i += 2) {
        for (int channel = 0; channel < 4; ++channel) {
          sums[i][channel] = rows.Below(Rows<Pixel>::kMax) * taps + taps / 2 + rows.Below(2);
        }
      }
      std::vector<Pixel> out = rows.Noise(count);
      const std::vector<Pixel> guards(out.begin() + count, out.end());
      engine.means(sums.data(), count, scale, out.data());
      for (std::int32_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        for (int channel = 0; channel < 4; ++channel) {
          ASSERT_EQ(ChannelAt(out[at], channel), MeanOf(sums[at][channel], radius))
              << "radius " << radius << " sum " << sums[at][channel];
        }
      }
      for (std::size_t i = 0; i < guards.size(); ++i) {
        ASSERT_EQ(ChannelAt(out[static_cast<std::size_t>(count) + i], 1), ChannelAt(guards[i], 1));
      }
    }
  }
}

// Down a row is a row more, a row less, and the means.
template <typename Pixel>
void ExpectAdvance(const BoxEngine<Pixel>& engine) {
  Rows<Pixel> rows;
  for (const std::int32_t radius : {1, 4096, 4097}) {
    const auto taps = static_cast<std::uint32_t>(2 * radius + 1);
    const BoxScale scale(radius);
    for (const std::int32_t count : Counts()) {
      const std::vector<Pixel> entering = rows.Noise(count);
      std::vector<Pixel> leaving = rows.Noise(count);
      Sum sums = rows.NoiseSums(count, Rows<Pixel>::kMax * (taps - 1));
      engine.add(leaving.data(), count, sums.data());
      Sum expectedSums = sums;
      engine.add(entering.data(), count, expectedSums.data());
      engine.subtract(leaving.data(), count, expectedSums.data());
      std::vector<Pixel> out = rows.Noise(count);
      std::vector<Pixel> expected = out;
      engine.means(expectedSums.data(), count, scale, expected.data());
      engine.advance(entering.data(), leaving.data(), count, scale, sums.data(), out.data());
      for (std::size_t i = 0; i < out.size(); ++i) {
        for (int channel = 0; channel < 4; ++channel) {
          ASSERT_EQ(ChannelAt(out[i], channel), ChannelAt(expected[i], channel));
          ASSERT_EQ(sums[i][channel], expectedSums[i][channel]);
        }
      }
    }
  }
}

using BoxLinesTest = LaneTargetTest;

TEST_P(BoxLinesTest, SumsMoveByPixelsThatEnterAndLeave) {
  const auto* const shallow = EngineFor<BoxEngine<PF_Pixel>>(GetParam());
  VITRELL_SKIP_WITHOUT(shallow);
  ExpectMovedSums(*shallow);
  ExpectMovedSums(*EngineFor<BoxEngine<PF_Pixel16>>(GetParam()));
}

TEST_P(BoxLinesTest, MeansAreThoseOfTheDefinition) {
  const auto* const shallow = EngineFor<BoxEngine<PF_Pixel>>(GetParam());
  VITRELL_SKIP_WITHOUT(shallow);
  ExpectMeans(*shallow);
  ExpectMeans(*EngineFor<BoxEngine<PF_Pixel16>>(GetParam()));
}

TEST_P(BoxLinesTest, AWindowAdvancesByARow) {
  const auto* const shallow = EngineFor<BoxEngine<PF_Pixel>>(GetParam());
  VITRELL_SKIP_WITHOUT(shallow);
  ExpectAdvance(*shallow);
  ExpectAdvance(*EngineFor<BoxEngine<PF_Pixel16>>(GetParam()));
}

VITRELL_FOR_LANE_TARGETS(BoxLinesTest, LaneTarget::kBaseline, LaneTarget::kAvx2,
                         LaneTarget::kAvx512);

}  // namespace
}  // namespace vitrell
