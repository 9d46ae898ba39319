// Pixels on their way to the effect and back.
#include "media/exchange.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <utility>

#include "media/original_rows.h"

namespace vitrell::media {
namespace {

using headless::WorldBuffer;

template <typename Sample>
Picture MakePicture(int width, int channels, std::vector<Sample> samples, bool straight = true) {
  Picture picture;
  const int height = static_cast<int>(samples.size()) / (width * channels);
  picture.spec = OIIO::ImageSpec(width, height, channels, OIIO::BaseTypeFromC<Sample>::value);
  picture.spec.alpha_channel = channels == 4 ? 3 : channels == 2 ? 1 : -1;
  picture.layout = FindChannels(picture.spec);
  picture.straight = straight;
  picture.samples = std::move(samples);
  return picture;
}

OutputForm FormOf(const Picture& picture, SampleType type, bool straight = true) {
  OutputForm form;
  form.type = type;
  form.straight = straight;
  form.channels.push_back({Role::kRed, picture.layout.red});
  if (!picture.layout.IsGrey()) {
    form.channels.push_back({Role::kGreen, picture.layout.green});
    form.channels.push_back({Role::kBlue, picture.layout.blue});
  }
  if (picture.layout.HasAlpha()) form.channels.push_back({Role::kAlpha, picture.layout.alpha});
  return form;
}

template <typename Sample>
std::vector<Sample> Unchanged(const Picture& picture, bool deep, const OutputForm& form) {
  const Given given = GiveToEffect(picture, deep);
  const WorldBuffer result = given.world;
  return std::get<std::vector<Sample>>(TakeFromEffect(picture, given.world, result, form));
}

// All 16-bit values, as a picture of 256 x 256.
std::vector<uint16_t> AllWords() {
  std::vector<uint16_t> words(65536);
  std::iota(words.begin(), words.end(), uint16_t{0});
  return words;
}

TEST(ExchangeTest, EightBitsArriveAsTheyAre) {
  const Given given = GiveToEffect(MakePicture<uint8_t>(1, 4, {10, 20, 30, 40}), false);
  const PF_Pixel pixel = given.world.At8(0, 0);
  EXPECT_EQ(pixel.red, 10);
  EXPECT_EQ(pixel.green, 20);
  EXPECT_EQ(pixel.blue, 30);
  EXPECT_EQ(pixel.alpha, 40);
}

TEST(ExchangeTest, SixteenBitsAreRoundedToTheNearest) {
  const Given given = GiveToEffect(MakePicture<uint16_t>(256, 1, AllWords()), true);
  for (int value = 0; value < 65536; ++value) {
    // Without ties, since 65535 is odd.
    const long nearest = std::lround(static_cast<double>(value) * 32768 / 65535);
    ASSERT_EQ(given.world.At16(value % 256, value / 256).green, nearest) << value;
    ASSERT_EQ(given.world.At16(value % 256, value / 256).alpha, 32768);
  }
}

TEST(ExchangeTest, UntouchedSixteenBitValuesComeBackAllDifferent) {
  const Picture picture = MakePicture<uint16_t>(256, 1, AllWords());
  EXPECT_EQ(Unchanged<uint16_t>(picture, true, FormOf(picture, SampleType::kWord)), AllWords());
}

TEST(ExchangeTest, ChangedSixteenBitValuesAreScaled) {
  const Picture picture = MakePicture<uint16_t>(3, 1, {1000, 1000, 1000});
  const Given given = GiveToEffect(picture, true);
  WorldBuffer result = given.world;
  result.At16(0, 0) = {32768, 32768, 32768, 32768};
  result.At16(1, 0) = {32768, 16384, 16384, 16384};
  const OutputForm form = FormOf(picture, SampleType::kWord);
  // 16384 / 32768 * 65535 = 32767.5, rounded up.
  EXPECT_EQ(std::get<std::vector<uint16_t>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<uint16_t>{65535, 32768, 1000}));
}

// Every value that the effect may give, in each depth, half steps upwards.
TEST(ExchangeTest, EveryChangedValueIsScaled) {
  constexpr int kSide = 182;  // 182 x 182 pixels hold all 32769 values.
  const Picture words = MakePicture<uint16_t>(kSide, 1, std::vector<uint16_t>(kSide * kSide, 7));
  const Given given = GiveToEffect(words, true);
  WorldBuffer result = given.world;
  for (int value = 0; value < kSide * kSide; ++value) {
    const auto channel = static_cast<A_u_short>(std::min(value, 32768));
    result.At16(value % kSide, value / kSide) = {32768, channel, channel, channel};
  }
  const auto taken = std::get<std::vector<uint16_t>>(
      TakeFromEffect(words, given.world, result, FormOf(words, SampleType::kWord)));
  for (int value = 0; value < kSide * kSide; ++value) {
    const int channel = std::min(value, 32768);
    // 7 in the file reaches the effect as 4.
    const int expected = channel == 4 ? 7 : (channel * 65535 + 16384) / 32768;
    ASSERT_EQ(taken[static_cast<std::size_t>(value)], expected) << value;
  }
}

// Straight alpha and channels that the effect does not know, beside changed and unchanged colours.
TEST(ExchangeTest, EachChannelOfIntegersIsByItself) {
  Picture picture = MakePicture<uint8_t>(2, 5, {10, 20, 30, 40, 50, 60, 70, 80, 90, 100});
  picture.spec.alpha_channel = 3;
  picture.layout = FindChannels(picture.spec);
  OutputForm form = FormOf(picture, SampleType::kByte);
  form.channels.push_back({Role::kExtra, 4});
  const Given given = GiveToEffect(picture, false);
  WorldBuffer result = given.world;
  result.At8(0, 0).green = 200;
  result.At8(1, 0).alpha = 5;
  EXPECT_EQ(std::get<std::vector<uint8_t>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<uint8_t>{10, 200, 30, 40, 50, 60, 70, 80, 5, 100}));
}

