// Sequences on the command line: every frame as the still, failed and existing frames, notes.
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/sequence_files.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

using media::NoisePicture;
using media::ReadPictureFile;
using media::WritePictureFile;

TEST_F(SequenceRunTest, EveryFrameIsTheStillAtItsNumber) {
  MakePlate(8, 11);
  const std::string keys = "lightness.amount=0=0; 20=50";
  for (const char* jobs : {"1", "3"}) {
    const ToolResult run = Render({"--set", keys, "--jobs", jobs, "--existing", "overwrite"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_TRUE(Holds(run.out, "out/look.####.png: 4 frames rendered")) << run.out;
    EXPECT_EQ(Out(), Looks({8, 9, 10, 11}));
    for (int frame = 8; frame <= 11; ++frame) {
      const ToolResult still = Run({"render", Name("plate.", frame), "still.png", "--force",
                                    "--set", keys, "--at", std::to_string(frame)});
      EXPECT_EQ(still.exitCode, 0) << still.err;
      EXPECT_EQ(Pixels(Name("out/look.", frame)), Pixels("still.png")) << frame;
    }
    EXPECT_NE(Pixels(Name("out/look.", 8)), Pixels("plate.0008.png"));
  }
}

TEST_F(SequenceRunTest, AFailedFrameStopsTheRunUnlessItKeepsGoing) {
  MakePlate(1, 8);
  WriteFile("plate.0003.png", ReadFile("plate.0003.png").substr(0, 300));
  WriteFile("plate.0006.png", "");
  ToolResult run = Render({"--jobs", "1"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(Holds(run.err, "frame 3: plate.0003.png: is damaged")) << run.err;
  EXPECT_TRUE(Holds(run.err, "1 of 8 frames failed: 3. 5 frames are left: 4-8.")) << run.err;
  EXPECT_EQ(Out(), Looks({1, 2}));
  run =
      Render({"--keep-going", "--existing", "overwrite", "--report", "r.json", "--frames", "1-9"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(Holds(run.err, "3 of 9 frames failed: 3-9x3.")) << run.err;
  EXPECT_EQ(Out(), Looks({1, 2, 4, 5, 7, 8}));
  const auto report = nlohmann::json::parse(ReadFile("r.json"));
  EXPECT_EQ(report["result"], "failed");
  EXPECT_EQ(report["frames"]["failed"], "3-9x3");
  EXPECT_EQ(report["frames"]["rendered"], 6);
  ASSERT_EQ(report["each"].size(), 8U);
  EXPECT_EQ(report["each"][0]["input"]["width"], 24);
}

TEST_F(SequenceRunTest, ExistingFramesAreNotReplacedUnasked) {
  MakePlate(1, 3);
  WriteFile("out/look.0002.png", "precious");
  ExpectMessage(Render({}), 1, {kLook, "frames 2 already exist", "--existing"});
  EXPECT_EQ(Out(), Looks({2}));
  EXPECT_EQ(Render({"--force"}).exitCode, 0);
  EXPECT_NE(ReadFile("out/look.0002.png"), "precious");
}

// Whatever is forced; nothing of it shows before the first frame is written.
TEST_F(SequenceRunTest, NoFileThatIsReadIsReplaced) {
  namespace fs = std::filesystem;
  MakePlate(1, 3);
  WriteFile("look.json", "{}");
  fs::create_hard_link(InFolder("plate.0002.png"), InFolder("linked.json"));
  fs::copy(InFolder("plate.0001.png"), InFolder("layer.0001.png"));
  const std::vector<std::string> before = Names();
  const std::string plate = ReadFile("plate.0002.png");
  const auto refused = [&](const std::vector<std::string>& arguments, const std::string& role,
                           const std::string& other) {
    std::vector<std::string> all = {"render"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.emplace_back("--force");
    ExpectMessage(Run(all), 2, {role + " is the same file as " + other});
  };
  refused({kPlate, kLook, "--status", "plate.0003.png"}, "--status", "INPUT");
  refused({kPlate, kLook, "--save-preset", "linked.json"}, "--save-preset", "INPUT");
  refused({kPlate, kLook, "--report", "out/look.0003.png"}, "--report", "OUTPUT");
  refused({kPlate, kLook, "--preset", "look.json", "--status", "look.json"}, "--status",
          "--preset");
  refused({kPlate, kLook, "--status", "a.json", "--report", "./a.json"}, "--report", "--status");
  refused({"plate.0002.png", kPlate, "--frames", "1-3"}, "OUTPUT", "INPUT");
  refused(
      {kPlate, "layer.####.png", "--set", "lens.type=custom", "--custom-layer", "layer.0001.png"},
      "OUTPUT", "the custom layer");
  EXPECT_EQ(Names(), before);
  EXPECT_TRUE(ReadFile("plate.0002.png") == plate);
  EXPECT_EQ(Out().size(), 0U);
}

TEST_F(SequenceRunTest, ProgressIsPlainOrJson) {
  MakePlate(1, 2);
  const ToolResult json = Render({"--progress", "json", "--jobs", "1"});
  EXPECT_EQ(nlohmann::json::parse(json.err.substr(0, json.err.find('\n')))["frame"], 1) << json.err;
  const ToolResult plain = Render({"--progress", "plain", "--force", "--jobs", "1"});
  EXPECT_TRUE(Holds(plain.err, "frame 1: done, ")) << plain.err;
  EXPECT_TRUE(Holds(plain.err, "(2 of 2 frames")) << plain.err;
}

TEST_F(SequenceRunTest, ALayerMayBeASequenceWhoseLastFrameHolds) {
  MakePlate(1, 3);
  for (int frame = 1; frame <= 2; ++frame) {
    WritePictureFile(
        InFolder("mask." + std::to_string(frame) + ".png"),
        NoisePicture(24, 16, 3, OIIO::TypeDesc::UINT8, static_cast<uint32_t>(90 + frame)));
  }
  const std::vector<std::string> lens = {"--set", "lens.type=custom", "--custom-layer"};
  std::vector<std::string> arguments = lens;
  arguments.emplace_back("mask.#.png");
  const ToolResult run = Render(arguments);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_TRUE(Holds(run.err, "mask.#.png: the custom layer ends with frame 2")) << run.err;
  for (int frame = 1; frame <= 3; ++frame) {
    std::vector<std::string> still = {"render", Name("plate.", frame), "still.png", "--force"};
    still.insert(still.end(), lens.begin(), lens.end());
    still.push_back(frame == 1 ? "mask.1.png" : "mask.2.png");
    EXPECT_EQ(Run(still).exitCode, 0);
    EXPECT_EQ(Pixels(Name("out/look.", frame)), Pixels("still.png")) << frame;
  }
}

TEST_F(SequenceRunTest, NotesAreToldOnceAndOtherSizesToo) {
  MakePlate(1, 3);
  MakeFrame(4, 30, 20);
  const ToolResult run = Render({"--jobs", "1"}, kPlate, "out/look.####.jpg");
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const std::string note = "note: out/look.####.jpg: the format stores no transparency";
  EXPECT_TRUE(Holds(run.err, note)) << run.err;
  EXPECT_EQ(run.err.find(note), run.err.rfind(note));
  EXPECT_TRUE(Holds(run.err, "frame 4 has 30 x 20 pixels in 8 bits, others have 24 x 16"))
      << run.err;
  const ToolResult strict = Render({"--strict", "--jobs", "1"}, kPlate, "out/strict.####.jpg");
  EXPECT_EQ(strict.exitCode, 1);
  EXPECT_TRUE(Holds(strict.err, "frame 1: --strict: out/strict.0001.jpg")) << strict.err;
  EXPECT_FALSE(std::filesystem::exists(InFolder("out/strict.0001.jpg")));
}

// PNG holds the fingerprints itself, TIFF has them in a sidecar.
TEST_F(SequenceRunTest, SkipsOnlyWhatIsWholeAndMadeOfTheSame) {
  for (const char* type : {"png", "exr", "tif"}) {
    MakePlate(1, 6);
    const std::string look = std::string("out/l.####.") + type;
    const auto frame = [&](int number) {
      return "out/l.000" + std::to_string(number) + "." + type;
    };
    const auto render = [&](std::vector<std::string> more) {
      more.insert(more.end(), {"--existing", "skip", "--jobs", "2"});
      return Render(more, kPlate, look);
    };
    EXPECT_TRUE(Holds(render({}).out, "6 frames rendered"));
    std::vector<std::string> bytes;
    for (int i = 1; i <= 6; ++i) bytes.push_back(ReadFile(frame(i)));
    EXPECT_TRUE(Holds(render({}).out, "0 frames rendered, 6 skipped"));
    // Another input under the old name, half a frame, none, and one from elsewhere.
    WritePictureFile(InFolder("plate.0001.png"),
                     NoisePicture(24, 16, 4, OIIO::TypeDesc::UINT8, 99));
    WriteFile(frame(2), bytes[1].substr(0, bytes[1].size() / 2));
    WriteFile(frame(3), "");
    std::filesystem::remove(InFolder(frame(4)));
    ASSERT_EQ(
        Run({"render", "plate.0005.png", frame(5), "--force", "--set", "intensity=9"}).exitCode, 0);
    ToolResult check = Run({"check", look, "--frames", "1-7"});
    EXPECT_EQ(check.exitCode, 1);
    EXPECT_EQ(check.out, "missing: 4,7\ntorn: 2,3\nstale: 1,5\n") << check.err;
    EXPECT_TRUE(Holds(check.err, "6 of 7 frames are not as they should be: 1-5,7.")) << check.err;
    const ToolResult run = render({});
    EXPECT_TRUE(Holds(run.out, "5 frames rendered, 1 skipped (again: 1,5 stale, 2,3 torn)"))
        << run.out << run.err;
    for (int i = 2; i <= 6; ++i) {
      EXPECT_TRUE(ReadFile(frame(i)) == bytes[static_cast<std::size_t>(i - 1)]) << type << i;
    }
    EXPECT_EQ(Run({"check", look, "--frames", "1-6"}).exitCode, 0);
    // Values count at their frame, whatever names and keys led to them.
    EXPECT_TRUE(Holds(render({"--set", "intensity=2=100; 4=50; 6=100"}).out,
                      "3 frames rendered, "
                      "3 skipped"));
    EXPECT_EQ(std::filesystem::exists(InFolder("out/l.tif.vitrell.json")),
              std::string(type) == "tif");
  }
}

TEST_F(SequenceRunTest, WorkersStartBeforeTheLibrariesHaveThreads) {
  MakePlate(1, 4);
  for (const char* out : {"out/a.####.exr", "out/a.####.tif", "out/a.####.jpg"}) {
    const ToolResult run = Render({"--jobs", "2", "--threads", "4", "--quiet"}, kPlate, out);
    EXPECT_EQ(run.exitCode, 0) << run.err;
  }
  // And two sidecars.
  EXPECT_EQ(Out().size(), 14U);
}

TEST_F(SequenceRunTest, AlphaIsReadAsAsked) {
  const auto run = [&](const char* alpha, const char* out) {
    return Run({"render", "a.png", out, "--alpha", alpha, "--set", "intensity=0"}).exitCode;
  };
  media::FilePicture picture = NoisePicture(2, 1, 4, OIIO::TypeDesc::UINT8, 1);
  picture.spec.attribute("oiio:UnassociatedAlpha", 1);
  picture.samples = {50, 30, 10, 100, 7, 8, 9, 255};
  WritePictureFile(InFolder("a.png"), picture);
  EXPECT_EQ(run("straight", "s.png"), 0);
  EXPECT_EQ(Pixels("s.png"), picture.samples);
  // 50 / 100, 30 / 100 and 10 / 100 of white.
  EXPECT_EQ(run("premultiplied", "p.png"), 0);
  EXPECT_EQ(Pixels("p.png"), (std::vector<uint16_t>{128, 77, 26, 100, 7, 8, 9, 255}));
  EXPECT_EQ(run("ignore", "i.png"), 0);
  EXPECT_EQ(Pixels("i.png"), (std::vector<uint16_t>{50, 30, 10, 7, 8, 9}));
}

}  // namespace
}  // namespace vitrell::cli
