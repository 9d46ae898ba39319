// Every vector width of the running sums: sums against plain ones, averages against the sums in the
// taps' order, above all where a quotient lies next to an integer, and whole pictures against the
// literal version.
#include "blur/directional/running_line_sums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "blur/directional/running_line.h"
#include "blur/directional/running_line_strips.h"
#include "host/fake_host.h"
#include "host/picture.h"
#include "lens/test_mask.h"
#include "literal/blur/directional/directional_blur.h"
#include "literal/blur/directional/line_taps.h"
#include "literal/picture.h"
#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint32_t kSeed = 20261123;

// A plane of pixels with room for a block's lines in every direction.
class PixelPlane {
 public:
  PixelPlane(std::int32_t width, std::int32_t height)
      : width_(width),
        bytes_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {
    for (std::int32_t row = 0; row < height; ++row) {
      rows_.push_back(std::ptrdiff_t{row} * width * 4);
    }
  }

  std::uint8_t& At(std::int32_t x, std::int32_t y, int channel) {
    return bytes_[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(x)) *
                      4 +
                  static_cast<std::size_t>(channel)];
  }

  LinePixels Line(std::int32_t x, std::int32_t y, const RunningLine& line) const {
    return {bytes_.data() + std::ptrdiff_t{x} * 4, rows_.data() + y,
            std::ptrdiff_t{line.columnStep} * 4, line.rowStep, line.length};
  }

 private:
  std::int32_t width_;
  std::vector<std::uint8_t> bytes_;
  std::vector<std::ptrdiff_t> rows_;
};

class RunningSumsTest : public LaneTargetTest {
 protected:
  void SetUp() override {
    engine_ = EngineFor<RunningEngine>(GetParam());
    VITRELL_SKIP_WITHOUT(engine_);
    ASSERT_LE(engine_->groupPixels * kChannels, kMaxGroupValues);
    ASSERT_EQ(kRunPixels % engine_->groupPixels, 0);
  }

  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  void FillPlane(PixelPlane* plane, std::int32_t width, std::int32_t height) {
    for (std::int32_t y = 0; y < height; ++y) {
      for (std::int32_t x = 0; x < width; ++x) {
        const bool isOpaque = Below(9) > 0;
        plane->At(x, y, 0) = isOpaque ? 1 : 0;
        for (int channel = 1; channel < kChannels; ++channel) {
          plane->At(x, y, channel) = static_cast<std::uint8_t>(isOpaque ? Below(256) : 0);
        }
      }
    }
  }

  bool IsUndecided(std::uint64_t undecided, int pixel) const {
    return ((undecided >> (pixel / engine_->groupPixels)) & 1) != 0;
  }

  const RunningEngine* engine_ = nullptr;
  std::mt19937 random_{kSeed};
};

std::int32_t PlainSum(PixelPlane* plane, std::int32_t x, std::int32_t y, int channel,
                      const RunningLine& line) {
  std::int32_t sum = 0;
  for (std::int32_t d = 1 - line.length; d < line.length; ++d) {
    sum += (line.length - std::abs(d)) *
           plane->At(x + d * line.columnStep, y + d * line.rowStep, channel);
  }
  return sum;
}

TEST_P(RunningSumsTest, BlocksDownColumnsAndDiagonalsEqualPlainSums) {
  constexpr std::int32_t kWidth = 200;
  constexpr std::int32_t kHeight = 90;
  PixelPlane plane(kWidth, kHeight);
  FillPlane(&plane, kWidth, kHeight);
  for (const std::int32_t columnStep : {-1, 0, 1}) {
    for (const std::int32_t length : {1, 2, 7, 40}) {
      const RunningLine line = {length, columnStep, 1};
      std::int32_t x = 70;
      RunningSums block;
      engine_->start(plane.Line(x, length, line), &block);
      for (std::int32_t y = length; y < length + 8; ++y, x += columnStep) {
        for (int i = 0; i < kRunValues; ++i) {
          ASSERT_EQ(block.sums[i], PlainSum(&plane, x + i / 4, y, i % 4, line))
              << columnStep << " " << length << " " << y << " " << i << ", seed " << kSeed;
        }
        engine_->advance(plane.Line(x, y, line), &block);
      }
    }
  }
}

