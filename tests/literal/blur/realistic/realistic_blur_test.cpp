// The literal realistic blur against pictures worked out by hand.
#include "literal/blur/realistic/realistic_blur.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "literal/base/types.h"
#include "literal/picture.h"

namespace vitrell::literal {
namespace {

using ::testing::ElementsAre;

// A disc: every angle lies in the round part.
Settings DiscSettings(float amount) {
  Settings settings;
  settings.realisticVisible = 1;
  settings.realisticAmount = amount / 100.0F;
  settings.irisRoundness = 1;
  return settings;
}

World RunRealistic(const Settings& settings, const World& src, double mask = 1.0) {
  World dst = MakeWorld(src.width, src.height, MakePixel(9, 9, 9, 9));
  RealisticBlur(settings, kMaths, MakeMask(src, mask), src, dst);
  return dst;
}

TEST(LiteralRealisticBlurTest, AmountZeroCopiesInput) {
  const World src = GrayRow({10, 200, 30});
  EXPECT_EQ(Texts(RunRealistic(DiscSettings(0), src)), Texts(src));
  EXPECT_EQ(Texts(RunRealistic(DiscSettings(0.01F), src)), Texts(src));
}

TEST(LiteralRealisticBlurTest, VisibleMustBeExactlyOne) {
  const World src = GrayRow({10, 200, 30});
  Settings settings = DiscSettings(2);
  EXPECT_NE(Texts(RunRealistic(settings, src)), Texts(src));
  for (const std::uint8_t visible : {std::uint8_t{0}, std::uint8_t{2}}) {
    settings.realisticVisible = visible;
    EXPECT_EQ(Texts(RunRealistic(settings, src)), Texts(src));
  }
}

TEST(LiteralRealisticBlurTest, WeightsThatAreNoNumbersGiveBlack) {
  // At aspect ratio 0 the weights above and below the centre are NaN. In a full evaluation every
  // sum becomes NaN, which is stored as 0.
  Settings settings = DiscSettings(1);
  settings.irisAspectRatio = 0;
  const World src = MakeWorld(3, 3, Gray(100));
  EXPECT_EQ(Text(RunRealistic(settings, src).At(0, 0)), "255 0 0 0");
}

TEST(LiteralRealisticBlurTest, BrightPixelsWeighMore) {
  // Weights 1 and the root of 64 / 255: (255 + 0.500979 x 64) / 1.500979 = 191.25.
  EXPECT_THAT(Reds(RunRealistic(DiscSettings(1), GrayRow({255, 64, 0, 0}))),
              ElementsAre(191, 191, 64, 64));
}

TEST(LiteralRealisticBlurTest, KeepsResidueOfTheSlidingSumOnBlack) {
  // Weights 0.76696497 and 0.15339300. After both have been added and taken away again in single
  // precision, -1.25e-6 of colour and -2.98e-8 of weight remain.
  EXPECT_THAT(Reds(RunRealistic(DiscSettings(1), GrayRow({150, 6, 0, 0, 0, 0}))),
              ElementsAre(126, 126, 5, 42, 42, 42));
  // Here it is 1.19e-6 over -1.49e-8: -80, of which the channel keeps the low byte.
  EXPECT_EQ(Reds(RunRealistic(DiscSettings(1), GrayRow({150, 7, 0, 0, 0, 0})))[4], 176);
}

TEST(LiteralRealisticBlurTest, TransparentBlackResultStartsTheSumAnew) {
  // Added and taken away again, 100 and 44 leave no colour but a weight of 5.96e-8, which makes the
  // 6 that comes later 5.9999976. A transparent black result in between clears that weight.
  World src = GrayRow({100, 44, 0, 0, 0, 6, 0, 0});
  EXPECT_THAT(Reds(RunRealistic(DiscSettings(1), src)), ElementsAre(77, 77, 43, 0, 5, 5, 5, 5));
  src.pixels[3] = Pixel{};
  EXPECT_THAT(Reds(RunRealistic(DiscSettings(1), src)), ElementsAre(77, 77, 43, 0, 6, 6, 6, 6));
}

TEST(LiteralRealisticBlurTest, WeightlessFootprintIsBlackWhenUniform) {
  World src = MakeWorld(4, 3, MakePixel(0, 200, 100, 50));
  src.At(0, 1) = MakePixel(0, 1, 2, 3);
  const World dst = RunRealistic(DiscSettings(1), src);
  for (const Pixel& pixel : dst.pixels) EXPECT_EQ(Text(pixel), "0 0 0 0");
  const World black = RunRealistic(DiscSettings(1), MakeWorld(4, 3, MakePixel(7, 0, 0, 0)));
  for (const Pixel& pixel : black.pixels) EXPECT_EQ(Text(pixel), "7 0 0 0");
}

TEST(LiteralRealisticBlurTest, WeightlessFootprintKeepsColoursWhenMapped) {
  World src = MakeWorld(4, 3, MakePixel(0, 200, 100, 50));
  src.At(0, 1) = MakePixel(0, 1, 2, 3);
  Settings settings = DiscSettings(1);
  settings.realisticUseLensAsBlurMap = 2;  // Any value but 0.
  const World dst = RunRealistic(settings, src);
  EXPECT_EQ(Text(dst.At(0, 0)), "0 200 100 50");
  EXPECT_EQ(Text(dst.At(0, 1)), "0 1 2 3");
}

TEST(LiteralRealisticBlurTest, KeepsLastRowAndColumnCopied) {
  World src = MakeWorld(3, 3);
  for (int i = 0; i < 9; ++i) src.pixels[static_cast<std::size_t>(i)] = Gray(10 + 20 * i);
  Settings settings = DiscSettings(1);
  settings.realisticUseLensAsBlurMap = 1;
  // Kernel 0 leaves every pixel as it is; what is left is the mending.
  EXPECT_THAT(Reds(RunRealistic(settings, src, 0.0)),
              ElementsAre(10, 30, 30, 70, 90, 90, 70, 90, 90));
}

TEST(LiteralRealisticBlurTest, LoneRowsAndColumnsAreNotMended) {
  Settings settings = DiscSettings(1);
  settings.realisticUseLensAsBlurMap = 1;
  EXPECT_THAT(Reds(RunRealistic(settings, GrayRow({5, 10, 20}), 0.0)), ElementsAre(5, 10, 10));
  World column = MakeWorld(1, 3);
  column.pixels = {Gray(5), Gray(10), Gray(20)};
  EXPECT_THAT(Reds(RunRealistic(settings, column, 0.0)), ElementsAre(5, 10, 10));
  EXPECT_THAT(Reds(RunRealistic(settings, GrayRow({5}), 0.0)), ElementsAre(5));
}

TEST(LiteralRealisticBlurTest, MaskSelectsTheKernel) {
  const World src = GrayRow({255, 0, 0, 0, 0, 0, 0, 64});
  Settings settings = DiscSettings(2);
  settings.realisticUseLensAsBlurMap = 1;
  World dst = MakeWorld(8, 1);
  Mask mask = MakeMask(src, 0.0);
  // 0.4 to the power 1.5 is 0.253: 2 x 0.253 + 0.5 = 1.006 is kernel 1; 0.39 gives 0.987, kernel 0.
  mask.values = {0.0, 1.0, 1.0, 1.0, 0.4, 0.4, 0.39, 0.0};
  RealisticBlur(settings, kMaths, mask, src, dst);
  EXPECT_THAT(Reds(dst), ElementsAre(255, 255, 255, 0, 0, 0, 0, 0));
  mask.values = {0.0, 0.39, 0.4, 0.0, 0.0, 1.0, 0.4, 0.0};
  RealisticBlur(settings, kMaths, mask, src, dst);
  EXPECT_THAT(Reds(dst), ElementsAre(255, 0, 0, 0, 0, 64, 64, 64));
}

TEST(LiteralRealisticBlurTest, OutlandishMaskValuesStayWithinTheKernels) {
  const World src = GrayRow({255, 0, 0, 0});
  Settings settings = DiscSettings(2);
  settings.realisticUseLensAsBlurMap = 1;
  EXPECT_THAT(Reds(RunRealistic(settings, src, 1.9)), ElementsAre(255, 255, 255, 255));
  EXPECT_THAT(Reds(RunRealistic(settings, src, -0.9)), ElementsAre(255, 0, 0, 0));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(Reds(RunRealistic(settings, src, nan)), ElementsAre(255, 0, 0, 0));
  World dst = MakeWorld(4, 1);
  RealisticBlur(settings, kMaths, {{0, 0, 2, 1}, {1.0, 1.0}}, src, dst);
  EXPECT_THAT(Reds(dst), ElementsAre(255, 255, 0, 0));
}

}  // namespace
}  // namespace vitrell::literal
