// Ctrl-C and termination requests end a render and leave no file.
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::WritePictureFile;

constexpr useconds_t kMoment = 20000;
constexpr int kMoments = 1500;

class InterruptRunTest : public ToolTest {
 protected:
  InterruptRunTest() {
    WritePictureFile(InFolder("in.png"), NoisePicture(8, 8, 4, OIIO::TypeDesc::UINT8, 1));
  }

  static std::vector<std::string> Endless(const std::string& work) {
    return {"render", "in.png",           "out.png", "--effect", VITRELL_FAKE_EFFECT_PATH,
            "--set",  "test.work=" + work};
  }

  // The fake effect leaves a file when it starts to render.
  void WaitUntilRendering() const {
    for (int i = 0; i < kMoments; ++i) {
      if (std::filesystem::remove(InFolder("rendering"))) return;
      ::usleep(kMoment);
    }
    FAIL() << "the render did not start";
  }

  static double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
};

TEST_F(InterruptRunTest, SignalsCancelAndLeaveNoFile) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    RunningTool tool(Endless("wait"), Folder());
    WaitUntilRendering();
    const auto start = std::chrono::steady_clock::now();
    tool.Signal(signal);
    ExpectMessage(tool.Wait(), 130, {"cancelled", "no file was written"});
    EXPECT_LT(SecondsSince(start), 10);
    EXPECT_EQ(Names(), std::vector<std::string>{"in.png"});
  }
}

TEST_F(InterruptRunTest, ASecondSignalEndsAStubbornEffectAtOnce) {
  RunningTool tool(Endless("stubborn"), Folder());
  WaitUntilRendering();
  tool.Signal(SIGINT);
  ::usleep(100000);
  tool.Signal(SIGINT);
  EXPECT_EQ(tool.Wait().exitCode, 130);
  EXPECT_EQ(Names(), std::vector<std::string>{"in.png"});
}

TEST_F(InterruptRunTest, AStubbornEffectIsEndedAfterAGrace) {
  RunningTool tool(Endless("stubborn"), Folder());
  WaitUntilRendering();
  const auto start = std::chrono::steady_clock::now();
  tool.Signal(SIGTERM);
  EXPECT_EQ(tool.Wait().exitCode, 130);
  EXPECT_LT(SecondsSince(start), 15);
  EXPECT_EQ(Names(), std::vector<std::string>{"in.png"});
}

TEST_F(InterruptRunTest, TheRealEffectStopsWithinAPass) {
  if (const std::string why = WhyNoTerminal(); !why.empty()) GTEST_SKIP() << why;
  WritePictureFile(InFolder("in.png"), NoisePicture(1920, 1080, 3, OIIO::TypeDesc::UINT8, 1));
  WriteFile("out.png", "precious");
  ToolOptions options;
  options.terminal = true;
  RunningTool tool(
      {"render", "in.png", "out.png", "--force", "--set", "fast-blur.amount=0", "--set",
       "directional-blur.amount=3000", "--set", "directional-blur.direction=30"},
      Folder(), options);
  // Reading is the first stage, the long blur the second.
  ASSERT_TRUE(tool.WaitForError("stage 2"));
  tool.Signal(SIGINT);
  EXPECT_EQ(tool.Wait().exitCode, 130);
  EXPECT_EQ(ReadFile("out.png"), "precious");
  EXPECT_EQ(Names(), (std::vector<std::string>{"in.png", "out.png"}));
}

}  // namespace
}  // namespace vitrell::cli