TEST_P(RunningSumsTest, BlocksAlongARowEqualPlainSums) {
  constexpr std::int32_t kWidth = 300;
  PixelPlane plane(kWidth, 3);
  FillPlane(&plane, kWidth, 3);
  for (const std::int32_t length : {1, 2, 7, 60}) {
    const RunningLine line = {length, 1, 0};
    RunningPixel pixel;
    std::int32_t sums[kRunValues];
    engine_->startPixel(plane.Line(length, 1, line), &pixel);
    for (const std::int32_t x : {length, length + kRunPixels}) {
      engine_->sumRow(plane.Line(x, 1, line), &pixel, sums);
      for (int i = 0; i < kRunValues; ++i) {
        ASSERT_EQ(sums[i], PlainSum(&plane, x + i / 4, 1, i % 4, line))
            << length << " " << x << " " << i << ", seed " << kSeed;
      }
    }
  }
}

TEST_P(RunningSumsTest, OrderedSumsEqualPlainOnes) {
  constexpr std::int32_t kWidth = 120;
  constexpr std::int32_t kHeight = 50;
  PixelPlane plane(kWidth, kHeight);
  FillPlane(&plane, kWidth, kHeight);
  std::vector<LineSumTap> taps;
  for (std::int32_t i = 0; i < 33; ++i) {
    LineSumTap tap = {Below(20), std::ptrdiff_t{Below(40)} * 4, Below(1000) / 997.0, 0, 0};
    if (SplitWeight(&tap)) {
      taps.push_back(tap);
    }
  }
  ASSERT_GT(taps.size(), 20U);
  LinePixels groups[kOrderedGroups];
  std::int32_t x[kOrderedGroups];
  std::int32_t y[kOrderedGroups];
  for (int i = 0; i < kOrderedGroups; ++i) {
    x[i] = Below(60);
    y[i] = Below(30);
    groups[i] = plane.Line(x[i], y[i], {1, 1, 1});
  }
  float sums[kOrderedGroups][kMaxGroupValues];
  engine_->sumInOrder(groups, taps.data(), taps.data() + taps.size(), sums);
  for (int i = 0; i < kOrderedGroups; ++i) {
    for (int value = 0; value < engine_->groupPixels * kChannels; ++value) {
      float expected = 0;
      for (const LineSumTap& tap : taps) {
        expected += static_cast<float>(plane.At(x[i] + value / 4 + static_cast<int>(tap.column) / 4,
                                                y[i] + static_cast<int>(tap.row), value % 4) *
                                       tap.weight);
      }
      EXPECT_EQ(sums[i][value], expected) << i << " " << value << ", seed " << kSeed;
    }
  }
}

TEST_P(RunningSumsTest, UniformGroupsAreThoseWithoutADifference) {
  constexpr std::int32_t kLength = 5;
  for (int channel = 0; channel < kChannels; ++channel) {
    for (const std::int32_t distance : {-5, -4, 0, 4, 5}) {
      PixelPlane plane(kRunPixels + 20, 11);
      for (int pixel = 0; pixel < kRunPixels; ++pixel) {
        plane.At(pixel + 10, 5 + distance, channel) = 1;
        const LinePixels line = plane.Line(10, 5, {kLength, 0, 1});
        const std::uint64_t all = ~std::uint64_t{0} >> (64 - kRunPixels / engine_->groupPixels);
        const std::uint64_t other = std::uint64_t{1} << (pixel / engine_->groupPixels);
        // The outermost taps weigh nothing.
        EXPECT_EQ(engine_->findUniform(line), std::abs(distance) == kLength ? all : all & ~other);
        plane.At(pixel + 10, 5 + distance, channel) = 0;
      }
    }
  }
}

// Lines of 64 pixels side by side, down the columns of a plane.
class EdgeLines {
 public:
  explicit EdgeLines(std::int32_t length)
      : length_(length), plane_(kRunPixels + 4, 2 * length + 2), line_{length, 0, 1} {}

  // Fills one line: noise over a part of the range, which may be brighter at either end, so that
  // partial sums grow early or late.
  void Fill(int pixel, int low, int high, int slope, int transparentIn, std::mt19937* random) {
    for (std::int32_t d = -length_; d <= length_; ++d) {
      const bool isOpaque =
          transparentIn == 0 || (*random)() % static_cast<unsigned>(transparentIn) != 0;
      plane_.At(pixel, length_ + d, 0) = isOpaque ? 1 : 0;
      for (int channel = 1; channel < kChannels; ++channel) {
        const int noise =
            low + static_cast<int>((*random)() % static_cast<unsigned>(high - low + 1));
        const int value = std::clamp(noise + slope * d * 127 / length_, 0, 255);
        plane_.At(pixel, length_ + d, channel) = static_cast<std::uint8_t>(isOpaque ? value : 0);
      }
    }
  }

