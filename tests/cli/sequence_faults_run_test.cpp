// Sequences when something goes wrong around them: kills, signals, dead workers, full disks.
#include <signal.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/sequence_files.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

constexpr int kPage = 4096;
constexpr int kDisk = 64;  // pages

class SequenceFaultsRunTest : public SequenceRunTest {
 protected:
  ~SequenceFaultsRunTest() override {
    if (mounted_) ::umount(InFolder("out").c_str());
  }

  // The output folder becomes a disk of its own.
  bool MountOut(std::size_t bytes) {
    const std::string options = "size=" + std::to_string(bytes);
    mounted_ = ::mount("tmpfs", InFolder("out").c_str(), "tmpfs", 0, options.c_str()) == 0;
    return mounted_;
  }

 private:
  bool mounted_ = false;
};

// VITRELL_KILLS sets how often; each time at another moment.
TEST_F(SequenceFaultsRunTest, AKilledRunGoesOnWhereItWas) {
  MakePlate(1, 12);
  const std::vector<std::string> arguments = {
      "render",     kPlate, kLook, "--jobs", "2", "--set", "intensity=1=0; 12=100",
      "--existing", "skip"};
  ASSERT_EQ(Run(arguments).exitCode, 0);
  std::vector<std::string> bytes;
  for (int i = 1; i <= 12; ++i) bytes.push_back(ReadFile(Name("out/look.", i)));
  const char* const told = std::getenv("VITRELL_KILLS");
  const int kills = told == nullptr ? 4 : std::atoi(told);
  int unfinished = 0;
  for (int kill = 0; kill < kills; ++kill) {
    std::filesystem::remove_all(InFolder("out"));
    std::filesystem::create_directory(InFolder("out"));
    {
      RunningTool tool(arguments, Folder());
      ::usleep(static_cast<useconds_t>(40000 + 7919 * kill % 120000));
      if (kill % 2 == 0) tool.KillAll();
      if (kill % 2 == 1) tool.Signal(SIGKILL);
    }
    unfinished += Out() == Looks({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}) ? 0 : 1;
    // Beside another one that renders the same.
    RunningTool other(arguments, Folder());
    const ToolResult run = Run(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(other.Wait().exitCode, 0);
    EXPECT_EQ(Out(), Looks({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
    for (int i = 1; i <= 12; ++i) {
      EXPECT_TRUE(ReadFile(Name("out/look.", i)) == bytes[static_cast<std::size_t>(i - 1)]) << i;
    }
  }
  EXPECT_GT(unfinished, 0);
  RecordProperty("unfinished", unfinished);
}

TEST_F(SequenceFaultsRunTest, SignalsEndTheWorkersAndLeaveNoFiles) {
  MakePlate(1, 4);
  const std::vector<std::string> arguments = {
      "render", kPlate,          kLook, "--jobs", "2", "--effect", VITRELL_FAKE_EFFECT_PATH,
      "--set",  "test.work=wait"};
  for (const int signal : {SIGINT, SIGTERM}) {
    // Both workers leave the mark.
    std::filesystem::remove(InFolder("rendering"));
    RunningTool tool(arguments, Folder());
    for (int i = 0; i < 1500 && !std::filesystem::remove(InFolder("rendering")); ++i) {
      ::usleep(20000);
    }
    tool.Signal(signal);
    const ToolResult result = tool.Wait();
    EXPECT_EQ(result.exitCode, signal == SIGINT ? 130 : 143) << result.err;
    EXPECT_TRUE(Holds(result.err, "cancelled. 4 frames are left: 1-4.")) << result.err;
    EXPECT_TRUE(Out().empty());
  }
}

TEST_F(SequenceFaultsRunTest, AWorkerThatDiesIsOneFailedFrame) {
  MakePlate(1, 3);
  const ToolResult run =
      Render({"--effect", VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=0|=Copy; 2|=Die; 3|=Copy",
              "--keep-going", "--jobs", "1"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(Holds(run.err,
                    "frame 2: out/look.0002.png: the process that rendered it was ended "
                    "by signal 6"))
      << run.err;
  EXPECT_TRUE(Holds(run.err, "1 of 3 frames failed: 2.")) << run.err;
  EXPECT_EQ(Out(), Looks({1, 3}));
}

TEST_F(SequenceFaultsRunTest, AFolderThatVanishesMayBeTriedAgain) {
  MakePlate(1, 3);
  const ToolResult run =
      Render({"--effect", VITRELL_FAKE_EFFECT_PATH, "--set", "test.work=Vanish", "--jobs", "1"});
  EXPECT_EQ(run.exitCode, 75) << run.err;
  EXPECT_TRUE(Holds(run.err, "1 of 3 frames failed: 1.")) << run.err;
}

// The frames that fitted are whole, and the rest goes on once there is room.
TEST_F(SequenceFaultsRunTest, AFullDiskMayBeTriedAgain) {
  MakePlate(1, 6);
  ASSERT_EQ(Render({}).exitCode, 0);
  const std::string frame = ReadFile("out/look.0003.png");
  if (!MountOut(std::size_t{kPage} * kDisk)) GTEST_SKIP() << "no right to mount here";
  const int pages = static_cast<int>(frame.size()) / kPage + 1;
  // Room for two frames and a half.
  const auto room = static_cast<std::size_t>(2 * pages + (pages + 1) / 2);
  WriteFile("out/filler", std::string(kPage * (kDisk - room), 'x'));
  const ToolResult full = Render({"--jobs", "1", "--keep-going"});
  EXPECT_EQ(full.exitCode, 75) << full.err;
  EXPECT_TRUE(Holds(full.err, "No space left on device")) << full.err;
  EXPECT_TRUE(Holds(full.err, "frames failed: ")) << full.err;
  fs::remove(InFolder("out/filler"));
  EXPECT_LT(Out().size(), 6U);
  const ToolResult rest = Render({"--existing", "skip"});
  EXPECT_EQ(rest.exitCode, 0) << rest.err;
  EXPECT_EQ(Out(), Looks({1, 2, 3, 4, 5, 6}));
  EXPECT_TRUE(ReadFile("out/look.0003.png") == frame);
}

TEST_F(SequenceFaultsRunTest, MemoryBoundsTheFramesInFlight) {
  MakePlate(1, 4);
  const auto jobsWith = [&](const std::string& memory) {
    const ToolResult run = Render(
        {"--jobs", "4", "--threads", "4", "--memory", memory, "--report", "r.json", "--force"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return nlohmann::json::parse(ReadFile("r.json"))["effect"]["jobs"].get<int>();
  };
  EXPECT_EQ(jobsWith("1M"), 1);
  const int few = jobsWith("200M");
  EXPECT_GE(few, 2);
  EXPECT_LE(few, 3);
  EXPECT_EQ(jobsWith("8G"), 4);
}

}  // namespace
}  // namespace vitrell::cli
