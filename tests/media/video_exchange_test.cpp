// Frames on their way to the effect and back, against the definitions, for all values.
#include "media/video_exchange.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "media/pixel_formats.h"
#include "media/video_messages.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::media {
namespace {

using headless::WorldBuffer;

template <typename Channel>
Channel* PixelOf(const AVFrame& frame, int x, int y) {
  return reinterpret_cast<Channel*>(frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0]) +
         std::ptrdiff_t{x} * 4;
}

// Every channel takes all 65536 values, each its own at each pixel.
constexpr int kWordSide = 256;
std::uint16_t WordAt(int x, int y, int channel) {
  return static_cast<std::uint16_t>(y * kWordSide + x + channel * 10007);
}

FrameHandle FrameOfAllWords() {
  FrameHandle frame = MakeFrame(kWordSide, kWordSide, kRgb16);
  for (int y = 0; y < kWordSide; ++y) {
    for (int x = 0; x < kWordSide; ++x) {
      for (int i = 0; i < 4; ++i) PixelOf<std::uint16_t>(*frame, x, y)[i] = WordAt(x, y, i);
    }
  }
  return frame;
}

int Nearest(std::uint64_t value, std::uint64_t to, std::uint64_t from) {
  return static_cast<int>((2 * value * to + from) / (2 * from));
}

TEST(VideoExchangeTest, WordsBecomeTheNearestOfTheEffect) {
  const FrameHandle frame = FrameOfAllWords();
  WorldBuffer world(kWordSide, kWordSide, true);
  GiveFrame(*frame, world);
  for (int y = 0; y < kWordSide; ++y) {
    for (int x = 0; x < kWordSide; ++x) {
      const PF_Pixel16& pixel = world.At16(x, y);
      const std::array<int, 4> given = {pixel.red, pixel.green, pixel.blue, pixel.alpha};
      for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(given.at(static_cast<std::size_t>(i)), Nearest(WordAt(x, y, i), 32768, 65535))
            << WordAt(x, y, i);
      }
    }
  }
}

// Rows that did not change at all take another way than those of which some channels did.
TEST(VideoExchangeTest, ChannelsThatChangeAreConvertedAndOthersKept) {
  const FrameHandle frame = FrameOfAllWords();
  WorldBuffer given(kWordSide, kWordSide, true);
  GiveFrame(*frame, given);
  WorldBuffer result = given;
  for (int y = 1; y < kWordSide; y += 2) {
    for (int x = 0; x < kWordSide; ++x) {
      result.At16(x, y).green = static_cast<A_u_short>(given.At16(x, y).green + 1);
    }
  }
  const FrameHandle taken = MakeFrame(kWordSide, kWordSide, kRgb16);
  EXPECT_TRUE(TakeFrame(*frame, given, result, {}, *taken));
  for (int y = 0; y < kWordSide; ++y) {
    for (int x = 0; x < kWordSide; ++x) {
      const std::uint16_t* pixel = PixelOf<std::uint16_t>(*taken, x, y);
      const auto green = std::min<std::uint64_t>(result.At16(x, y).green, 32768);
      ASSERT_EQ(pixel[0], WordAt(x, y, 0));
      ASSERT_EQ(pixel[1], y % 2 == 0 ? WordAt(x, y, 1) : Nearest(green, 65535, 32768));
      ASSERT_EQ(pixel[2], WordAt(x, y, 2));
      ASSERT_EQ(pixel[3], WordAt(x, y, 3));
    }
  }
}

// In the first, the last and one of the middle pixels of a row, alone, for widths around vectors.
TEST(VideoExchangeTest, OneTransparentPixelIsSeenAndLaidOverBlack) {
  for (const bool deep : {false, true}) {
    const int white = deep ? 32768 : 255;
    for (const int width : {1, 7, 16, 33}) {
      for (const int where : {-1, 0, width / 2, width - 1}) {
        WorldBuffer world(width, 2, deep);
        for (int y = 0; y < 2; ++y) {
          for (int x = 0; x < width; ++x) {
            const int alpha = x == where && y == 1 ? white / 2 : white;
            if (deep) {
              world.At16(x, y) = {static_cast<A_u_short>(alpha), 32768, 32768, 32768};
            } else {
              world.At8(x, y) = {static_cast<A_u_char>(alpha), 255, 255, 255};
            }
          }
        }
        const AVPixelFormat format = deep ? kRgb16 : kRgb8;
        const FrameHandle frame = MakeFrame(width, 2, format);
        const FrameHandle taken = MakeFrame(width, 2, format);
        // A frame that is no help: all that is asked for has changed.
        WorldBuffer given(width, 2, deep);
        given.FillBytes(1);
        for (const bool overBlack : {false, true}) {
          EXPECT_EQ(TakeFrame(*frame, given, world, {overBlack}, *taken), where >= 0);
          const int seen = std::max(where, 0);
          const auto channel = [&](int i) {
            return deep ? PixelOf<std::uint16_t>(*taken, seen, 1)[i] / 257
                        : PixelOf<std::uint8_t>(*taken, seen, 1)[(i + 1) % 4];
          };
          const bool covered = where >= 0 && overBlack;
          EXPECT_EQ(channel(0), covered ? 127 : 255) << width << " " << where;
          EXPECT_EQ(channel(3), where >= 0 && !overBlack ? 127 : 255) << width << " " << where;
        }
      }
    }
  }
}