  // Changes values, those of heavy taps first, until the line's sum is this far from a multiple of
  // its weights' sum, or none can be changed any more.
  void MoveTo(int pixel, int channel, int offset) {
    const std::int32_t count = Sum(pixel, 0);
    if (count == 0) {
      return;
    }
    std::int32_t change = offset - Sum(pixel, channel) % count;
    for (std::int32_t weight = length_; weight > 0; --weight) {
      for (const std::int32_t d : {weight - length_, length_ - weight}) {
        std::uint8_t& value = plane_.At(pixel, length_ + d, channel);
        if (plane_.At(pixel, length_ + d, 0) != 0) {
          const int moved = std::clamp(value + change / weight, 0, 255);
          change -= (moved - value) * weight;
          value = static_cast<std::uint8_t>(moved);
        }
      }
    }
  }

  std::int32_t Sum(int pixel, int channel) {
    return PlainSum(&plane_, pixel, length_, channel, line_);
  }

  // What the definition makes of it, with the taps in either order.
  int Ordered(int pixel, int channel, int direction) {
    float sum = 0;
    double weights = 0;
    for (std::int32_t i = -length_; i <= length_; ++i) {
      const std::int32_t d = i * direction;
      const double weight = 1 - std::sqrt(static_cast<double>(d) * d) / length_;
      if (plane_.At(pixel, length_ + d, 0) != 0) {
        sum += static_cast<float>(plane_.At(pixel, length_ + d, channel) * weight);
        weights += weight;
      }
    }
    return weights == 0 ? 0 : static_cast<int>(sum / weights);
  }

  LinePixels Line() const { return plane_.Line(0, length_, line_); }
  AverageLimits Limits() const { return line_.Limits(); }

 private:
  std::int32_t length_;
  PixelPlane plane_;
  RunningLine line_;
};

// One channel of every fourth pixel, which no engine has in the same group, lies on an integer or
// beside it; the others lie half-way between two.
void FillNextToIntegers(int channel, EdgeLines* lines, std::mt19937* random) {
  const auto below = [random](int end) {
    return static_cast<int>((*random)() % static_cast<unsigned>(end));
  };
  for (int pixel = 0; pixel < kRunPixels; ++pixel) {
    const int low = below(250);
    // Many roundings in the same direction add up where values hardly differ.
    const int high = low + (below(2) == 0 ? below(256 - low) : below(2));
    lines->Fill(pixel, low, high, below(3) - 1, below(4) == 0 ? 6 : 0, random);
    const int half = lines->Sum(pixel, 0) / 2;
    for (int other = 1; other < kChannels; ++other) {
      lines->MoveTo(pixel, other, half);
    }
    if (pixel % 4 == 0 && half > 0) {
      const int reach = std::min(half, 1 << below(16)) - 1;
      lines->MoveTo(pixel, channel, below(2 * reach + 1) - reach);
    }
  }
}

TEST_P(RunningSumsTest, DecidedAveragesEqualOrderedOnesNextToIntegers) {
  int decided = 0;
  int undecided = 0;
  int roundedAway = 0;  // How often the definition differs from the exact average.
  for (const std::int32_t length : {4, 5, 17, 64, 100, 200, 333, 1000}) {
    for (int round = 0; round < 9; ++round) {
      EdgeLines lines(length);
      FillNextToIntegers(1 + round % 3, &lines, &random_);
      RunningSums block;
      engine_->start(lines.Line(), &block);
      std::uint8_t values[kRunValues];
      const std::uint64_t bits = engine_->average(block.sums, lines.Limits(), values);
      for (int i = 1 + round % 3; i < kRunValues; i += 4 * kChannels) {
        const int pixel = i / kChannels;
        const int forth = lines.Ordered(pixel, i % kChannels, 1);
        const std::int32_t count = lines.Sum(pixel, 0);
        roundedAway += count != 0 && forth != block.sums[i] / count ? 1 : 0;
        if (IsUndecided(bits, pixel)) {
          ++undecided;
          continue;
        }
        ++decided;
        const int back = lines.Ordered(pixel, i % kChannels, -1);
        ASSERT_EQ(int{values[i]}, forth) << length << " " << i << ", seed " << kSeed;
        ASSERT_EQ(int{values[i]}, back) << length << " " << i << ", seed " << kSeed;
      }
    }
  }
  EXPECT_GT(decided, 300);
  EXPECT_GT(undecided, 300);
  EXPECT_GT(roundedAway, 50);
}

