// The literal engines against pictures worked out by hand.
#include "literal/engines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <string>

namespace vitrell::literal {
namespace {

using ::testing::ElementsAre;

constexpr double kPi = 3.141592653589793;

const Maths kMaths = {std::sin, std::cos, std::tan, std::atan, std::sqrt, std::pow};

Pixel MakePixel(int alpha, int red, int green, int blue) {
  Pixel pixel;
  pixel.channel[0] = static_cast<std::uint16_t>(alpha);
  pixel.channel[1] = static_cast<std::uint16_t>(red);
  pixel.channel[2] = static_cast<std::uint16_t>(green);
  pixel.channel[3] = static_cast<std::uint16_t>(blue);
  return pixel;
}

Pixel Gray(int value) { return MakePixel(255, value, value, value); }

World MakeWorld(int width, int height, Pixel fill = Pixel{}) {
  World world;
  world.width = width;
  world.height = height;
  world.extent = {0, 0, width, height};
  world.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), fill);
  return world;
}

World GrayRow(const std::vector<int>& values) {
  World world = MakeWorld(static_cast<int>(values.size()), 1);
  for (std::size_t i = 0; i < values.size(); ++i) world.pixels[i] = Gray(values[i]);
  return world;
}

Mask MakeMask(const World& world, double value) {
  return {world.extent, std::vector<double>(world.pixels.size(), value)};
}

std::string Text(const Pixel& p) {
  return std::to_string(p.channel[0]) + " " + std::to_string(p.channel[1]) + " " +
         std::to_string(p.channel[2]) + " " + std::to_string(p.channel[3]);
}

std::vector<std::string> Texts(const World& world) {
  std::vector<std::string> texts;
  for (const Pixel& pixel : world.pixels) texts.push_back(Text(pixel));
  return texts;
}

std::vector<int> Reds(const World& world) {
  std::vector<int> reds;
  for (const Pixel& pixel : world.pixels) reds.push_back(pixel.channel[1]);
  return reds;
}

// --- Realistic blur ---

// A disc: every angle lies in the round part.
Settings DiscSettings(float amount) {
  Settings settings;
  settings.realisticVisible = 1;
  settings.realisticAmount = amount / 100.0F;
  settings.irisRoundness = 1;
  return settings;
}

float GridAt(const std::vector<float>& grid, int radius, int x, int y) {
  const int index = (y + radius) * (2 * radius + 1) + x + radius;
  return grid.at(static_cast<std::size_t>(index));
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

TEST(LiteralRealisticBlurTest, KeepsTruncatedSinglePrecisionRadius) {
  for (const int amount : {53, 59, 105, 106, 117, 118}) {
    EXPECT_EQ(MaximumRadius(DiscSettings(static_cast<float>(amount))), amount - 1);
  }
  for (const int amount : {1, 52, 54, 100, 119, 500}) {
    EXPECT_EQ(MaximumRadius(DiscSettings(static_cast<float>(amount))), amount);
  }
}

TEST(LiteralRealisticBlurTest, RadiusZeroIsOneWeightAndTwoDifferences) {
  const std::vector<float> grid = KernelGrid(0, DiscSettings(1), kMaths);
  EXPECT_THAT(grid, ElementsAre(1.0F));
  const std::vector<WeightPoint> points = DifferencePoints(grid, 0);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0].x, -1);
  EXPECT_EQ(points[0].y, 0);
  EXPECT_EQ(points[0].weight, -1.0F);
  EXPECT_EQ(points[1].x, 0);
  EXPECT_EQ(points[1].y, 0);
  EXPECT_EQ(points[1].weight, 1.0F);
}

TEST(LiteralRealisticBlurTest, DifferencesSkipSmallStepsButNotSmallEnds) {
  const std::vector<float> grid = {0.00005F, 0.0001F, 0.5F,  //
                                   0.0F,     1.0F,    1.0F,  //
                                   0.25F,    0.25F,   0.00003F};
  const std::vector<WeightPoint> points = DifferencePoints(grid, 1);
  ASSERT_EQ(points.size(), 8U);
  const std::array<std::array<int, 2>, 8> expected = {
      {{-2, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-2, 1}, {0, 1}, {1, 1}}};
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_EQ(points[i].x, expected[i][0]) << i;
    EXPECT_EQ(points[i].y, expected[i][1]) << i;
  }
  EXPECT_EQ(points[0].weight, -0.00005F);
  EXPECT_EQ(points[1].weight, 0.0001F - 0.5F);
  EXPECT_EQ(points[3].weight, -1.0F);
  EXPECT_EQ(points[7].weight, 0.00003F);
}