// Formats without alpha, also those that store a byte for nothing, become opaque, and none is
// written beside its rows; planar ones of the first width are converted right into the world.
TEST(VideoExchangeTest, FormatsWithoutAlphaAreOpaque) {
  CollectVideoMessages();
  int formats = 0;
  for (const AVPixFmtDescriptor* pixels = av_pix_fmt_desc_next(nullptr); pixels != nullptr;
       pixels = av_pix_fmt_desc_next(pixels)) {
    const AVPixelFormat format = av_pix_fmt_desc_get_id(pixels);
    if (sws_isSupportedInput(format) == 0) continue;
    ++formats;
    for (const int width : {32, 35}) {
      for (const bool deep : {false, true}) {
        const FrameHandle frame = MakeFrame(width, 8, format);
        for (std::size_t i = 0; i < 4 && frame->buf[i] != nullptr; ++i) {
          std::fill_n(frame->buf[i]->data, frame->buf[i]->size, std::uint8_t{0x11});
        }
        FrameExchange exchange(width, 8, deep, 1);
        exchange.Give(*frame, "test");
        for (int y = 0; y < 8; ++y) {
          for (int x = 0; x < width; ++x) {
            const int alpha = deep ? exchange.Given().At16(x, y).alpha * 255 / 32768
                                   : exchange.Given().At8(x, y).alpha;
            if (HasAlpha(format)) continue;
            ASSERT_EQ(alpha, 255) << pixels->name << " " << width << " " << deep;
          }
        }
        EXPECT_EQ(exchange.Given().Damage(), std::nullopt) << pixels->name << " " << width;
      }
    }
  }
  EXPECT_GT(formats, 100);
}

// 50, 30 and 10 of 255 under an alpha of 100 are 127.5, 76.5 and 25.5 of 255.
TEST(VideoExchangeTest, AlphaIsDividedOutOrLeftAlone) {
  for (const int width : {16, 3}) {
    const FrameHandle frame = MakeFrame(width, 1, AV_PIX_FMT_RGBA);
    for (int x = 0; x < width; ++x) {
      const std::array<std::uint8_t, 4> pixel = x == 0
                                                    ? std::array<std::uint8_t, 4>{50, 30, 10, 100}
                                                    : std::array<std::uint8_t, 4>{7, 8, 9, 0};
      std::copy(pixel.begin(), pixel.end(), PixelOf<std::uint8_t>(*frame, x, 0));
    }
    struct Case {
      AlphaMeaning meaning;
      std::array<int, 4> first;
      int lastAlpha;
    };
    for (const Case& c : {Case{AlphaMeaning::kAsInFile, {100, 50, 30, 10}, 0},
                          Case{AlphaMeaning::kStraight, {100, 50, 30, 10}, 0},
                          Case{AlphaMeaning::kPremultiplied, {100, 128, 77, 26}, 0},
                          Case{AlphaMeaning::kIgnored, {255, 50, 30, 10}, 255}}) {
      FrameExchange exchange(width, 1, false, 1, c.meaning);
      exchange.Give(*frame, "test");
      const PF_Pixel& first = exchange.Given().At8(0, 0);
      EXPECT_EQ((std::array<int, 4>{first.alpha, first.red, first.green, first.blue}), c.first);
      const PF_Pixel& last = exchange.Given().At8(width - 1, 0);
      EXPECT_EQ(last.alpha, c.lastAlpha);
      EXPECT_EQ(last.red, 7);
      // What the effect leaves as it was goes out as it came in.
      WorldBuffer& result = exchange.Result();
      for (int x = 0; x < width; ++x) result.At8(x, 0) = exchange.Given().At8(x, 0);
      const FrameHandle taken = MakeFrame(width, 1, kRgb8);
      exchange.Take({}, *taken);
      EXPECT_EQ(PixelOf<std::uint8_t>(*taken, 0, 0)[1], c.first[1]);
    }
  }
}

TEST(VideoExchangeTest, AlphaIsDividedOutInSixteenBits) {
  const FrameHandle frame = MakeFrame(2, 1, AV_PIX_FMT_RGBA64);
  const std::array<std::uint16_t, 8> words = {1000, 20000, 60000, 40000, 5, 6, 7, 0};
  std::copy(words.begin(), words.end(), PixelOf<std::uint16_t>(*frame, 0, 0));
  FrameExchange exchange(2, 1, true, 1, AlphaMeaning::kPremultiplied);
  exchange.Give(*frame, "test");
  const PF_Pixel16& first = exchange.Given().At16(0, 0);
  EXPECT_EQ(first.red, 819);      // 1000 / 40000 * 32768 = 819.2
  EXPECT_EQ(first.green, 16384);  // the half
  EXPECT_EQ(first.blue, 32768);   // more than all
  EXPECT_EQ(first.alpha, 20000);  // 40000 / 65535 * 32768 = 20000.3
  WorldBuffer& result = exchange.Result();
  for (int x = 0; x < 2; ++x) result.At16(x, 0) = exchange.Given().At16(x, 0);
  const FrameHandle taken = MakeFrame(2, 1, kRgb16);
  EXPECT_TRUE(exchange.Take({}, *taken));
  const std::uint16_t* pixel = PixelOf<std::uint16_t>(*taken, 0, 0);
  EXPECT_EQ(pixel[0], 1638);   // 1000 / 40000 * 65535 = 1638.4
  EXPECT_EQ(pixel[1], 32768);  // 32767.5
  EXPECT_EQ(pixel[2], 65535);
  EXPECT_EQ(pixel[3], 40000);
  EXPECT_EQ(pixel[4], 5);
}

}  // namespace
}  // namespace vitrell::media
