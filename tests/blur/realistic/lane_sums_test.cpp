// Every vector width of the realistic blur's sums against the plain sums, tap by tap, bit by bit.
#include "blur/realistic/lane_sums.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "blur/realistic/iris_kernel.h"
#include "blur/realistic/tap_sums.h"
#include "host/fake_host.h"
#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint32_t kSeed = 20261121;

class LaneEnginesTest : public LaneTargetTest {
 protected:
  void SetUp() override {
    engine_ = EngineFor<IrisEngine>(GetParam());
    VITRELL_SKIP_WITHOUT(engine_);
    ASSERT_GT(engine_->lanes, 0);
    ASSERT_LE(engine_->lanes, kMaxLanes);
  }

  // A picture with dark, bright and transparent pixels.
  void MakePicture(std::int32_t width, std::int32_t height) {
    pixels_.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (PF_Pixel& pixel : pixels_) {
      const auto byte = [this] { return static_cast<std::uint8_t>(random_() & 255U); };
      pixel = {static_cast<std::uint8_t>(random_() % 4 == 0 ? 0 : byte()), byte(), byte(), byte()};
    }
    world_ = {};
    world_.data = pixels_.data();
    world_.width = width;
    world_.height = height;
    world_.rowbytes = width * static_cast<std::int32_t>(sizeof(PF_Pixel));
    world_.extent_hint = {0, 0, width, height};
  }

  IrisKernel MakeKernel(std::int32_t radius, Buffer<Weight_Pt>* points) {
    LX_Info info = {};
    info.irisSides = 3;
    info.irisRoundness = 0.37F;
    info.irisAspectRatio = 1.5F;
    info.irisRotation = 0.4;
    const IrisShape shape = MakeIrisShape(info, host_.inData()->utils->ansi);
    IrisKernelBuilder builder(shape, ReachBetween(world_, world_));
    IrisKernel kernel;
    EXPECT_TRUE(builder.Build(radius, TapChoice::kNonZero, &kernel, points));
    return kernel;
  }

  static void ExpectSameBits(const TapSums& expected, const TapSums& actual,
                             const std::string& where) {
    const auto bits = [](float value) { return std::bit_cast<std::uint32_t>(value); };
    EXPECT_EQ(bits(expected.red), bits(actual.red)) << where;
    EXPECT_EQ(bits(expected.green), bits(actual.green)) << where;
    EXPECT_EQ(bits(expected.blue), bits(actual.blue)) << where;
    EXPECT_EQ(bits(expected.weight), bits(actual.weight)) << where;
  }

  static std::string Where(std::int64_t row, std::int64_t column, int lane) {
    return "seed " + std::to_string(kSeed) + " row " + std::to_string(row) + " column " +
           std::to_string(column) + " lane " + std::to_string(lane);
  }

  FakeHost host_;
  std::mt19937 random_{kSeed};
  std::vector<PF_Pixel> pixels_;
  PF_LayerDef world_ = {};
  const IrisEngine* engine_ = nullptr;
};

// Lanes along a row, as the lens-mapped mode uses them.
TEST_P(LaneEnginesTest, KernelSumsEqualThePlainOnes) {
  MakePicture(71, 23);
  HighlightMap map;
  ASSERT_TRUE(map.Build(host_.inData(), world_, PlaneOrder::kRowMajor, MapUse::kByMask));
  for (const std::int32_t radius : {0, 1, 2, 5, 13, 30}) {
    const IrisKernel kernel = MakeKernel(radius, nullptr);
    for (std::int64_t row = 0; row < map.height(); row += 3) {
      for (std::int64_t column = 0; column < map.width(); column += 7) {
        const LaneView view = {map.origin(), row * map.rowStride() + column, map.planeStride(), 1,
                               map.rowStride()};
        const LaneWindow window = {1 - engine_->lanes - column, map.width() - 1 - column, -row,
                                   map.height() - 1 - row};
        LaneSums sums;
        engine_->sumKernel(view, window, kernel, &sums);
        for (int lane = 0; lane < engine_->lanes && column + lane < map.width(); ++lane) {
          ExpectSameBits(SumKernel(map, kernel, row, column + lane), sums.Lane(lane),
                         Where(row, column, lane));
        }
      }
    }
  }
}