TEST(ExchangeTest, OnlyTheChangedChannelIsRounded) {
  const Picture picture = MakePicture<uint16_t>(1, 3, {1001, 1003, 1005});
  const Given given = GiveToEffect(picture, true);
  WorldBuffer result = given.world;
  result.At16(0, 0).green = 32768;
  const OutputForm form = FormOf(picture, SampleType::kWord);
  EXPECT_EQ(std::get<std::vector<uint16_t>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<uint16_t>{1001, 65535, 1005}));
}

TEST(ExchangeTest, ValuesAboveWhiteBecomeWhite) {
  const Picture picture = MakePicture<uint16_t>(1, 1, {5});
  const Given given = GiveToEffect(picture, true);
  WorldBuffer result = given.world;
  result.At16(0, 0) = {65535, 65535, 65535, 65535};
  EXPECT_EQ(std::get<std::vector<uint16_t>>(
                TakeFromEffect(picture, given.world, result, FormOf(picture, SampleType::kWord))),
            std::vector<uint16_t>{65535});
}

TEST(ExchangeTest, MultipliedColoursAreDividedAndMultiplied) {
  const Picture picture = MakePicture<uint8_t>(1, 4, {60, 30, 0, 120}, false);
  const Given given = GiveToEffect(picture, false);
  // 60 / 120 * 255 = 127.5, 30 / 120 * 255 = 63.75.
  EXPECT_EQ(given.world.At8(0, 0).red, 128);
  EXPECT_EQ(given.world.At8(0, 0).green, 64);
  EXPECT_EQ(given.world.At8(0, 0).alpha, 120);
  WorldBuffer result = given.world;
  result.At8(0, 0).green = 255;
  const OutputForm form = FormOf(picture, SampleType::kByte, false);
  EXPECT_EQ(std::get<std::vector<uint8_t>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<uint8_t>{60, 120, 0, 120}));
}

