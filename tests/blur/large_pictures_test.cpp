// The blurs at real frame sizes, with many strips and long rows, bit for bit against their
// definitions. Amounts are small, because the definitions sum every tap.
#include <gtest/gtest.h>

#include <string>

#include "blur/render_case.h"

namespace vitrell {
namespace {

struct Size {
  int width;
  int height;
  bool deep;
};

class LargePicturesTest : public testing::TestWithParam<Size> {
 protected:
  // Two threads, so that strips are computed concurrently.
  static void ExpectExact(RenderCase& c) {
    const auto [width, height, deep] = GetParam();
    const literal::World input = MakePicture(Pattern::kHoles, width, height, deep);
    c.Options().threads = 2;
    const literal::World result = c.Actual(input);
    ExpectSamePicture(c.Expected(input), result, c.Describe(input));
    EXPECT_TRUE(Differ(input, result));
  }

  // A lens in the middle, with a wide soft band.
  static void SetLens(RenderCase& c) {
    const auto [width, height, deep] = GetParam();
    c.SetCircle(width / 2, height / 2, 0.25 * height, width).Set("lens.feather", 60);
  }
};

TEST_P(LargePicturesTest, FastBlur) {
  RenderCase c;
  c.Set("fast-blur.visible", 1).Set("fast-blur.amount", 2);
  ExpectExact(c);
}

TEST_P(LargePicturesTest, FastBlurByMap) {
  RenderCase c;
  c.Set("fast-blur.visible", 1).Set("fast-blur.amount", 3).Set("fast-blur.use-lens-as-blur-map", 1);
  SetLens(c);
  ExpectExact(c);
}

TEST_P(LargePicturesTest, RealisticBlur) {
  RenderCase c;
  c.Set("realistic-blur.visible", 1).Set("realistic-blur.amount", 1);
  ExpectExact(c);
}

TEST_P(LargePicturesTest, RealisticBlurByMap) {
  RenderCase c;
  c.Set("realistic-blur.visible", 1)
      .Set("realistic-blur.amount", 2)
      .Set("realistic-blur.use-lens-as-blur-map", 1);
  SetLens(c);
  ExpectExact(c);
}

TEST_P(LargePicturesTest, DirectionalBlur) {
  RenderCase c;
  c.Set("directional-blur.visible", 1)
      .Set("directional-blur.amount", 3)
      .Set("directional-blur.direction", 30);
  SetLens(c);
  ExpectExact(c);
}

TEST_P(LargePicturesTest, OpticalDistortion) {
  RenderCase c;
  c.Set("optical-distortion.visible", 1).Set("optical-distortion.amount", 120);
  c.SetPoint("optical-distortion.center", 300, 20);
  SetLens(c);
  ExpectExact(c);
}

INSTANTIATE_TEST_SUITE_P(Sizes, LargePicturesTest,
                         testing::Values(Size{1920, 1080, false}, Size{8192, 64, true}),
                         [](const testing::TestParamInfo<Size>& size) {
                           return std::to_string(size.param.width) + "x" +
                                  std::to_string(size.param.height);
                         });

}  // namespace
}  // namespace vitrell