TEST(LiteralRealisticBlurTest, FullRoundnessIsADiscWithARisingEdge) {
  const std::vector<float> grid = KernelGrid(2, DiscSettings(2), kMaths);
  for (const int sign : {-1, 1}) {
    EXPECT_EQ(GridAt(grid, 2, sign, 0), 1.0F);
    EXPECT_EQ(GridAt(grid, 2, sign, sign), 1.0F);
    EXPECT_EQ(GridAt(grid, 2, 0, 2 * sign), 1.0F);
    // Root of 5 less 2.0001, and root of 8 less 2.0001: the weight rises outward.
    EXPECT_FLOAT_EQ(GridAt(grid, 2, sign, 2), 0.23596798F);
    EXPECT_FLOAT_EQ(GridAt(grid, 2, 2 * sign, -1), 0.23596798F);
    EXPECT_FLOAT_EQ(GridAt(grid, 2, 2 * sign, 2), 0.82832712F);
  }
}

TEST(LiteralRealisticBlurTest, KeepsTriangleMirrored) {
  // Turned by 90 degrees the computed triangle has its side at x = -2 and its corner at x = 4; the
  // stored one has them the other way round.
  Settings settings = DiscSettings(4);
  settings.irisSides = 1;
  settings.irisRoundness = 0;
  settings.irisRotation = kPi / 2;
  const std::vector<float> grid = KernelGrid(4, settings, kMaths);
  for (int x = -4; x <= 2; ++x) EXPECT_EQ(GridAt(grid, 4, x, 0), 1.0F) << x;
  EXPECT_FLOAT_EQ(GridAt(grid, 4, 3, 0), 0.9999F);
  EXPECT_EQ(GridAt(grid, 4, 4, 0), 0.0F);
}

TEST(LiteralRealisticBlurTest, AspectAboveOneShrinksTheOtherAxisToo) {
  Settings settings = DiscSettings(4);
  settings.irisAspectRatio = 2;
  const std::vector<float> grid = KernelGrid(4, settings, kMaths);
  // Across: |x| / 2 x 2. Along: |y| x 2.
  EXPECT_EQ(GridAt(grid, 4, 4, 0), 1.0F);
  EXPECT_EQ(GridAt(grid, 4, 0, 2), 1.0F);
  EXPECT_EQ(GridAt(grid, 4, 0, 3), 0.0F);
}

TEST(LiteralRealisticBlurTest, AspectBelowOneSqueezesAcross) {
  Settings settings = DiscSettings(4);
  settings.irisAspectRatio = 0.5F;
  const std::vector<float> grid = KernelGrid(4, settings, kMaths);
  EXPECT_EQ(GridAt(grid, 4, 2, 0), 1.0F);
  EXPECT_EQ(GridAt(grid, 4, 3, 0), 0.0F);
  EXPECT_EQ(GridAt(grid, 4, 0, 4), 1.0F);
}

TEST(LiteralRealisticBlurTest, AspectZeroLeavesNoNumbersOnTheAxis) {
  Settings settings = DiscSettings(1);
  settings.irisAspectRatio = 0;
  const std::vector<float> grid = KernelGrid(1, settings, kMaths);
  EXPECT_EQ(GridAt(grid, 1, 0, 0), 1.0F);
  EXPECT_TRUE(std::isnan(GridAt(grid, 1, 0, 1)));
  EXPECT_EQ(GridAt(grid, 1, 1, 0), 0.0F);
  // In a full evaluation they spoil every sum, and what is no number is stored as 0.
  World src = MakeWorld(3, 3, Gray(100));
  EXPECT_EQ(Text(RunRealistic(settings, src).At(0, 0)), "255 0 0 0");
}

