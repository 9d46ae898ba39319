// The bilinear samples of many points against those of one point, each vector width on its own.
#include "blur/optical/bilinear_samples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "base/pixel_access.h"
#include "host/picture.h"
#include "simd/lane_targets.h"

namespace vitrell {
namespace {

constexpr std::uint64_t kSeed = 20261121;

class BilinearSamplesTest : public LaneTargetTest {
 protected:
  // Points within, on and far beyond the picture, whole numbers and their neighbours among them.
  template <typename Pixel>
  static void ExpectSamplesOfOnePoint(A_long width, A_long height) {
    const BilinearEngine<Pixel>* const engine = EngineFor<BilinearEngine<Pixel>>(GetParam());
    VITRELL_SKIP_WITHOUT(engine);
    std::mt19937_64 random(kSeed);
    Picture<Pixel> src(width, height);
    src.FillNoise(kSeed);
    Picture<Pixel> in(DistortedPixels::kCapacity, 1);
    in.FillNoise(kSeed + 1);
    const auto coordinate = [&](A_long size) {
      const double within = static_cast<double>(random() >> 11) * 0x1p-53 * size;
      const double whole = static_cast<double>(random() % static_cast<std::uint64_t>(size + 2)) - 1;
      const double choices[] = {within,        within,        whole,
                                whole + 1e-12, whole - 1e-12, 3 * within - size};
      return choices[random() % 6];
    };
    for (int round = 0; round < 40; ++round) {
      DistortedPixels pixels;
      for (std::int32_t x = 0; x < DistortedPixels::kCapacity; ++x) {
        if (random() % 4 != 0) {
          pixels.x[pixels.count] = x;
          pixels.sources[pixels.count++] = {coordinate(height), coordinate(width)};
        }
      }
      Picture<Pixel> expected(DistortedPixels::kCapacity, 1);
      expected.FillNoise(kSeed + 2);
      Picture<Pixel> out = expected;
      for (int i = 0; i < pixels.count; ++i) {
        Pixel* const pixel = &expected.At(pixels.x[i], 0);
        GetPointerFromDataDP<Pixel>(src.get(), pixels.sources[i].row, pixels.sources[i].column,
                                    pixel, 1);
        pixel->alpha = in.At(pixels.x[i], 0).alpha;
      }
      engine->sample(*src.get(), pixels, &in.At(0, 0), &out.At(0, 0));
      for (std::int32_t x = 0; x < DistortedPixels::kCapacity; ++x) {
        ASSERT_EQ(out.At(x, 0), expected.At(x, 0))
            << width << "x" << height << " round " << round << " pixel " << x << " seed " << kSeed;
      }
    }
  }

  template <typename Pixel>
  static void ExpectForAllSizes() {
    for (const auto& [width, height] :
         {std::pair{1, 1}, {1, 7}, {7, 1}, {2, 2}, {3, 3}, {4, 5}, {33, 17}}) {
      ExpectSamplesOfOnePoint<Pixel>(width, height);
    }
  }
};

TEST_P(BilinearSamplesTest, ShallowSamplesEqualThoseOfOnePoint) { ExpectForAllSizes<PF_Pixel>(); }

TEST_P(BilinearSamplesTest, DeepSamplesEqualThoseOfOnePoint) { ExpectForAllSizes<PF_Pixel16>(); }

VITRELL_FOR_LANE_TARGETS(BilinearSamplesTest, LaneTarget::kBaseline, LaneTarget::kAvx2);

}  // namespace
}  // namespace vitrell
