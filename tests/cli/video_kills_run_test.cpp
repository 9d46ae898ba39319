// Renders of a video that are killed, and started again.
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/video_pictures.h"

namespace vitrell::cli {
namespace {

constexpr int kFrames = 20;

class VideoKillsRunTest : public VideoPicturesTest {
 protected:
  VideoKillsRunTest() {
    Ffmpeg("-f lavfi -i testsrc2=s=320x180:r=25,format=bgr0 -frames:v " + std::to_string(kFrames) +
           " -c:v ffv1 in.mkv");
  }

  // VITRELL_KILLS sets how often; each time at another moment. `arguments` render into "out".
  template <typename Content>
  void ExpectToGoOn(const std::vector<std::string>& arguments, const Content& content) {
    ASSERT_EQ(Run(arguments).exitCode, 0);
    const std::string whole = content();
    ASSERT_FALSE(whole.empty());
    const char* const told = std::getenv("VITRELL_KILLS");
    const int kills = told == nullptr ? 4 : std::atoi(told);
    int unfinished = 0;
    for (int kill = 0; kill < kills; ++kill) {
      EmptyOut();
      {
        RunningTool tool(arguments, Folder());
        ::usleep(static_cast<useconds_t>(40000 + 7919 * kill % 200000));
        if (kill % 2 == 0) tool.KillAll();
        if (kill % 2 == 1) tool.Signal(SIGKILL);
      }
      unfinished += content() == whole ? 0 : 1;
      const ToolResult again = Run(arguments);
      EXPECT_EQ(again.exitCode, 0) << again.err;
      EXPECT_TRUE(content() == whole) << kill;
    }
    EXPECT_GT(unfinished, 0);
    RecordProperty("unfinished", unfinished);
    // What killed runs left under hidden names goes with the next one that writes.
    std::vector<std::string> anew = arguments;
    anew.back() = "overwrite";
    EXPECT_EQ(Run(anew).exitCode, 0);
    for (const auto& entry : std::filesystem::directory_iterator(InFolder("out"))) {
      EXPECT_FALSE(entry.path().filename().string().starts_with(".vitrell")) << entry.path();
    }
  }

 private:
  void EmptyOut() const {
    for (const auto& entry : std::filesystem::directory_iterator(InFolder("out"))) {
      std::filesystem::remove(entry.path());
    }
  }
};

TEST_F(VideoKillsRunTest, AVideoIsWrittenAnew) {
  ExpectToGoOn({"render", "in.mkv", "out/o.mkv", "--jobs", "2", "--quiet", "--existing", "skip"},
               [&] {
                 const bool isThere = std::filesystem::exists(InFolder("out/o.mkv"));
                 return isThere ? ReadFile("out/o.mkv") : std::string();
               });
}

TEST_F(VideoKillsRunTest, PicturesOfAVideoGoOnWhereTheyWere) {
  ExpectToGoOn({"render", "in.mkv", kPictures, "--jobs", "2", "--quiet", "--existing", "skip"},
               [&] {
                 std::string content;
                 for (int frame = 0; frame < kFrames; ++frame) {
                   std::string file = "out/" + PictureNames({frame});
                   file.pop_back();
                   if (std::filesystem::exists(InFolder(file))) content += ReadFile(file);
                 }
                 return content;
               });
}

}  // namespace
}  // namespace vitrell::cli
