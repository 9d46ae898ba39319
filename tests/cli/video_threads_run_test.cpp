// Threads of a video: one budget for decoder, frames and encoder, and bytes that no machine
// changes.
#include <sched.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {
namespace {

// A machine may have kept the first one for others.
int FirstCore() {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  ::sched_getaffinity(0, sizeof(cores), &cores);
  int first = 0;
  while (first < CPU_SETSIZE - 1 && CPU_ISSET(first, &cores) == 0) ++first;
  return first;
}

class VideoThreadsRunTest : public VideoTest {
 protected:
  VideoThreadsRunTest() {
    Ffmpeg(
        "-f lavfi -i testsrc2=s=192x160:r=25,noise=alls=20:allf=t -frames:v 8 -c:v libx264 in.mkv");
  }
};

// The encoder of H.264 divides its work by its threads, and so does that of MPEG-4.
TEST_F(VideoThreadsRunTest, TheBytesDoNotDependOnTheCoresOfTheMachine) {
  for (const std::string options : {"out.mp4", "out.mkv --video-codec mpeg4", "out.mov"}) {
    const std::string render =
        VITRELL_TOOL_PATH " render in.mkv --quiet --force --set fast-blur.amount=5 " + options;
    const std::string out = options.substr(0, options.find(' '));
    Shell("taskset -c " + std::to_string(FirstCore()) + " " + render);
    const std::string one = ReadFile(out);
    Shell(render);
    EXPECT_TRUE(ReadFile(out) == one) << options;
    // The two do have something to do with each other: a smaller budget is kept to.
    if (out == "out.mov") continue;
    Shell(render + " --threads 1");
    EXPECT_FALSE(ReadFile(out) == one) << options;
  }
}

// x265 would write down which vectors it found.
TEST_F(VideoThreadsRunTest, TheBytesDoNotTellTheProcessor) {
  ASSERT_EQ(Neutral("in.mkv", "out.mkv", {"--video-codec", "hevc"}).exitCode, 0);
  EXPECT_EQ(ReadFile("out.mkv").find("cpuid"), std::string::npos);
}

// Two jobs, a decoder and an encoder would use all that there is; they get one processor.
TEST_F(VideoThreadsRunTest, ThreadsAreTheProcessorsOfAllTogether) {
  if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "there is one processor anyway";
  Ffmpeg("-f lavfi -i testsrc2=s=640x360:r=25:d=4 -c:v libx264 -preset ultrafast long.mkv");
  const std::vector<std::string> look = {"--set", "directional-blur.amount=100", "--quiet"};
  const auto render = [&](const std::string& in, const std::string& out) {
    std::vector<std::string> arguments = {"render", in, out, "--threads", "1", "--jobs", "2"};
    arguments.insert(arguments.end(), look.begin(), look.end());
    const auto begin = std::chrono::steady_clock::now();
    const ToolResult run = Run(arguments);
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    EXPECT_EQ(run.exitCode, 0) << run.err;
    // What a rest allows, and the frames that were in work when the last second was used up.
    const double ahead = 0.3;
    EXPECT_GT(run.processorSeconds, 2 * ahead) << "too little work to tell anything";
    EXPECT_LT(run.processorSeconds, seconds + ahead) << out;
  };
  render("long.mkv", "two.mkv");
  render("long.mkv", "one.mp4");
  render("long.mkv", "frame.####.jpg");
  render("frame.####.jpg", "again.####.jpg");
}

// One process that may have no other beside it, and no second thread.
TEST_F(VideoThreadsRunTest, OneIsOneForAllThatWorks) {
  ::chmod(Folder().c_str(), 0777);
  ToolOptions alone;
  alone.maxProcesses = 1;
  for (const std::string out : {"out.mp4", "out.mkv", "out.webm"}) {
    ASSERT_EQ(Neutral("in.mkv", out, {"--threads", "1"}).exitCode, 0);
    const std::string bytes = ReadFile(out);
    std::filesystem::remove(InFolder(out));
    const ToolResult run = Run({"render", "in.mkv", out, "--set", "lens.type=none", "--set",
                                "fast-blur.visible=off", "--threads", "1"},
                               alone);
    if (run.exitCode == 98 || run.exitCode == 99) {
      GTEST_SKIP() << "the program cannot be run with fewer rights here";
    }
    ASSERT_EQ(run.exitCode, 0) << out << ": " << run.err;
    EXPECT_TRUE(ReadFile(out) == bytes) << out;
  }
}

}  // namespace
}  // namespace vitrell::cli