TEST(ExchangeTest, ChangedAlphaMultipliesAllColours) {
  const Picture picture = MakePicture<uint8_t>(1, 4, {120, 60, 0, 120}, false);
  const Given given = GiveToEffect(picture, false);
  WorldBuffer result = given.world;
  result.At8(0, 0).alpha = 60;
  const OutputForm form = FormOf(picture, SampleType::kByte, false);
  EXPECT_EQ(std::get<std::vector<uint8_t>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<uint8_t>{60, 30, 0, 60}));
}

TEST(ExchangeTest, EveryMultipliedPairComesBackUntouched) {
  std::vector<uint8_t> samples;
  for (int alpha = 0; alpha < 256; ++alpha) {
    for (int colour = 0; colour < 256; ++colour) {
      samples.push_back(static_cast<uint8_t>(std::min(colour, alpha)));
      samples.push_back(static_cast<uint8_t>(alpha));
    }
  }
  const Picture picture = MakePicture<uint8_t>(256, 2, samples, false);
  EXPECT_EQ(Unchanged<uint8_t>(picture, false, FormOf(picture, SampleType::kByte, false)), samples);
}

TEST(ExchangeTest, ColoursUnderZeroAlphaStay) {
  const Picture picture = MakePicture<uint8_t>(1, 4, {9, 8, 7, 0});
  EXPECT_EQ(Unchanged<uint8_t>(picture, false, FormOf(picture, SampleType::kByte)),
            (std::vector<uint8_t>{9, 8, 7, 0}));
}

TEST(ExchangeTest, FloatsAreClippedAndCounted) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const Picture picture = MakePicture<float>(5, 1, {0.25F, 3.0F, -1.0F, nan, 1.0F});
  const Given given = GiveToEffect(picture, true);
  EXPECT_EQ(given.clippedPixels, 3);
  EXPECT_EQ(given.world.At16(0, 0).red, 8192);
  EXPECT_EQ(given.world.At16(1, 0).red, 32768);
  EXPECT_EQ(given.world.At16(2, 0).red, 0);
  EXPECT_EQ(given.world.At16(3, 0).red, 0);
  WorldBuffer result = given.world;
  for (int x = 0; x < 5; ++x) --result.At16(x, 0).alpha;
  EXPECT_EQ(CountClippedAndChanged(picture, given.world, given.world), 0);
  EXPECT_EQ(CountClippedAndChanged(picture, given.world, result), 3);
  const OutputForm form = FormOf(picture, SampleType::kFloat);
  EXPECT_EQ(std::get<std::vector<float>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<float>{0.25F, 1.0F, 0.0F, 0.0F, 1.0F}));
}

// NaN too, so that bits are compared.
template <typename Sample>
bool SameBits(const std::vector<Sample>& a, const std::vector<Sample>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Sample)) == 0;
}

TEST(ExchangeTest, UntouchedPixelsKeepWhatTheEffectCannotSee) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  // Of each kind with alpha above, below and at zero, and with one that is no number.
  std::vector<float> samples;
  for (const float alpha : {1.0F, 0.25F, 0.0F, 1e-7F, -1.0F, 3.0F, kInf, nan}) {
    for (const float colour : {0.1234567F, 3.0F, 65504.0F, -2.0F, kInf, -kInf, nan, -0.0F, 1e-9F}) {
      samples.insert(samples.end(), {colour, 0.5F * alpha, -colour, alpha});
    }
  }
  for (const bool deep : {false, true}) {
    for (const bool straight : {false, true}) {
      const Picture picture = MakePicture<float>(8, 4, samples, straight);
      const OutputForm form = FormOf(picture, SampleType::kFloat, straight);
      EXPECT_TRUE(SameBits(Unchanged<float>(picture, deep, form), samples)) << deep << straight;
    }
  }
}