TEST(LiteralRealisticBlurTest, HighlightIsTheRootOfLuminanceTimesAlpha) {
  World src = MakeWorld(4, 1);
  src.pixels = {Gray(255), MakePixel(51, 51, 51, 51), MakePixel(0, 255, 255, 255),
                MakePixel(255, 255, 0, 0)};
  const std::vector<float> shallow = HighlightMap(src, false, kMaths);
  ASSERT_EQ(shallow.size(), 4U);
  EXPECT_FLOAT_EQ(shallow[0], 1.0F);
  EXPECT_FLOAT_EQ(shallow[1], 0.2F);
  EXPECT_EQ(shallow[2], 0.0F);
  EXPECT_FLOAT_EQ(shallow[3], 0.54680896F);  // Root of 0.299.
  src.deep = true;
  src.pixels[0] = MakePixel(32768, 32768, 32768, 32768);
  src.pixels[1] = MakePixel(16384, 16384, 16384, 16384);
  const std::vector<float> deep = HighlightMap(src, true, kMaths);
  EXPECT_FLOAT_EQ(deep[0], 1.0F);
  EXPECT_FLOAT_EQ(deep[1], 0.5F);
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

// --- Lines ---

std::vector<std::string> PointTexts(const std::vector<LinePoint>& points) {
  std::vector<std::string> texts;
  texts.reserve(points.size());
  for (const LinePoint& p : points)
    texts.push_back(std::to_string(p.x) + "," + std::to_string(p.y));
  return texts;
}

TEST(LiteralLineTest, FromAPointToItselfIsOnePoint) {
  EXPECT_THAT(PointTexts(ComputeLinePoints(3, -4, 3, -4)), ElementsAre("3,-4"));
}

TEST(LiteralLineTest, LinesByHand) {
  EXPECT_THAT(PointTexts(ComputeLinePoints(0, 0, 2, 1)), ElementsAre("0,0", "1,0", "2,1"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(2, 1, 0, 0)), ElementsAre("2,1", "1,1", "0,0"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(0, 0, 0, -2)), ElementsAre("0,0", "0,-1", "0,-2"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(1, 1, -1, -1)), ElementsAre("1,1", "0,0", "-1,-1"));
  EXPECT_THAT(PointTexts(ComputeLinePoints(1, 0, 3, 3)), ElementsAre("1,0", "2,1", "2,2", "3,3"));
}

// --- Trail ---

World RunTrail(const World& src, int cx, int cy, float amount, int distance) {
  World dst = MakeWorld(src.width, src.height);
  TrailPass(src, dst, cx, cy, amount, distance);
  return dst;
}

World MiddleRow(const std::vector<Pixel>& values) {
  World src = MakeWorld(5, 5, Gray(1));
  for (int x = 0; x < 5; ++x) src.At(2, x) = values.at(static_cast<std::size_t>(x));
  return src;
}

TEST(LiteralTrailTest, TooSmallAnAmountCopiesTheSource) {
  World src = MakeWorld(5, 4);
  for (std::size_t i = 0; i < src.pixels.size(); ++i) {
    src.pixels[i] = MakePixel(static_cast<int>(i), static_cast<int>(3 * i), 50, 9);
  }
  // 9 x 0.3 x 0.3 = 0.81.
  EXPECT_EQ(Texts(RunTrail(src, 2, 2, 0.3F, 9)), Texts(src));
  EXPECT_NE(Texts(RunTrail(src, 2, 2, 0.6F, 9)), Texts(src));
}

TEST(LiteralTrailTest, WeightsFallQuadratically) {
  const World src = MiddleRow({Gray(100), Gray(50), Gray(10), Gray(1), Gray(1)});
  const World dst = RunTrail(src, 2, 2, 1.0F, 2);
  EXPECT_EQ(Text(dst.At(2, 0)), "255 90 90 90");  // (100 + 50 / 4) / 1.25
  EXPECT_EQ(Text(dst.At(2, 1)), "255 42 42 42");  // (50 + 10 / 4) / 1.25
  EXPECT_EQ(Text(dst.At(2, 2)), "255 10 10 10");  // The centre alone.
}

TEST(LiteralTrailTest, KeepsColoursRoundedDown) {
  const World src = MiddleRow({Gray(100), Gray(54), Gray(10), Gray(1), Gray(1)});
  EXPECT_EQ(RunTrail(src, 2, 2, 1.0F, 2).At(2, 0).channel[1], 90);  // 113.5 / 1.25 = 90.8
}

TEST(LiteralTrailTest, TransparentTapsAreSkipped) {
  const World src =
      MiddleRow({Gray(100), MakePixel(0, 50, 50, 50), MakePixel(8, 10, 20, 30), Gray(1), Gray(1)});
  const World dst = RunTrail(src, 2, 2, 1.0F, 2);
  EXPECT_EQ(Text(dst.At(2, 0)), "255 100 100 100");
  EXPECT_EQ(Text(dst.At(2, 1)), "0 10 20 30");
}

TEST(LiteralTrailTest, TheFirstRayToReachAPixelSetsIt) {
  // (3, 0) goes on to (2, 0); the later ray from (4, 0) goes through (3, 0) to (2, 1).
  World src = MakeWorld(5, 4, Gray(5));
  src.At(0, 3) = Gray(100);
  src.At(0, 2) = Gray(50);
  src.At(1, 2) = Gray(200);
  EXPECT_EQ(RunTrail(src, 1, 1, 1.0F, 2).At(0, 3).channel[1], 90);
}

TEST(LiteralTrailTest, KeepsTransparentBlackResultsOpenForLaterRays) {
  World src = MakeWorld(5, 4, Gray(5));
  src.At(0, 3) = Pixel{};
  src.At(0, 2) = Pixel{};
  src.At(1, 2) = Gray(200);
  EXPECT_EQ(Text(RunTrail(src, 1, 1, 1.0F, 2).At(0, 3)), "0 200 200 200");
}

TEST(LiteralTrailTest, OnlyTransparentTapsGiveBlack) {
  const World src =
      MiddleRow({MakePixel(0, 9, 9, 9), MakePixel(0, 50, 50, 50), Gray(10), Gray(1), Gray(1)});
  EXPECT_EQ(Text(RunTrail(src, 2, 2, 1.0F, 2).At(2, 0)), "0 0 0 0");
}

TEST(LiteralTrailTest, NegativeReachTakesNoTaps) {
  World src = MakeWorld(3, 3, Gray(40));
  EXPECT_EQ(Text(RunTrail(src, 1, 1, 1.0F, -3).At(0, 0)), "255 0 0 0");
}

TEST(LiteralTrailTest, CentreOutsideASinglePixelIsFolded) {
  // The clamped centre of a 1 x 1 world is (-1, -1).
  EXPECT_EQ(Text(RunTrail(MakeWorld(1, 1, Gray(77)), -1, -1, 1.0F, 2).At(0, 0)), "255 77 77 77");
}

// --- Directional blur ---

std::vector<std::string> TapTexts(const std::vector<LineTap>& taps) {
  std::vector<std::string> texts;
  texts.reserve(taps.size());
  for (const LineTap& tap : taps) {
    texts.push_back(std::to_string(tap.x) + "," + std::to_string(tap.y));
  }
  return texts;
}

// The taps of the line to (length x cos, length x sin) of a direction, without the quarter turn.
std::vector<LineTap> TapsToward(float length, double angleRad) {
  return DirectionalTaps(length, angleRad - kPi / 2, kMaths);
}

World RunDirectional(const World& src, const std::vector<LineTap>& taps, double mask = 1.0) {
  World dst = MakeWorld(src.width, src.height, MakePixel(9, 9, 9, 9));
  DirectionalPass(src, dst, MakeMask(src, mask), taps);
  return dst;
}

TEST(LiteralDirectionalBlurTest, LengthBelowOneIsOneTap) {
  EXPECT_EQ(DirectionalTaps(0.0F, 0, kMaths).size(), 1U);
  EXPECT_EQ(DirectionalTaps(0.99F, 0, kMaths).size(), 1U);
  // A diagonal of length 1 reaches no neighbour either.
  EXPECT_EQ(DirectionalTaps(1.0F, kPi / 4, kMaths).size(), 1U);
  EXPECT_EQ(DirectionalTaps(1.0F, 0, kMaths).size(), 3U);
}

TEST(LiteralDirectionalBlurTest, EndTapsWeighNothing) {
  const std::vector<LineTap> taps = DirectionalTaps(2.9F, 0, kMaths);
  EXPECT_THAT(TapTexts(taps), ElementsAre("0,-2", "0,-1", "0,0", "0,1", "0,2"));
  const std::array<double, 5> weights = {0.0, 0.5, 1.0, 0.5, 0.0};
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(taps[i].weight, weights[i]);
}

TEST(LiteralDirectionalBlurTest, SlantedLinesByHand) {
  EXPECT_THAT(TapTexts(TapsToward(3, 0.6)),  // To (2, 1).
              ElementsAre("-2,-1", "-1,-1", "0,0", "1,0", "2,1"));
  EXPECT_THAT(TapTexts(TapsToward(4, 1.2)),  // To (1, 3).
              ElementsAre("-1,-3", "-1,-2", "0,-1", "0,0", "0,1", "1,2", "1,3"));
  EXPECT_THAT(TapTexts(TapsToward(2, kPi + 0.1)),  // To (-1, 0).
              ElementsAre("1,0", "0,0", "-1,0"));
}

TEST(LiteralDirectionalBlurTest, AveragesDownTheLine) {
  World src = MakeWorld(1, 3);
  src.pixels = {MakePixel(10, 100, 3, 0), MakePixel(20, 200, 4, 0), MakePixel(30, 50, 6, 0)};
  const World dst = RunDirectional(src, DirectionalTaps(2, 0, kMaths));
  // (100 / 2 + 200 + 50 / 2) / 2 = 137.5 and (1.5 + 4 + 3) / 2 = 4.25; alpha stays.
  EXPECT_EQ(Text(dst.At(1, 0)), "20 137 4 0");
  // Row -1 reads row 1, row 3 reads row 2.
  EXPECT_EQ(Text(dst.At(0, 0)), "10 150 3 0");
  EXPECT_EQ(Text(dst.At(2, 0)), "30 87 5 0");
}

TEST(LiteralDirectionalBlurTest, TransparentTapsAreSkipped) {
  World src = MakeWorld(1, 3);
  src.pixels = {MakePixel(0, 100, 0, 0), MakePixel(20, 200, 0, 0), MakePixel(30, 50, 0, 0)};
  const World dst = RunDirectional(src, DirectionalTaps(2, 0, kMaths));
  EXPECT_EQ(Text(dst.At(1, 0)), "20 150 0 0");  // (200 + 25) / 1.5
  EXPECT_EQ(Text(dst.At(0, 0)), "0 200 0 0");
}

TEST(LiteralDirectionalBlurTest, OnlyTransparentOrWeightlessTapsLeaveThePixel) {
  World src = MakeWorld(1, 5);
  src.pixels = {Gray(200), MakePixel(0, 1, 2, 3), MakePixel(0, 4, 5, 6), MakePixel(0, 7, 8, 9),
                Gray(90)};
  const World dst = RunDirectional(src, DirectionalTaps(2, 0, kMaths));
  EXPECT_EQ(Text(dst.At(2, 0)), "0 4 5 6");
  EXPECT_EQ(Text(dst.At(1, 0)), "0 200 200 200");
}

TEST(LiteralDirectionalBlurTest, MaskGatesWithoutScaling) {
  World src = MakeWorld(1, 3);
  src.pixels = {Gray(100), Gray(200), Gray(50)};
  const std::vector<LineTap> taps = DirectionalTaps(2, 0, kMaths);
  EXPECT_EQ(Texts(RunDirectional(src, taps, 0.0001)), Texts(src));
  EXPECT_THAT(Reds(RunDirectional(src, taps, 0.00011)), ElementsAre(150, 137, 87));
  EXPECT_EQ(Texts(RunDirectional(src, {}, 1.0)), Texts(src));
}

TEST(LiteralDirectionalBlurTest, KeepsWrappedLengths) {
  // The square of 65536 wraps to 0, that of 50000 to a negative number: no weight is a number.
  const std::vector<LineTap> whole = DirectionalTaps(65536, 0, kMaths);
  EXPECT_EQ(whole.size(), 131073U);
  EXPECT_TRUE(std::isnan(whole[65536].weight));
  EXPECT_EQ(whole[65537].weight, -std::numeric_limits<double>::infinity());
  const std::vector<LineTap> part = DirectionalTaps(50000, 0, kMaths);
  EXPECT_TRUE(std::isnan(part[50000].weight));
  EXPECT_TRUE(std::isnan(part[50001].weight));
  const std::vector<LineTap> longest = DirectionalTaps(46340, 0, kMaths);
  EXPECT_EQ(longest[46340].weight, 1.0);
  EXPECT_EQ(longest[0].weight, 0.0);
  World src = MakeWorld(1, 3, Gray(40));
  EXPECT_EQ(Text(RunDirectional(src, {{0, 0, part[50000].weight}}).At(0, 0)), "255 0 0 0");
}

// --- Optical distortion ---

World RunOptical(const World& src, int cx, int cy, double focalLength, double mask = 1.0) {
  World dst = MakeWorld(src.width, src.height, MakePixel(9, 9, 9, 9));
  OpticalPass(src, dst, MakeMask(src, mask), kMaths, cx, cy, focalLength);
  return dst;
}

World Ramp(int width, int height) {
  World src = MakeWorld(width, height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) src.At(y, x) = MakePixel(1 + 10 * y + x, 23 * x, 31 * y, 7);
  }
  return src;
}

