// Rendering into files by the built command line: stills, sequences and videos; progress and
// cancel.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QProcess>
#include <QSignalSpy>
#include <string>

#include "media/picture_files.h"
#include "panel/model/command_text.h"
#include "panel/model/file_render.h"
#include "panel/test_picture.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

class FileRenderRunTest : public testing::Test {
 protected:
  FileRenderRunTest() { fs::create_directories(folder_); }
  ~FileRenderRunTest() override { fs::remove_all(folder_); }

  fs::path WriteFrames(int count, const char* pattern = "plate.###.png") const {
    for (int i = 1; i <= count; ++i) {
      const std::string number = std::to_string(1000 + i).substr(1);
      media::WritePictureFile(folder_ / ("plate." + number + ".png"),
                              media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT8, 5));
    }
    return folder_ / pattern;
  }
  fs::path MakeVideo(int frames) const {
    const fs::path file = folder_ / "clip.mkv";
    const std::string size = "testsrc=size=320x180:rate=25";
    EXPECT_EQ(
        QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i", size.c_str(), "-frames:v",
                                     QString::number(frames), "-c:v", "ffv1", file.c_str()}),
        0);
    return file;
  }
  void Start(const Source& source, const fs::path& output, const look::Settings& settings) {
    render_.Start(RenderArguments({source, 0, settings, output, VITRELL_MODULE_PATH, {}}));
  }
  // With a moving blur.
  void Start(const Source& source, const fs::path& output) {
    look::Settings settings(panel_);
    settings.Set("fast-blur.amount=0=0; 3=40");
    Start(source, output, settings);
  }
  ::testing::AssertionResult Ends(bool done) {
    if (!WaitUntil([this] { return finished_.count() == 1; })) {
      return ::testing::AssertionFailure() << "it goes on";
    }
    if (finished_[0][0].toBool() == done) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << Said();
  }
  std::string Said() const { return finished_[0][1].toString().toStdString(); }

  fs::path folder_ = fs::temp_directory_path() / ("vitrell-render-" + std::to_string(::getpid()));
  headless::EffectHost host_{fs::path(VITRELL_MODULE_PATH)};
  look::Panel panel_ = look::MakePanel(host_.Parameters());
  FileRender render_{VITRELL_TOOL_PATH};
  QSignalSpy finished_{&render_, &FileRender::Finished};
  QSignalSpy progressed_{&render_, &FileRender::Progressed};
  QSignalSpy reached_{&render_, &FileRender::Reached};
};

TEST_F(FileRenderRunTest, WhatFailedIsTold) {
  const std::unique_ptr<Source> source = OpenSource(WriteFrames(1, "plate.001.png"));
  Start(*source, "/nowhere/out.png");
  EXPECT_TRUE(Ends(false));
  EXPECT_NE(Said().find("/nowhere"), std::string::npos) << Said();
}

// At the first word of a render that takes seconds.
TEST_F(FileRenderRunTest, AStillIsCancelledWithoutAFile) {
  const fs::path file = folder_ / "large.png";
  media::WritePictureFile(file, media::NoisePicture(960, 540, 3, OIIO::TypeDesc::UINT8, 5));
  look::Settings settings(panel_);
  settings.Set("realistic-blur.visible=on");
  settings.Set("realistic-blur.amount=400");
  QObject::connect(&render_, &FileRender::Reached, [this] { render_.Cancel(); });
  Start(*OpenSource(file), folder_ / "out.png", settings);
  EXPECT_TRUE(Ends(false));
  EXPECT_FALSE(reached_.isEmpty());
  EXPECT_TRUE(finished_[0][1].toString().startsWith("Cancelled.")) << Said();
  EXPECT_FALSE(fs::exists(folder_ / "out.png"));
}

TEST_F(FileRenderRunTest, AStillTellsHowFarItIs) {
  const std::unique_ptr<Source> source = OpenSource(WriteFrames(1, "plate.001.png"));
  Start(*source, folder_ / "out.png");
  EXPECT_TRUE(Ends(true));
  EXPECT_EQ(Said().find('{'), std::string::npos) << Said();
  EXPECT_TRUE(progressed_.isEmpty());
  ASSERT_FALSE(reached_.isEmpty());
  double before = 0;
  for (const QList<QVariant>& part : reached_) {
    EXPECT_GE(part[0].toDouble(), before);
    EXPECT_LE(part[0].toDouble(), 1);
    before = part[0].toDouble();
  }
}

TEST_F(FileRenderRunTest, ASequenceTellsItsFrames) {
  const std::unique_ptr<Source> source = OpenSource(WriteFrames(3));
  EXPECT_EQ(SequenceAround(folder_ / "plate.002.png"), folder_ / "plate.###.png");
  const fs::path output = UsualOutput(*source);
  EXPECT_EQ(output, folder_ / "plate-vitrell.###.png");
  Start(*source, output);
  EXPECT_TRUE(Ends(true));
  ASSERT_EQ(progressed_.count(), 3);
  EXPECT_EQ(progressed_[2][0].toInt(), 3);
  EXPECT_EQ(progressed_[2][1].toInt(), 3);
  EXPECT_TRUE(fs::exists(folder_ / "plate-vitrell.003.png"));
}

TEST_F(FileRenderRunTest, ASequenceBecomesAVideoAndTellsItsFrames) {
  const std::unique_ptr<Source> source = OpenSource(WriteFrames(3));
  Start(*source, folder_ / "out.mkv");
  EXPECT_TRUE(Ends(true));
  ASSERT_EQ(progressed_.count(), 3);
  EXPECT_EQ(progressed_[2][0].toInt(), 3);
  EXPECT_EQ(OpenSource(folder_ / "out.mkv")->FrameCount(), 3);
}

TEST_F(FileRenderRunTest, AVideoTellsItsFramesAndHowManyThereAre) {
  const std::unique_ptr<Source> source = OpenSource(MakeVideo(4));
  const fs::path output = UsualOutput(*source);
  EXPECT_EQ(output, folder_ / "clip-vitrell.mkv");
  Start(*source, output);
  EXPECT_TRUE(Ends(true));
  ASSERT_EQ(progressed_.count(), 4);
  EXPECT_EQ(progressed_[3][0].toInt(), 4);
  EXPECT_EQ(progressed_[3][1].toInt(), 4);
  EXPECT_EQ(OpenSource(output)->FrameCount(), 4);
}

TEST_F(FileRenderRunTest, ACancelledVideoLeavesItsNameFree) {
  const std::unique_ptr<Source> source = OpenSource(MakeVideo(300));
  const fs::path output = folder_ / "out.mkv";
  Start(*source, output);
  ASSERT_TRUE(WaitUntil([this] { return progressed_.count() > 0; }));
  render_.Cancel();
  EXPECT_TRUE(Ends(false));
  EXPECT_TRUE(finished_[0][1].toString().startsWith("Cancelled.")) << Said();
  EXPECT_FALSE(fs::exists(output));
  EXPECT_TRUE(fs::exists(folder_ / "out.partial.mkv"));
  EXPECT_NE(Said().find("out.partial.mkv"), std::string::npos) << Said();
}

}  // namespace
}  // namespace vitrell::panel