TEST(ExchangeTest, AClippedChannelBesideAChangedOneIsWhite) {
  const Picture picture = MakePicture<float>(2, 3, {5.0F, 0.1234567F, 2.0F, 5.0F, 0.5F, 2.0F});
  const Given given = GiveToEffect(picture, true);
  WorldBuffer result = given.world;
  result.At16(0, 0).blue = 16384;
  const OutputForm form = FormOf(picture, SampleType::kFloat);
  EXPECT_EQ(std::get<std::vector<float>>(TakeFromEffect(picture, given.world, result, form)),
            (std::vector<float>{1.0F, 0.1234567F, 0.5F, 5.0F, 0.5F, 2.0F}));
}

TEST(ExchangeTest, IntegersClipWhatFloatsHeld) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const Picture picture = MakePicture<float>(4, 1, {3.0F, -1.0F, nan, 1.0F});
  EXPECT_EQ(Unchanged<uint16_t>(picture, true, FormOf(picture, SampleType::kWord)),
            (std::vector<uint16_t>{65535, 0, 0, 65535}));
}

TEST(ExchangeTest, UntouchedFloatsKeepTheirPrecision) {
  const Picture picture = MakePicture<float>(2, 1, {0.1234567F, 1e-9F});
  EXPECT_EQ(Unchanged<float>(picture, true, FormOf(picture, SampleType::kFloat)),
            (std::vector<float>{0.1234567F, 1e-9F}));
}

TEST(ExchangeTest, EightBitsBecomeSixteenExactly) {
  std::vector<uint8_t> bytes(256);
  std::iota(bytes.begin(), bytes.end(), uint8_t{0});
  const Picture picture = MakePicture<uint8_t>(256, 1, bytes);
  const auto words = Unchanged<uint16_t>(picture, true, FormOf(picture, SampleType::kWord));
  for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(words[i], i * 257);
}

TEST(ExchangeTest, InspectFindsColourAndTransparency) {
  for (const bool deep : {false, true}) {
    const Picture picture = MakePicture<uint8_t>(2, 1, {7, 9});
    WorldBuffer world = GiveToEffect(picture, deep).world;
    EXPECT_TRUE(Inspect(world, {0, 0, 2, 1}).grey);
    EXPECT_TRUE(Inspect(world, {0, 0, 2, 1}).opaque);
    if (deep) {
      ++world.At16(1, 0).blue;
      --world.At16(0, 0).alpha;
    } else {
      ++world.At8(1, 0).blue;
      --world.At8(0, 0).alpha;
    }
    EXPECT_FALSE(Inspect(world, {0, 0, 2, 1}).grey);
    EXPECT_FALSE(Inspect(world, {0, 0, 2, 1}).opaque);
    EXPECT_TRUE(Inspect(world, {0, 0, 1, 1}).grey);
    EXPECT_TRUE(Inspect(world, {1, 0, 1, 1}).opaque);
  }
}

TEST(ExchangeTest, FindChannelsKnowsNamesAndOrder) {
  OIIO::ImageSpec spec(1, 1, 5, OIIO::TypeDesc::FLOAT);
  spec.channelnames = {"A", "B", "G", "R", "Z"};
  spec.alpha_channel = 0;
  const ChannelLayout layout = FindChannels(spec);
  EXPECT_EQ(layout.red, 3);
  EXPECT_EQ(layout.green, 2);
  EXPECT_EQ(layout.blue, 1);
  EXPECT_EQ(layout.alpha, 0);
  EXPECT_FALSE(FindChannels(OIIO::ImageSpec(1, 1, 3, OIIO::TypeDesc::UINT8)).HasAlpha());
  EXPECT_TRUE(FindChannels(OIIO::ImageSpec(1, 1, 1, OIIO::TypeDesc::UINT8)).IsGrey());
}