// Rows of lanes, down to the last ones, of which some lie outside the map: with one kernel, and
// with many.
TEST_P(LaneEnginesTest, RowsOfKernelsEqualThePlainOnes) {
  MakePicture(71, 23);
  HighlightMap map;
  ASSERT_TRUE(map.Build(host_.inData(), world_, PlaneOrder::kRowMajor, MapUse::kByMask));
  ASSERT_LE(engine_->rowCount, kMaxLaneRows);
  ASSERT_LE(engine_->rowLanes, engine_->lanes);
  std::vector<IrisKernel> kernels;
  for (const std::int32_t radius : {0, 1, 2, 3, 9, 10, 11, 17, 30}) {
    kernels.push_back(MakeKernel(radius, nullptr));
  }
  for (std::int64_t row = 0; row < map.height(); ++row) {
    for (std::int64_t column = 0; column < map.width(); column += 3) {
      const std::int64_t place = row * map.width() + column;
      const std::size_t firstKernel = random_() % kernels.size();
      const std::size_t kernelCount = place % 2 == 0 ? 1 : 1 + random_() % 3;
      LaneGroup groups[kMaxLaneRows][kMaxLanes];
      LaneRow rows[kMaxLaneRows];
      for (int i = 0; i < kMaxLaneRows; ++i) {
        rows[i] = {groups[i], 0};
        for (int lane = 0; lane < engine_->rowLanes;) {
          const int step = place % 4 == 0 ? kMaxLanes : 1 + static_cast<int>(random_() % 5);
          const int end = std::min(engine_->rowLanes, lane + step);
          const std::size_t kernel = firstKernel + random_() % kernelCount;
          groups[i][rows[i].groupCount++] = {&kernels[kernel % kernels.size()], lane, end};
          lane = end;
        }
      }
      const LaneView view = {map.origin(), row * map.rowStride() + column, map.planeStride(), 1,
                             map.rowStride()};
      const LaneWindow window = {1 - engine_->lanes - column, map.width() - 1 - column, -row,
                                 map.height() - 1 - row};
      LaneSums sums[kMaxLaneRows];
      engine_->sumRows(view, window, rows, sums);
      for (std::int64_t i = 0; i < engine_->rowCount && row + i < map.height(); ++i) {
        for (int g = 0; g < rows[i].groupCount; ++g) {
          for (int lane = groups[i][g].firstLane;
               lane < groups[i][g].endLane && column + lane < map.width(); ++lane) {
            ExpectSameBits(SumKernel(map, *groups[i][g].kernel, row + i, column + lane),
                           sums[i].Lane(lane), Where(row + i, column, lane));
          }
        }
      }
    }
  }
}

// Lanes down a column, as the uniform mode uses them: a step to the right of every lane's window.
TEST_P(LaneEnginesTest, StepsToTheRightEqualThePlainOnes) {
  MakePicture(37, 41);
  HighlightMap map;
  ASSERT_TRUE(map.Build(host_.inData(), world_, PlaneOrder::kColumnMajor, MapUse::kUniform));
  Buffer<Weight_Pt> points;
  const IrisKernel kernel = MakeKernel(6, &points);
  std::vector<LaneTap> taps;
  for (const Weight_Pt& point : points) {
    taps.push_back({point.x * map.columnStride() + point.y, point.x, point.weight});
  }
  constexpr std::int64_t kFirstRow = 6;  // Every tap of lane 0 stays below the map's first row.
  std::vector<TapSums> plain(static_cast<std::size_t>(engine_->lanes));
  LaneSums sums;
  for (int lane = 0; lane < engine_->lanes; ++lane) {
    plain[static_cast<std::size_t>(lane)] = SumKernel(map, kernel, kFirstRow + lane, 0);
    LaneSums one;
    one.red[lane] = plain[static_cast<std::size_t>(lane)].red;
    one.green[lane] = plain[static_cast<std::size_t>(lane)].green;
    one.blue[lane] = plain[static_cast<std::size_t>(lane)].blue;
    one.weight[lane] = plain[static_cast<std::size_t>(lane)].weight;
    sums.SetLane(lane, one);
  }
  for (std::int64_t column = 1; column < map.width(); ++column) {
    const LaneView view = {map.origin(), kFirstRow + column * map.columnStride(), map.planeStride(),
                           map.columnStride(), 1};
    const LaneWindow window = {-column, map.width() - 1 - column, -64, 64};
    engine_->addTaps(view, window, taps.data(), taps.data() + taps.size(), &sums);
    for (int lane = 0; lane < engine_->lanes; ++lane) {
      TapSums& expected = plain[static_cast<std::size_t>(lane)];
      for (const Weight_Pt& point : points) {
        const std::int64_t tapRow = kFirstRow + lane + point.y;
        const std::int64_t tapColumn = column + point.x;
        if (tapRow >= 0 && tapRow < map.height() && tapColumn >= 0 && tapColumn < map.width()) {
          expected.Add(map.origin() + tapRow + tapColumn * map.columnStride(), map.planeStride(),
                       point.weight);
        }
      }
      ExpectSameBits(expected, sums.Lane(lane), Where(kFirstRow, column, lane));
    }
  }
}

VITRELL_FOR_LANE_TARGETS(LaneEnginesTest, LaneTarget::kBaseline, LaneTarget::kAvx2,
                         LaneTarget::kAvx512);

}  // namespace
}  // namespace vitrell
