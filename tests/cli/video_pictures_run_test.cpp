// Videos into sequences of pictures.
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "cli/video_pictures.h"

namespace vitrell::cli {
namespace {

class VideoPicturesRunTest : public VideoPicturesTest {};

// Counts how often a file is opened from now on.
class Openings {
 public:
  explicit Openings(const std::filesystem::path& file) {
    // Events that are alike and follow each other are merged; between two openings it is closed.
    watched_ = ::inotify_add_watch(notify_, file.c_str(), IN_OPEN | IN_CLOSE) >= 0;
  }
  ~Openings() { ::close(notify_); }
  Openings(const Openings&) = delete;
  Openings& operator=(const Openings&) = delete;

  // -1: nobody counted.
  int Count() const {
    if (!watched_) return -1;
    int count = 0;
    alignas(inotify_event) std::array<char, 8192> block{};
    for (ssize_t size = 0; (size = ::read(notify_, block.data(), block.size())) > 0;) {
      for (ssize_t at = 0; at < size;) {
        const auto* event = reinterpret_cast<const inotify_event*>(block.data() + at);
        if ((event->mask & IN_OPEN) != 0) ++count;
        at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
    return count;
  }

 private:
  int notify_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  bool watched_ = false;
};

// With 8, 10 and 16 bits, with and without alpha; deep ones become pictures of 16 bits.
TEST_F(VideoPicturesRunTest, EveryBitOfEveryFrameIsThere) {
  for (const auto& [pixels, stored] : {std::pair<std::string, std::string>{"bgr0", "rgb24"},
                                       {"bgra", "rgba"},
                                       {"gbrp10le", "rgb48be"},
                                       {"gbrap16le", "rgba64be"}}) {
    MakeVideo(4, pixels);
    std::vector<std::string> options = {"--force", "--threads", "4", "--jobs", "3"};
    const ToolResult run = Neutral("in.mkv", kPictures, options);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Hashes("out/look.", 0, stored), FrameHashes("in.mkv", stored)) << pixels;
    EXPECT_EQ(Probe("out/look.0000.png", "stream=pix_fmt"), "pix_fmt=" + stored + "\n");
  }
}

TEST_F(VideoPicturesRunTest, FramesAreThoseOfTheRenderedVideoOnAnyJobs) {
  MakeVideo(6, "yuv420p");
  const std::vector<std::string> look = {"--set", "fast-blur.amount=0=0; 0.2s=30", "--threads", "4",
                                         "--force"};
  ASSERT_EQ(Render(look, "out.mkv").exitCode, 0);
  std::string bytes;
  for (const std::string jobs : {"1", "3"}) {
    std::vector<std::string> options = look;
    options.insert(options.end(), {"--jobs", jobs});
    const ToolResult run = Render(options);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(Hashes("out/look.", 0, "rgb24"), FrameHashes("out.mkv", "rgb24"));
    const std::string now = Shell("cat out/look.*.png | md5sum");
    EXPECT_TRUE(bytes.empty() || now == bytes);
    bytes = now;
  }
}

TEST_F(VideoPicturesRunTest, FramesAreChosenAndRenumbered) {
  MakeVideo(10);
  ASSERT_EQ(Neutral("in.mkv", kPictures, {"--frames", "2-8x3", "--frames-out", "1001-"}).exitCode,
            0);
  EXPECT_EQ(Out(), PictureNames({1001, 1002, 1003}));
  const std::string all = FrameHashes("in.mkv", "rgb24");
  const std::size_t line = all.size() / 10;
  EXPECT_EQ(Hashes("out/look.", 1001, "rgb24"),
            all.substr(2 * line, line) + all.substr(5 * line, line) + all.substr(8 * line, line));
  // Parts are shares of all, also where nobody said how many there are.
  for (const char* part : {"1/3", "2/3", "3/3"}) {
    ASSERT_EQ(Neutral("in.mkv", "out/part.####.png", {"--part", part}).exitCode, 0);
  }
  EXPECT_EQ(Hashes("out/part.", 0, "rgb24"), all);
  ExpectMessage(Render({"--frames", "5-2"}), 2, {"--frames 5-2", "come in their order"});
  ExpectMessage(Render({"--frames", "1-4", "--frames-out", "1-3"}), 2, {"--frames-out", "3", "4"});
  ExpectMessage(Render({"--channels", "R"}), 2, {"--channels"});
}

// Frame 0 is the first one of all parts, and frame -1 the last one.
TEST_F(VideoPicturesRunTest, KeysBeginAndEndWithWhatIsRendered) {
  MakeVideo(10);
  const auto render = [&](const std::string& output, const std::string& keys,
                          const std::vector<std::string>& more) {
    std::vector<std::string> options = {"--force", "--set", "fast-blur.amount=" + keys};
    options.insert(options.end(), more.begin(), more.end());
    return Render(options, output).exitCode;
  };
  ASSERT_EQ(render("out/whole.####.png", "3=0; 5=20; 8=5", {}), 0);
  const std::string whole = Hashes("out/whole.", 0, "rgb24");
  const std::size_t line = whole.size() / 10;
  const std::string expected = whole.substr(3 * line, 6 * line);
  for (const char* keys : {"0=0; 2=20; 5=5", "0s=0; 0.08s=20; 5=5", "-6=0; -4=20; -1=5"}) {
    for (const char* part : {"1/3", "2/3", "3/3"}) {
      ASSERT_EQ(render("out/part.####.png", keys, {"--frames", "3-8", "--part", part}), 0) << keys;
    }
    EXPECT_EQ(Hashes("out/part.", 3, "rgb24"), expected) << keys;
  }
  ASSERT_EQ(render("out/open.####.png", "0=0; 2=20; -2=5", {"--frames", "3-", "--part", "2/2"}), 0);
  EXPECT_EQ(Hashes("out/open.", 6, "rgb24"), whole.substr(6 * line, 4 * line));
}

TEST_F(VideoPicturesRunTest, MissingFramesAreToldHeldOrBlack) {
  MakeVideo(4);
  const std::vector<std::string> five = {"--frames", "2-5", "--quiet"};
  const auto render = [&](const std::string& missing) {
    std::vector<std::string> options = five;
    options.back() = "--force";
    options.insert(options.end(), {"--missing", missing});
    return Neutral("in.mkv", kPictures, options);
  };
  ExpectMessage(Neutral("in.mkv", kPictures, five), 1, {"in.mkv: frames 4,5 are not there"});
  EXPECT_EQ(Out(), PictureNames({2, 3}));
  EXPECT_EQ(render("skip").exitCode, 0);
  EXPECT_EQ(Out(), PictureNames({2, 3}));
  const ToolResult held = render("hold");
  EXPECT_EQ(held.exitCode, 0) << held.err;
  EXPECT_NE(held.err.find("frames from 4 on are not there"), std::string::npos) << held.err;
  const std::string tail = Hashes("out/look.", 3, "rgb24");
  const std::string last = tail.substr(0, tail.size() / 3);
  EXPECT_EQ(tail, last + last + last);
  EXPECT_EQ(render("black").exitCode, 0);
  Ffmpeg("-f lavfi -i color=black:s=48x32,format=rgb24 -frames:v 2 black.%04d.png");
  EXPECT_EQ(Hashes("out/look.", 4, "rgb24"), Hashes("black.", 1, "rgb24"));
}

TEST_F(VideoPicturesRunTest, WhatIsThereIsKeptIfItIsMadeOfTheSame) {
  MakeVideo(4);
  const std::vector<std::string> skip = {"--existing", "skip", "--set", "fast-blur.amount=5"};
  ASSERT_EQ(Render(skip).exitCode, 0);
  ExpectMessage(Render({}), 1, {"frames 0-3 already exist"});
  std::filesystem::remove(InFolder("out/look.0001.png"));
  WriteFile("out/look.0002.png", ReadFile("out/look.0002.png").substr(0, 300));
  std::filesystem::copy_file(InFolder("out/look.0000.png"), InFolder("out/look.0003.png"),
                             std::filesystem::copy_options::overwrite_existing);
  const ToolResult again = Render(skip);
  EXPECT_EQ(again.exitCode, 0) << again.err;
  EXPECT_NE(again.out.find("3 frames rendered, 1 skipped"), std::string::npos) << again.out;
  EXPECT_NE(again.out.find("3 stale, 2 torn"), std::string::npos) << again.out;
  EXPECT_EQ(Run({"check", kPictures}).exitCode, 0);
  MakeVideo(3);
  EXPECT_EQ(Run({"check", kPictures}).exitCode, 1);
}

TEST_F(VideoPicturesRunTest, CheckingReadsTheVideoAndTheLayerOnce) {
  MakeVideo(5);
  Ffmpeg("-f lavfi -i testsrc2=s=48x32 -frames:v 1 layer.png");
  ASSERT_EQ(Render({"--set", "lens.type=custom", "--custom-layer", "layer.png"}).exitCode, 0);
  const Openings video(InFolder("in.mkv"));
  const Openings layer(InFolder("layer.png"));
  EXPECT_EQ(Run({"check", kPictures}).exitCode, 0);
  EXPECT_EQ(video.Count(), 1);
  EXPECT_EQ(layer.Count(), 1);
  // Of another layer frames are stale, whose number tells that each was looked at.
  Ffmpeg("-f lavfi -i mandelbrot=s=48x32 -frames:v 1 layer.png");
  const ToolResult stale = Run({"check", kPictures});
  EXPECT_EQ(stale.exitCode, 1);
  EXPECT_EQ(stale.out, "stale: 0-4\n");
}

TEST_F(VideoPicturesRunTest, ProgressIsThatOfSequences) {
  MakeVideo(3);
  const ToolResult run = Render(
      {"--progress", "json", "--status", "status.json", "--report", "-", "--jobs", "2", "--quiet"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, ReadFile("status.json"));
  std::istringstream lines(run.err);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    const auto told = nlohmann::json::parse(line);
    EXPECT_EQ(told["frame"], count);
    EXPECT_EQ(told["state"], "done");
    EXPECT_EQ(told["frames"], 3);
  }
  EXPECT_EQ(count, 3);
  EXPECT_EQ(nlohmann::json::parse(run.out)["frames"]["rendered"], 3);
}

TEST_F(VideoPicturesRunTest, APipeIsReadToo) {
  MakeVideo(3);
  Shell(VITRELL_TOOL_PATH
        " render - out/look.####.png --set lens.type=none --set fast-blur.visible=off --quiet "
        "<in.mkv");
  EXPECT_EQ(Hashes("out/look.", 0, "rgb24"), FrameHashes("in.mkv", "rgb24"));
}

}  // namespace
}  // namespace vitrell::cli
