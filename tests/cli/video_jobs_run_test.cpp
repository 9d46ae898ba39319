// Several frames of a video at once: as one after the other, and told alike when something fails.
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

class VideoJobsRunTest : public VideoTest {
 protected:
  ToolResult Render(const std::string& output, const std::string& jobs,
                    const std::vector<std::string>& more,
                    const std::string& input = "in.mkv") const {
    std::vector<std::string> arguments = {"render", input,    output, "--threads",
                                          "4",      "--jobs", jobs};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(arguments);
  }
  // With an effect that does `work`: "0|=Copy; 5|=Die".
  ToolResult Work(const std::string& output, const std::string& jobs, const std::string& work,
                  std::vector<std::string> more = {}) const {
    more.insert(more.end(), {"--effect", VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=" + work});
    return Render(output, jobs, more);
  }
  void MakeFrames(int frames, const std::string& format = "bgr0") const {
    // No frame is like another.
    Ffmpeg("-f lavfi -i testsrc2=s=48x32:r=25,noise=alls=40:allf=t -frames:v " +
           std::to_string(frames) + " -c:v ffv1 -pix_fmt " + format + " in.mkv");
  }
  void ExpectFrames(const std::string& file, int frames) const {
    std::string expected = "nb_read_frames=";
    expected.append(std::to_string(frames)).append("\n");
    EXPECT_EQ(Probe(file, "stream=nb_read_frames", "-count_frames"), expected);
  }
};

// Frames of several threads, at a variable rate, beside sound and subtitles, under moving values.
TEST_F(VideoJobsRunTest, TheBytesAreThoseOfOneJob) {
  WriteFile("words.srt",
            "1\n00:00:00,100 --> 00:00:00,200\nGood\n\n"
            "2\n00:00:01,100 --> 00:00:01,400\nevening\n");
  Ffmpeg(
      "-f lavfi -i testsrc2=s=48x32:r=30:d=1.5 -f lavfi -i sine=d=1.5 -i words.srt "
      "-vf \"select='not(mod(n,3))+gt(mod(n,7),4)'\" -fps_mode passthrough -c:v libx264 -bf 2 "
      "-c:a aac -c:s srt in.mkv");
  for (const std::string extension : {".mkv", ".mov", ".mp4", ".webm", ".nut", ".y4m"}) {
    for (const std::string depth : {"8", "16"}) {
      if (depth == "16" && extension != ".mkv" && extension != ".mov") continue;
      const std::vector<std::string> look = {
          "--set", "fast-blur.amount=0=0; 1s=30", "--depth", depth, "--force", "--quiet"};
      ASSERT_EQ(Render("one" + extension, "1", look).exitCode, 0);
      const ToolResult three = Render("three" + extension, "3", look);
      ASSERT_EQ(three.exitCode, 0) << three.err;
      EXPECT_TRUE(ReadFile("one" + extension) == ReadFile("three" + extension))
          << extension << " in " << depth << " bits";
      EXPECT_GT(ReadFile("one" + extension).size(), 2000U);
    }
  }
  const std::string video = "-select_streams v";
  EXPECT_EQ(Probe("three.mkv", "frame=pts_time", video), Probe("in.mkv", "frame=pts_time", video));
}

TEST_F(VideoJobsRunTest, FramesLeaveInOrderWhateverTheyTake) {
  MakeFrames(12);
  // The first one takes a second.
  const std::string work = "0|=Nap; 1|=Copy; 4|=Redden; 5|=Copy";
  ASSERT_EQ(Work("one.mkv", "1", work).exitCode, 0);
  ASSERT_EQ(Work("four.mkv", "4", work).exitCode, 0);
  EXPECT_TRUE(ReadFile("one.mkv") == ReadFile("four.mkv"));
  const std::string before = FrameHashes("in.mkv", "bgr0");
  const std::string after = FrameHashes("four.mkv", "bgr0");
  const std::size_t line = before.size() / 12;
  for (std::size_t i = 0; i < 12; ++i) {
    const bool same = after.substr(i * line, line) == before.substr(i * line, line);
    EXPECT_EQ(same, i != 4) << i;
  }
}

TEST_F(VideoJobsRunTest, AWorkerThatDiesIsToldAndTheFramesBeforeItAreKept) {
  MakeFrames(12);
  for (const auto& [work, exitCode, signal] :
       {std::tuple{"0|=Copy; 5|=Die; 6|=Copy", 1, "6"}, {"0|=Copy; 5|=Kill; 6|=Copy", 75, "9"}}) {
    const ToolResult run = Work("out.mkv", "2", work);
    ExpectMessage(
        run, exitCode,
        {std::string("in.mkv: the process that rendered frame 5 was ended by signal ") + signal,
         "the first 5 frames are kept as out.partial.mkv"});
    ExpectFrames("out.partial.mkv", 5);
    EXPECT_EQ(Names(), (std::vector<std::string>{"in.mkv", "out.partial.mkv"}));
  }
}

TEST_F(VideoJobsRunTest, FailuresAndNotesAreThoseOfOneJob) {
  MakeFrames(8, "bgra");
  const auto expectSame = [&](const std::string& output, const std::string& work, int exitCode,
                              const std::vector<std::string>& more, const std::string& piece) {
    const ToolResult one = Work(output, "1", work, more);
    EXPECT_EQ(one.exitCode, exitCode) << one.err;
    EXPECT_NE(one.err.find(piece), std::string::npos) << one.err;
    std::filesystem::remove(InFolder(output));
    const ToolResult three = Work(output, "3", work, more);
    EXPECT_EQ(three.exitCode, exitCode) << three.err;
    EXPECT_EQ(three.err, one.err);
    std::filesystem::remove(InFolder(output));
    EXPECT_EQ(Names(), std::vector<std::string>{"in.mkv"});
  };
  expectSame("out.mkv", "0|=Copy; 3|=Out of Memory", 75, {}, "the effect could not render it");
  expectSame("out.mp4", "0|=Copy; 3|=Fade", 0, {}, "is laid over black");
  expectSame("out.mp4", "0|=Copy; 3|=Fade", 1, {"--strict"}, "is laid over black");
  expectSame("out.mkv", "0|=Copy; 3|=Keep", 0, {}, "the effect misbehaved");
  expectSame("out.mkv", "0|=Copy; 3|=Keep", 1, {"--strict"}, "the effect misbehaved");
  // Looked for with the first frame only.
  expectSame("out.mkv", "0|=Scribble; 1|=Copy", 0, {}, "which it may only read");
}

TEST_F(VideoJobsRunTest, ThreadsAndMemoryTellHowMany) {
  MakeFrames(6);
  const auto jobs = [&](const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"render",    "in.mkv", "out.mkv",  "--force",
                                          "--threads", "4",      "--report", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const std::string report = Run(arguments).out;
    const std::size_t at = report.find("\"jobs\": ");
    return at == std::string::npos ? "none" : report.substr(at + 8, 1);
  };
  EXPECT_EQ(jobs({}), "4");
  EXPECT_EQ(jobs({"--jobs", "3"}), "3");
  // As many as there are frames, or fit.
  EXPECT_EQ(jobs({"--jobs", "9"}), "6");
  EXPECT_EQ(jobs({"--memory", "1k"}), "1");
  EXPECT_EQ(jobs({"--memory", "140M"}), "2");
}

TEST_F(VideoJobsRunTest, ProgressIsToldForPeopleAndPrograms) {
  MakeFrames(4);
  const auto lines = [](const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> found;
    for (std::string line; std::getline(stream, line);) found.push_back(line);
    return found;
  };
  const ToolResult json =
      Render("out.mkv", "2", {"--progress", "json", "--status", "status.json", "--frames", "1-3"});
  ASSERT_EQ(json.exitCode, 0) << json.err;
  EXPECT_EQ(json.err, ReadFile("status.json"));
  ASSERT_EQ(lines(json.err).size(), 3U) << json.err;
  for (int i = 0; i < 3; ++i) {
    const auto line = nlohmann::json::parse(lines(json.err)[static_cast<std::size_t>(i)]);
    EXPECT_EQ(line["frame"], i + 1);
    EXPECT_EQ(line["state"], "done");
    EXPECT_EQ(line["finished"], i + 1);
    EXPECT_EQ(line["frames"], 3);
    EXPECT_GE(line["ms"], 0);
  }
  const ToolResult plain = Render("out.mkv", "2", {"--progress", "plain", "--force"});
  ASSERT_EQ(lines(plain.err).size(), 4U) << plain.err;
  EXPECT_EQ(lines(plain.err)[3].find("frame 3: done, "), 0U) << plain.err;
  EXPECT_NE(lines(plain.err)[3].find("(4 of 4 frames"), std::string::npos) << plain.err;
  EXPECT_EQ(Render("out.mkv", "2", {"--progress", "none", "--force"}).err, "");
  const ToolResult bar = Render("out.mkv", "2", {"--progress", "bar", "--force"});
  EXPECT_NE(bar.err.find("frame 1 of 4"), std::string::npos) << bar.err;
  // What fails is told, too.
  const ToolResult failed = Work("bad.mkv", "2", "0|=Copy; 2|=Die", {"--progress", "json"});
  ASSERT_EQ(lines(failed.err).size(), 4U) << failed.err;
  const auto line = nlohmann::json::parse(lines(failed.err)[2]);
  EXPECT_EQ(line["frame"], 2);
  EXPECT_EQ(line["state"], "failed");
}

TEST_F(VideoJobsRunTest, APipeIsRenderedByManyToo) {
  MakeFrames(10);
  Shell(VITRELL_TOOL_PATH
        " render - out.mkv --set lens.type=none --set fast-blur.visible=off --threads 4 --jobs 3 "
        "--quiet <in.mkv");
  EXPECT_EQ(FrameHashes("out.mkv", "bgr0"), FrameHashes("in.mkv", "bgr0"));
}

}  // namespace
}  // namespace vitrell::cli
