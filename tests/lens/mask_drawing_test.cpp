// Whole masks against the literal ones, value by value.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/fake_host.h"
#include "lens/lens_mask.h"
#include "literal/lens/lens_mask.h"
#include "render/plan.h"

namespace vitrell {
namespace {

struct MaskCase {
  LX_Info info = {};
  A_long width = 0;
  A_long height = 0;
  PF_LRect rect = {};
};

class MaskDrawingTest : public testing::Test {
 protected:
  void TearDown() override { FreeLensMask(false); }

  template <typename T>
  T Pick(std::initializer_list<T> values) {
    return values.begin()[random_() % values.size()];
  }
  int Between(int low, int high) {
    return low + static_cast<int>(random_() % static_cast<unsigned>(high - low + 1));
  }

  MaskCase RandomCase() {
    MaskCase result;
    result.width = Between(1, 90);
    result.height = Between(1, 70);
    result.rect = {0, 0, result.width, result.height};
    if (Between(0, 3) == 0) {
      const int left = Between(-9, 9);
      const int top = Between(-9, 9);
      result.rect = {left, top, left + result.width, top + result.height};
    }
    LX_Info& info = result.info;
    info.lensType = Between(1, 5);
    info.invertAlpha = Pick<std::uint8_t>({0, 0, 1});
    info.feather = Pick({0.0F, 0.0F, 0.02F, 0.5F, 1.0F, 1.9F, 2.1F, 10.0F});
    info.positionX = Pick({0, result.width / 2, Between(-30, 120), 1000000});
    info.positionY = Pick({0, result.height / 2, Between(-30, 120), -1000000});
    info.scaleWidth = Pick({1.0F, 1.0F, 0.3F, 2.37F, 16.0F, 0.0001F, 1e-6F});
    info.scaleHeight = Pick({info.scaleWidth, 1.0F, 0.4F, 16.0F, 0.0001F});
    info.rotation = Pick({0.0, 0.0, 1.5707963267948966, 3.141592653589793, 0.7, -2.0, 40.0});
    return result;
  }

  // What the literal version makes of a case.
  literal::Mask Expected(const MaskCase& c) {
    literal::Settings settings;
    settings.lensType = c.info.lensType;
    settings.invertAlpha = c.info.invertAlpha;
    settings.feather = c.info.feather;
    settings.positionX = c.info.positionX;
    settings.positionY = c.info.positionY;
    settings.scaleWidth = c.info.scaleWidth;
    settings.scaleHeight = c.info.scaleHeight;
    settings.rotation = c.info.rotation;
    const PF_ANSICallbacks& maths = host_.inData()->utils->ansi;
    return literal::BuildLensMask(
        settings, {maths.sin, maths.cos, maths.tan, maths.atan, maths.sqrt, maths.pow},
        {c.rect.left, c.rect.top, c.rect.right, c.rect.bottom}, c.width, c.height,
        {0, 0, c.width, c.height});
  }

  void Build(const MaskCase& c) {
    PF_LayerDef output = {};
    output.width = c.width;
    output.height = c.height;
    output.extent_hint = c.rect;
    ASSERT_EQ(
        BuildLensMask(
            {.inData = host_.inData(), .output = &output, .inputExtent = {0, 0, c.width, c.height}},
            c.info, MakePlan(c.info).mask),
        PF_Err_NONE);
  }

  static std::string Describe(const MaskCase& c) {
    const LX_Info& i = c.info;
    return "type " + std::to_string(i.lensType) + " size " + std::to_string(c.width) + "x" +
           std::to_string(c.height) + " from " + std::to_string(c.rect.left) + "," +
           std::to_string(c.rect.top) + " feather " + std::to_string(i.feather) + " position " +
           std::to_string(i.positionX) + "," + std::to_string(i.positionY) + " scale " +
           std::to_string(i.scaleWidth) + "," + std::to_string(i.scaleHeight) + " rotation " +
           std::to_string(i.rotation) + " invert " + std::to_string(i.invertAlpha);
  }

