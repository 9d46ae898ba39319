// What goes from one video file to the other beside the frames.
#include <string>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

constexpr const char* kChapters =
    ";FFMETADATA1\n"
    "[CHAPTER]\nTIMEBASE=1/1000\nSTART=0\nEND=400\ntitle=One\n"
    "[CHAPTER]\nTIMEBASE=1/1000\nSTART=400\nEND=1000\ntitle=Two\n";

class VideoCarriedRunTest : public VideoTest {
 protected:
  // Sound, chapters, metadata, timecode, pixels that are not square, and a turn for display.
  VideoCarriedRunTest() {
    WriteFile("chapters.txt", kChapters);
    Ffmpeg(
        "-f lavfi -i testsrc2=s=64x48:r=30000/1001:d=1 -f lavfi -i sine=d=1 -c:v libx264 "
        "-c:a aac -aspect 4:1 -metadata title=Street -metadata comment=Night "
        "-metadata:s:a language=fra -timecode 01:02:03:04 base.mov");
    Ffmpeg(
        "-i base.mov -i chapters.txt -map 0:v -map 0:a -map_metadata 0 -map_chapters 1 -c copy "
        "-metadata:s:v rotate=90 in.mov");
  }

  std::string Facts(const std::string& file) const {
    return Probe(file, "stream=sample_aspect_ratio", "-select_streams v:0") +
           Probe(file, "stream_side_data=rotation", "-select_streams v:0") +
           Probe(file, "chapter=start_time,end_time:chapter_tags=title") +
           Probe(file, "format_tags=title,comment") +
           Probe(file, "stream_tags=timecode", "-select_streams v:0") +
           Probe(file, "stream_tags=language", "-select_streams a");
  }
  std::string Sound(const std::string& file) const {
    return Shell("ffmpeg -nostdin -v error -i " + file + " -map 0:a -c copy -f hash -");
  }
};

TEST_F(VideoCarriedRunTest, AllGoesOverUntouched) {
  const std::string facts = Facts("in.mov");
  for (const char* piece : {"sample_aspect_ratio=3:1", "rotation=90", "title=Two", "title=Street",
                            "comment=Night", "timecode=01:02:03:04", "language=fra"}) {
    ASSERT_NE(facts.find(piece), std::string::npos) << piece << " is not in " << facts;
  }
  for (const char* output : {"out.mov", "out.mp4"}) {
    const ToolResult result = Neutral("in.mov", output, {"--strict"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(Facts(output), facts) << output;
    EXPECT_EQ(Sound(output), Sound("in.mov")) << output;
  }
}

TEST_F(VideoCarriedRunTest, WhatTheContainerCannotHoldIsTold) {
  const ToolResult matroska = Neutral("in.mov", "out.mkv");
  EXPECT_EQ(matroska.exitCode, 0);
  EXPECT_NE(matroska.err.find("rotation"), std::string::npos) << matroska.err;
  EXPECT_EQ(Sound("out.mkv"), Sound("in.mov"));
  EXPECT_EQ(Probe("out.mkv", "chapter_tags=title"), Probe("in.mov", "chapter_tags=title"));
  EXPECT_NE(Probe("out.mkv", "stream_tags").find("TIMECODE=01:02:03:04"), std::string::npos);
  const ToolResult webm = Neutral("in.mov", "out.webm");
  EXPECT_NE(webm.err.find("stream 1 (audio, aac) is left out"), std::string::npos) << webm.err;
  const ToolResult y4m = Neutral("in.mov", "out.y4m");
  for (const char* piece : {"title, comment", "timecode", "2 chapters", "rotation"}) {
    EXPECT_NE(y4m.err.find(piece), std::string::npos) << piece << " is not in " << y4m.err;
  }
  EXPECT_EQ(Neutral("in.mov", "strict.mkv", {"--strict"}).exitCode, 1);
  EXPECT_EQ(Neutral("in.mov", "strict.webm", {"--strict"}).exitCode, 1);
  for (const std::string& name : Names()) EXPECT_EQ(name.find("strict"), std::string::npos) << name;
}

TEST_F(VideoCarriedRunTest, SubtitlesAndAttachmentsGoOver) {
  WriteFile("words.srt", "1\n00:00:00,100 --> 00:00:00,900\nGood evening\n");
  WriteFile("notes.txt", "kept");
  Ffmpeg(
      "-f lavfi -i testsrc2=s=32x32:r=25:d=1 -i words.srt -c:v ffv1 -c:s copy -attach notes.txt "
      "-metadata:s:t mimetype=text/plain in.mkv");
  const ToolResult result = Neutral("in.mkv", "out.mkv", {"--strict"});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(Shell("ffmpeg -nostdin -v error -i out.mkv -map 0:s -f srt -"),
            Shell("ffmpeg -nostdin -v error -i in.mkv -map 0:s -f srt -"));
  Shell("ffmpeg -nostdin -v error -dump_attachment:t:0 dumped.txt -i out.mkv -f null -");
  EXPECT_EQ(ReadFile("dumped.txt"), "kept");
}

}  // namespace
}  // namespace vitrell::cli
