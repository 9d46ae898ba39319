// Pictures, sequences and videos as sources; FFmpeg's program makes the videos.
#include <gtest/gtest.h>
#include <unistd.h>

#include <QProcess>
#include <fstream>

#include "media/failure.h"
#include "media/picture_files.h"
#include "panel/model/source.h"

namespace vitrell::panel {
namespace {

namespace fs = std::filesystem;

class SourceRunTest : public testing::Test {
 protected:
  SourceRunTest() { fs::create_directories(folder_); }
  ~SourceRunTest() override { fs::remove_all(folder_); }

  fs::path Picture(const char* name, uint32_t seed) const {
    media::WritePictureFile(folder_ / name,
                            media::NoisePicture(32, 18, 3, OIIO::TypeDesc::UINT8, seed));
    return folder_ / name;
  }
  std::string MessageOf(const fs::path& file) const {
    try {
      OpenSource(file);
    } catch (const media::Failure& failure) {
      return failure.what();
    }
    return "nothing";
  }

  fs::path folder_ = fs::temp_directory_path() / ("vitrell-source-" + std::to_string(::getpid()));
};

TEST_F(SourceRunTest, AVideoGivesTheSameFramesInAnyOrder) {
  const fs::path file = folder_ / "clip.mkv";
  ASSERT_EQ(QProcess::execute("ffmpeg", {"-v", "error", "-f", "lavfi", "-i",
                                         "testsrc=size=64x36:rate=12", "-frames:v", "9", "-c:v",
                                         "ffv1", QString::fromStdString(file.string())}),
            0);
  const std::unique_ptr<Source> source = OpenSource(file);
  EXPECT_TRUE(source->IsVideo());
  ASSERT_EQ(source->FrameCount(), 9);
  EXPECT_EQ(source->FramesPerSecond(), 12);
  EXPECT_EQ(source->Times().length, 9);
  std::vector<std::uint64_t> forward;
  for (int i = 0; i < 9; ++i) forward.push_back(source->Read(i)->world.Checksum());
  EXPECT_NE(forward[0], forward[8]);
  const std::unique_ptr<Source> again = OpenSource(file);
  for (const int i : {7, 2, 8, 0, 5}) {
    EXPECT_EQ(again->Read(i)->world.Checksum(), forward[static_cast<std::size_t>(i)]) << i;
    EXPECT_EQ(again->Read(i)->number, i);
  }
}

TEST_F(SourceRunTest, ASequenceHasTheNumbersOfItsFiles) {
  for (const int number : {8, 9, 11}) {
    Picture(("plate." + std::to_string(number) + ".png").c_str(), static_cast<uint32_t>(number));
  }
  const std::unique_ptr<Source> source = OpenSource(folder_ / "plate.#.png");
  ASSERT_EQ(source->FrameCount(), 3);
  EXPECT_EQ(source->NumberOf(2), 11);
  EXPECT_EQ(source->Times().length, 12);
  EXPECT_EQ(source->Read(2)->world.Checksum(),
            OpenSource(folder_ / "plate.11.png")->Read(0)->world.Checksum());
}

TEST_F(SourceRunTest, WhatCannotBeReadIsToldByName) {
  std::ofstream(folder_ / "notes.txt") << "nothing to see";
  EXPECT_NE(MessageOf(folder_ / "notes.txt").find("notes.txt"), std::string::npos);
  EXPECT_NE(MessageOf(folder_ / "missing.png").find("missing.png"), std::string::npos);
  EXPECT_NE(MessageOf(folder_ / "plate.####.png").find("plate.####.png"), std::string::npos);
  EXPECT_NE(MessageOf(folder_).find(folder_.string()), std::string::npos);
}

TEST_F(SourceRunTest, OnlyNumberedNeighboursMakeASequence) {
  EXPECT_EQ(SequenceAround(Picture("a.1.png", 1)), "");
  EXPECT_EQ(SequenceAround(Picture("a.2.png", 2)), folder_ / "a.#.png");
  EXPECT_EQ(SequenceAround(Picture("street.png", 3)), "");
}

}  // namespace
}  // namespace vitrell::panel
