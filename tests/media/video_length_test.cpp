// What headers tell of a video's length.
#include "media/video_length.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "media/comma_locale.h"

extern "C" {
#include <libavutil/dict.h>
}

namespace vitrell::media {
namespace {

class VideoLengthTest : public testing::Test {
 protected:
  VideoLengthTest()
      : container_(avformat_alloc_context()), stream_(avformat_new_stream(container_, nullptr)) {}
  ~VideoLengthTest() override { avformat_free_context(container_); }
  VideoLengthTest(const VideoLengthTest&) = delete;
  VideoLengthTest& operator=(const VideoLengthTest&) = delete;

  void Tag(const std::string& duration) const {
    av_dict_set(&stream_->metadata, "DURATION", duration.c_str(), 0);
  }
  std::int64_t Frames() const { return FramesInHeader(*container_, *stream_, {25, 1}); }

  AVFormatContext* container_;
  AVStream* stream_;
};

TEST_F(VideoLengthTest, MatroskaTellsHoursMinutesAndSeconds) {
  Tag("00:00:02.480000000");
  EXPECT_EQ(Frames(), 62);
  Tag("01:02:03.040000000");
  EXPECT_EQ(Frames(), 25 * 3723 + 1);
}

// Programs with windows take the desktop's locale.
TEST_F(VideoLengthTest, ADecimalCommaElsewhereChangesNothing) {
  const CommaLocale locale;
  ASSERT_TRUE(locale.Holds());
  Tag("00:00:02.480000000");
  EXPECT_EQ(Frames(), 62);
}

TEST_F(VideoLengthTest, WhatIsNoLengthIsNone) {
  for (const char* tag : {"", "N/A", "x", "00:00:0x", "-00:00:02.000000000", "0"}) {
    Tag(tag);
    EXPECT_EQ(Frames(), 0) << tag;
  }
}

TEST_F(VideoLengthTest, NoHeaderIsBelievedEverything) {
  stream_->time_base = {1, 1};
  stream_->duration = INT64_MAX;
  EXPECT_EQ(Frames(), 1'000'000'000'000'000);
  stream_->time_base = {0, 0};
  EXPECT_EQ(Frames(), 0);
}

}  // namespace
}  // namespace vitrell::media