TEST(LiteralOpticalDistortionTest, SamplesNearerToTheCentre) {
  // At distance 4 with focal length 3 the root is 0.8: the sample lies 2.4 pixels from the centre.
  World src = Ramp(8, 4);
  src.At(2, 4) = MakePixel(99, 100, 0, 0);
  src.At(2, 5) = MakePixel(98, 203, 0, 0);
  EXPECT_EQ(Text(RunOptical(src, 2, 2, 3.0).At(2, 6)), "27 141 0 0");  // 60 + 81.2, alpha stays.
}

TEST(LiteralOpticalDistortionTest, CentrePixelIsCopied) {
  const World src = Ramp(7, 5);
  const World dst = RunOptical(src, 3, 2, 2.0);
  EXPECT_EQ(Text(dst.At(2, 3)), Text(src.At(2, 3)));
  EXPECT_NE(Text(dst.At(2, 5)), Text(src.At(2, 5)));
}

TEST(LiteralOpticalDistortionTest, OutsideTheLensNothingChanges) {
  const World src = Ramp(7, 5);
  EXPECT_EQ(Texts(RunOptical(src, 3, 2, 2.0, 0.0001)), Texts(src));
  EXPECT_EQ(Texts(RunOptical(src, 3, 2, 2.0, 0.00011)), Texts(RunOptical(src, 3, 2, 2.0, 1.0)));
}