  FakeHost host_;
  std::mt19937 random_{20261121};
};

bool SameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// Compares what each world of the rectangle's size and one of another size see.
TEST_F(MaskDrawingTest, RandomShapesMatchTheLiteralMask) {
  for (int i = 0; i < 3000; ++i) {
    const MaskCase c = RandomCase();
    SCOPED_TRACE("case " + std::to_string(i) + ": " + Describe(c));
    const literal::Mask expected = Expected(c);
    Build(c);
    for (const A_long more : {0, 3}) {
      PF_LayerDef world = {};
      world.extent_hint = {c.rect.left - more, c.rect.top, c.rect.right, c.rect.bottom + more};
      literal::World literalWorld;
      literalWorld.extent = {world.extent_hint.left, world.extent_hint.top, world.extent_hint.right,
                             world.extent_hint.bottom};
      const LensMaskView view(world);
      const MaskOnes ones = view.Ones();
      for (A_long y = c.rect.top - 1; y <= c.rect.bottom + more; ++y) {
        for (A_long x = c.rect.left - more - 1; x <= c.rect.right; ++x) {
          const double value = literal::GetLensMask(expected, x, y, literalWorld);
          double quick = value;
          view.QuickAt(x, y, &quick);
          ASSERT_TRUE(SameBits(view.At(x, y), value)) << x << "," << y << ": " << view.At(x, y);
          ASSERT_TRUE(SameBits(quick, value)) << x << "," << y << ": " << quick;
          ASSERT_TRUE(!ones.Contain(x, y) || value == 1) << x << "," << y;
        }
      }
    }
  }
}

// Sizes at which rows are long, mirrored parts large and a 32-bit product of the two is not: every
// shape, turned and upright, its soft band wide.
TEST_F(MaskDrawingTest, LargePicturesMatchTheLiteralMask) {
  for (const auto& [width, height] : {std::pair<A_long, A_long>{1920, 1080}, {8192, 64}}) {
    for (int lensType = kLensNone; lensType <= kLensTriangle; ++lensType) {
      MaskCase c;
      c.width = width;
      c.height = height;
      c.rect = {0, 0, width, height};
      c.info.lensType = lensType;
      c.info.feather = 0.2F;
      c.info.positionX = width / 2 + 3;
      c.info.positionY = height / 2 - 1;
      c.info.scaleWidth = 0.8F;
      c.info.scaleHeight = 0.7F;
      c.info.rotation = lensType % 2 == 0 ? 0.0 : 0.4;
      c.info.invertAlpha = height == 64 ? 1 : 0;
      SCOPED_TRACE(Describe(c));
      const literal::Mask expected = Expected(c);
      Build(c);
      PF_LayerDef world = {};
      world.extent_hint = c.rect;
      const LensMaskView view(world);
      std::size_t i = 0;
      for (A_long y = 0; y < height; ++y) {
        for (A_long x = 0; x < width; ++x) {
          ASSERT_TRUE(SameBits(view.At(x, y), expected.values[i])) << x << "," << y;
          ++i;
        }
      }
    }
  }
}

// The blurs that follow the lens read the memory itself.
TEST_F(MaskDrawingTest, AllValuesAreInMemoryWhereABlurFollowsTheLens) {
  for (int i = 0; i < 600; ++i) {
    MaskCase c = RandomCase();
    (i % 2 == 0 ? c.info.fastBlurUseLensAsBlurMap : c.info.realisticUseLensAsBlurMap) = 1;
    SCOPED_TRACE("case " + std::to_string(i) + ": " + Describe(c));
    const literal::Mask expected = Expected(c);
    Build(c);
    ASSERT_EQ(g_LensMaskSize, expected.values.size());
    ASSERT_TRUE(std::equal(expected.values.begin(), expected.values.end(), g_LensMask, SameBits));
  }
}

}  // namespace
}  // namespace vitrell