// Every value of the type in every channel, with some pixels changed by the effect.
template <typename Sample>
void ExpectReleasedAlike(int channels, const std::vector<SampleType>& types, bool deep) {
  const std::size_t values = std::size_t{std::numeric_limits<Sample>::max()} + 1;
  std::vector<Sample> samples;
  for (std::size_t i = 0; i < values; ++i) {
    for (int channel = 0; channel < channels; ++channel) {
      samples.push_back(static_cast<Sample>(i * static_cast<std::size_t>(channel * 2 + 1)));
    }
  }
  Picture picture = MakePicture<Sample>(static_cast<int>(values) / 16, channels, samples);
  const Given given = GiveToEffect(picture, deep);
  WorldBuffer result = given.world;
  for (int x = 3; x < picture.Width(); x += 5) {
    std::memset(result.Row(x % 16) + static_cast<std::size_t>(x) * result.PixelBytes(), 7,
                result.PixelBytes() / 2);
  }
  Picture released = picture;
  ReleaseSamples(released, given.world);
  EXPECT_TRUE(released.released.has_value());
  EXPECT_TRUE(std::get<std::vector<Sample>>(released.samples).empty());
  for (const SampleType type : types) {
    const OutputForm form = FormOf(picture, type);
    EXPECT_TRUE(TakeFromEffect(released, given.world, result, form) ==
                TakeFromEffect(picture, given.world, result, form))
        << channels << " channels";
  }
}

TEST(ExchangeTest, ReleasedSamplesAreFoundAgain) {
  for (const int channels : {1, 2, 3, 4}) {
    for (const bool deep : {false, true}) {
      ExpectReleasedAlike<uint8_t>(
          channels, {SampleType::kByte, SampleType::kWord, SampleType::kFloat}, deep);
    }
    ExpectReleasedAlike<uint16_t>(channels,
                                  {SampleType::kByte, SampleType::kWord, SampleType::kFloat}, true);
  }
}

TEST(ExchangeTest, SamplesThatCannotBeToldAreNotReleased) {
  const auto isReleased = [](Picture picture, bool deep) {
    const Given given = GiveToEffect(picture, deep);
    ReleaseSamples(picture, given.world);
    return picture.released.has_value();
  };
  const std::vector<uint8_t> bytes = {1, 2, 3, 4, 5, 6, 7, 8};
  EXPECT_TRUE(isReleased(MakePicture<uint8_t>(2, 4, bytes), false));
  EXPECT_FALSE(isReleased(MakePicture<uint8_t>(2, 4, bytes, false), false)) << "multiplied";
  Picture extra = MakePicture<uint8_t>(2, 4, bytes);
  extra.layout.alpha = -1;
  EXPECT_FALSE(isReleased(extra, false)) << "a further channel";
  EXPECT_FALSE(isReleased(MakePicture<uint16_t>(1, 1, {1, 2}), false)) << "16 bits in 8";
  EXPECT_FALSE(isReleased(MakePicture<float>(1, 1, {1.0F, 0.2F}), true)) << "floats";
  EXPECT_FALSE(isReleased(MakePicture<half>(2, 1, {half(0.5F), half(0.25F)}), false)) << "8 bits";
  EXPECT_FALSE(isReleased(MakePicture<half>(1, 1, std::vector<half>(9, half(-2.0F))), true))
      << "most are clipped";
}

std::vector<half> AllHalves() {
  std::vector<half> halves(65536);
  for (std::size_t i = 0; i < halves.size(); ++i) halves[i].setBits(static_cast<uint16_t>(i));
  return halves;
}