TEST(LiteralOpticalDistortionTest, VanishingFocalLengthShowsTheCentrePixel) {
  World src = Ramp(7, 5);
  src.At(2, 3) = MakePixel(77, 1, 2, 3);
  for (const Pixel& pixel : RunOptical(src, 3, 2, 0.00009).pixels) {
    EXPECT_EQ(Text(pixel), "77 1 2 3");
  }
  // A centre outside is folded back in: row -2 is row 2, column 9 is column 4.
  src.At(2, 4) = MakePixel(5, 6, 7, 8);
  EXPECT_EQ(Text(RunOptical(src, 9, -2, 0.0).At(0, 0)), "5 6 7 8");
  EXPECT_NE(Text(RunOptical(src, 3, 2, 0.0001).At(0, 0)), "77 1 2 3");
}

TEST(LiteralOpticalDistortionTest, SamplesOutsideAreMirrored) {
  // The centre lies 4 columns left of the world. For (0, 2) at focal length 3 the sample is at
  // column -4 + 2.4 = -1.6, whose base is -2: columns -2 and -1 read 2 and 1, with a share of 0.4.
  World src = Ramp(8, 4);
  src.At(2, 1) = MakePixel(1, 203, 0, 0);
  src.At(2, 2) = MakePixel(1, 100, 0, 0);
  EXPECT_EQ(Text(RunOptical(src, -4, 2, 3.0).At(2, 0)), "21 141 0 0");
}

TEST(LiteralOpticalDistortionTest, AlphaStaysWhileColoursMove) {
  const World src = Ramp(9, 9);
  const World dst = RunOptical(src, 4, 4, 1.5);
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 9; ++x) EXPECT_EQ(dst.At(y, x).channel[0], src.At(y, x).channel[0]);
  }
  EXPECT_NE(dst.At(4, 8).channel[1], src.At(4, 8).channel[1]);
}

}  // namespace
}  // namespace vitrell::literal
