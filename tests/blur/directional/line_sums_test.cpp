// Every vector width of the directional blur's sums against plain sums, bit by bit, and the split
// weights that feed them.
#include "blur/directional/line_sums.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint32_t kSeed = 20261121;

std::string Seeded(const std::string& what) { return what + ", seed " + std::to_string(kSeed); }

std::uint32_t Bits(float value) { return std::bit_cast<std::uint32_t>(value); }
std::uint64_t Bits(double value) { return std::bit_cast<std::uint64_t>(value); }

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

}  // namespace
}  // namespace vitrell