TEST_P(RunningSumsTest, TransparentLinesAreMarked) {
  EdgeLines lines(9);
  lines.Fill(5, 200, 220, 0, 1, &random_);
  lines.Fill(6, 200, 220, 0, 0, &random_);
  RunningSums block;
  engine_->start(lines.Line(), &block);
  std::uint8_t values[kRunValues];
  engine_->average(block.sums, lines.Limits(), values);
  const auto alpha = [&values](std::size_t pixel) { return int{values[pixel * 4]}; };
  EXPECT_EQ(alpha(5), 0);
  EXPECT_EQ(alpha(6), 255);
}

struct StripsCase {
  std::int32_t width;
  std::int32_t height;
  double length;
  int degrees;
  int pattern;
  bool isLensPartial;
};

literal::Pixel PatternPixel(const StripsCase& c, int x, int y, std::mt19937* random) {
  const auto below = [random](unsigned end) { return static_cast<int>((*random)() % end); };
  switch (c.pattern) {
    case 0:  // Noise.
      return literal::MakePixel(1 + below(255), below(256), below(256), below(256));
    case 1:  // Noise with transparent areas, which hold colours.
      return literal::MakePixel((x / 5 + y / 3) % 4 == 0 ? 0 : 200, below(256), below(256), 7);
    case 2:  // One colour.
      return literal::MakePixel(255, 77, 200, 255);
    case 3:  // One colour with holes.
      return literal::MakePixel((x / 9 + y / 7) % 3 == 0 ? 0 : 255, 77, 200, 255);
    case 4:  // Ramps, whose averages are integers away from the borders.
      return literal::MakePixel(255, x % 256, y % 256, (x + y) % 256);
    case 5:  // Uniform areas.
      return literal::MakePixel((x / 70) % 4 == 3 ? 0 : 255, x / 80 * 60, y / 70 * 50, 9);
    default:  // Black and white.
      return literal::MakePixel(255, below(2) * 255, below(20) == 0 ? 255 : 0, 255);
  }
}

literal::World MakeSource(const StripsCase& c, std::mt19937* random) {
  literal::World source = literal::MakeWorld(c.width, c.height);
  for (int y = 0; y < c.height; ++y) {
    for (int x = 0; x < c.width; ++x) {
      source.At(y, x) = PatternPixel(c, x, y, random);
    }
  }
  return source;
}

std::vector<double> MaskValues(const StripsCase& c) {
  std::vector<double> values;
  for (int y = 0; y < c.height; ++y) {
    for (int x = 0; x < c.width; ++x) {
      const double distance = std::hypot(x - c.width / 3, y - c.height / 2);
      values.push_back(c.isLensPartial ? std::clamp(2 - distance / 40, 0.0, 1.0) : 1.0);
    }
  }
  return values;
}

LX_Info InfoOf(double length, double degrees) {
  LX_Info info = {};
  info.directionalAmount = static_cast<float>(length);
  info.directionalAngle = degrees * std::numbers::pi / 180;
  return info;
}

literal::World Definition(const literal::World& source, const std::vector<double>& mask,
                          const LX_Info& info) {
  literal::World result = source;
  literal::DirectionalPass(
      source, result, {source.extent, mask},
      literal::DirectionalTaps(info.directionalAmount, info.directionalAngle, literal::kMaths));
  return result;
}

// What the strips make of it, in rows of the source's size; empty if there are none.
std::vector<PF_Pixel> StripsOf(const literal::World& source, const std::vector<double>& maskValues,
                               const LX_Info& info, const RunningEngine& engine) {
  Picture<PF_Pixel> picture(source.width, source.height);
  for (int y = 0; y < source.height; ++y) {
    for (int x = 0; x < source.width; ++x) {
      const auto value = [&](int i) { return static_cast<A_u_char>(source.At(y, x).channel[i]); };
      picture.At(x, y) = {value(0), value(1), value(2), value(3)};
    }
  }
  FakeHost host;
  LineTaps taps;
  EXPECT_EQ(taps.Build(host.inData(), info, true), PF_Err_NONE);
  const TestMask mask(maskValues, static_cast<std::size_t>(source.width));
  RunningLineStrips strips;
  EXPECT_EQ(strips.Prepare(*picture.get(), LensMaskView(*picture.get()), taps, engine),
            PF_Err_NONE);
  std::vector<PF_Pixel> result(strips.HasStrips() ? source.pixels.size() : 0);
  constexpr std::int32_t kRows = RunningLineStrips::kStripRows;
  for (std::int32_t row = 0; row < source.height && strips.HasStrips(); row += kRows) {
    strips.FillStrip(row, std::min(row + kRows, source.height),
                     result.data() + std::ptrdiff_t{row} * source.width);
  }
  return result;
}