// Every half float: dark ones, of which many become one value, negative ones, infinite ones and
// those that are no number. Between them are bright ones, so that they are not most of the picture.
TEST(ExchangeTest, ReleasedHalvesAreFoundAgain) {
  std::vector<half> samples;
  for (const half sample : AllHalves()) {
    samples.push_back(sample);
    for (const float bright : {0.5F, 0.875F}) samples.emplace_back(bright);
  }
  const Picture picture = MakePicture<half>(4096, 3, samples);
  const Given given = GiveToEffect(picture, true);
  WorldBuffer result = given.world;
  for (int x = 3; x < picture.Width(); x += 5) result.At16(x, x % 16).green = 7;
  Picture released = picture;
  ReleaseSamples(released, given.world);
  ASSERT_TRUE(released.released.has_value());
  EXPECT_TRUE(std::get<std::vector<half>>(released.samples).empty());
  for (const SampleType type : {SampleType::kHalf, SampleType::kFloat, SampleType::kWord}) {
    const OutputForm form = FormOf(picture, type);
    const Samples found = TakeFromEffect(released, given.world, result, form);
    const Samples kept = TakeFromEffect(picture, given.world, result, form);
    // Bit by bit, as what is no number equals nothing.
    std::visit(
        [&](const auto& expected) {
          const auto& actual = std::get<std::decay_t<decltype(expected)>>(found);
          ASSERT_EQ(actual.size(), expected.size());
          EXPECT_EQ(std::memcmp(actual.data(), expected.data(),
                                expected.size() * sizeof(expected.front())),
                    0);
        },
        kept);
  }
  const std::int64_t clipped = CountClippedAndChanged(picture, given.world, result);
  EXPECT_GT(clipped, 0);
  EXPECT_EQ(CountClippedAndChanged(released, given.world, result), clipped);
}

Picture MakeHalfPicture(int channels) {
  Picture picture = MakePicture<float>(256, channels, std::vector<float>(65536));
  picture.samples = AllHalves();
  return picture;
}

// Also those that are no number.
TEST(ExchangeTest, UntouchedHalfFloatsKeepEveryBit) {
  for (const int channels : {1, 4}) {
    const Picture picture = MakeHalfPicture(channels);
    const std::vector<half> kept =
        Unchanged<half>(picture, true, FormOf(picture, SampleType::kHalf));
    ASSERT_EQ(kept.size(), 65536U);
    for (std::size_t i = 0; i < kept.size(); ++i) ASSERT_EQ(kept[i].bits(), i);
  }
}

// What is held in 16 bits is given and taken as if it were held in 32.
TEST(ExchangeTest, HalfFloatsCountAsFloats) {
  const std::vector<half> all = AllHalves();
  for (const int channels : {1, 4}) {
    for (const bool straight : {true, false}) {
      Picture halves = MakeHalfPicture(channels);
      Picture floats = halves;
      floats.samples = std::vector<float>(all.begin(), all.end());
      halves.straight = floats.straight = straight || channels == 1;
      const Given given = GiveToEffect(halves, true);
      const Given same = GiveToEffect(floats, true);
      EXPECT_TRUE(headless::SamePixels(given.world, same.world));
      EXPECT_EQ(given.clippedPixels, same.clippedPixels);
      WorldBuffer result = given.world;
      for (int y = 0; y < result.Height(); ++y) {
        for (int x = y % 3; x < result.Width(); x += 3) {
          result.At16(x, y).red = static_cast<uint16_t>((result.At16(x, y).red + 99) % 32769);
        }
      }
      const OutputForm form = FormOf(halves, SampleType::kHalf, halves.straight);
      const auto taken =
          std::get<std::vector<half>>(TakeFromEffect(halves, given.world, result, form));
      const OutputForm wide = FormOf(halves, SampleType::kFloat, halves.straight);
      const auto expected =
          std::get<std::vector<float>>(TakeFromEffect(floats, given.world, result, wide));
      for (std::size_t i = 0; i < taken.size(); ++i) {
        const half narrowed(expected[i]);
        if (std::isnan(expected[i])) continue;
        ASSERT_EQ(taken[i].bits(), narrowed.bits()) << i;
      }
      EXPECT_EQ(CountClippedAndChanged(halves, given.world, result),
                CountClippedAndChanged(floats, given.world, result));
    }
  }
}

}  // namespace
}  // namespace vitrell::media