// Compares the strips with the definition, and returns whether there were any.
bool ExpectDefinition(const StripsCase& c, const RunningEngine& engine, std::mt19937* random) {
  const literal::World source = MakeSource(c, random);
  const std::vector<double> mask = MaskValues(c);
  const LX_Info info = InfoOf(c.length, c.degrees);
  const literal::World expected = Definition(source, mask, info);
  const std::vector<PF_Pixel> actual = StripsOf(source, mask, info, engine);
  for (std::size_t i = 0; i < actual.size(); ++i) {
    const auto& channels = expected.pixels[i].channel;
    const PF_Pixel& pixel = actual[i];
    if (pixel.alpha != channels[0] || pixel.red != channels[1] || pixel.green != channels[2] ||
        pixel.blue != channels[3]) {
      ADD_FAILURE() << "pixel " << i << " of " << c.width << " x " << c.height << ", length "
                    << c.length << ", " << c.degrees << " degrees, pattern " << c.pattern
                    << ", seed " << kSeed;
      break;
    }
  }
  return !actual.empty();
}

TEST_P(RunningSumsTest, StripsEqualTheDefinition) {
  constexpr int kSizes[][2] = {{1, 1},  {2, 1},   {1, 2},   {3, 3},    {1, 33},  {33, 1},
                               {63, 5}, {64, 33}, {65, 31}, {131, 67}, {201, 40}};
  int turn = 0;
  int found = 0;
  for (const auto& size : kSizes) {
    for (const int degrees : {0, 45, 90, 135, 180, 225, 270, 315}) {
      for (const double length : {6.0, 7.0, 16.0, 20.0, 61.0}) {
        const StripsCase c = {size[0], size[1], length, degrees, turn % 7, turn % 2 == 1};
        found += ExpectDefinition(c, *engine_, &random_) ? 1 : 0;
        ++turn;
        ASSERT_FALSE(HasFailure());
      }
    }
  }
  EXPECT_GT(found, turn * 3 / 4);
}

VITRELL_FOR_LANE_TARGETS(RunningSumsTest, LaneTarget::kBaseline, LaneTarget::kAvx2,
                         LaneTarget::kAvx512);

TEST(RunningLineTest, RecognisesRowsColumnsAndDiagonals) {
  FakeHost host;
  const auto find = [&host](double amount, double degrees) {
    LineTaps taps;
    EXPECT_EQ(taps.Build(host.inData(), InfoOf(amount, degrees), true), PF_Err_NONE);
    return FindRunningLine(taps);
  };
  const auto expect = [](const RunningLine& line, int length, int columnStep, int rowStep) {
    EXPECT_EQ(line.length, length);
    EXPECT_EQ(line.columnStep, columnStep);
    EXPECT_EQ(line.rowStep, rowStep);
  };
  expect(find(20, 0), 20, 0, 1);
  expect(find(20, 180), 20, 0, 1);
  expect(find(20, 90), 20, 1, 0);
  expect(find(20, 270), 20, 1, 0);
  expect(find(20, 45), 14, -1, 1);
  expect(find(20, 135), 14, 1, 1);
  expect(find(20, 225), 14, -1, 1);
  // A slant, lengths that gain nothing or too much, and one whose weights are not numbers.
  expect(find(20, 10), 0, 0, 0);
  expect(find(3, 0), 0, 0, 0);
  expect(find(4, 0), 4, 0, 1);
  expect(find(2901, 90), 2901, 1, 0);
  expect(find(2902, 90), 0, 0, 0);
  expect(find(50000, 90), 0, 0, 0);
}

// 255 x the sum of the weights, length^2, must fit into 31 bits.
TEST(RunningLineTest, TheLongestLineFitsItsSums) {
  constexpr std::int64_t kLongest = kEndRunningLength - 1;
  EXPECT_LT(255 * kLongest * kLongest, std::int64_t{1} << 31);
  EXPECT_GE(255 * (kLongest + 1) * (kLongest + 1), std::int64_t{1} << 31);
}

}  // namespace
}  // namespace vitrell
