// Sets of frames, and file names with a place for the frame's number.
#include "media/sequence.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <string>
#include <vector>

#include "media/failure.h"

namespace vitrell::media {
namespace {

std::vector<std::int64_t> FramesOf(const FrameSet& set) {
  std::vector<std::int64_t> frames;
  FrameCursor cursor(set);
  while (const auto frame = cursor.Next()) frames.push_back(*frame);
  return frames;
}

std::vector<std::int64_t> Parsed(const std::string& text) {
  return FramesOf(FrameSet::Parse(text));
}

using List = std::vector<std::int64_t>;

TEST(FrameSetTest, ReadsRangesStepsAndLists) {
  EXPECT_EQ(Parsed("1-4"), (List{1, 2, 3, 4}));
  EXPECT_EQ(Parsed("1..3"), (List{1, 2, 3}));
  EXPECT_EQ(Parsed("1-6x2"), (List{1, 3, 5}));
  EXPECT_EQ(Parsed("1-7:3"), (List{1, 4, 7}));
  EXPECT_EQ(Parsed("1,5,10-12"), (List{1, 5, 10, 11, 12}));
  EXPECT_EQ(Parsed("007"), (List{7}));
}

TEST(FrameSetTest, GoesBackwardsAndBelowZero) {
  EXPECT_EQ(Parsed("4-1"), (List{4, 3, 2, 1}));
  EXPECT_EQ(Parsed("10-1x4"), (List{10, 6, 2}));
  EXPECT_EQ(Parsed("10-1x-4"), (List{10, 6, 2}));
  EXPECT_EQ(Parsed("-3--1"), (List{-3, -2, -1}));
  EXPECT_EQ(Parsed("-1-1"), (List{-1, 0, 1}));
  EXPECT_EQ(Parsed("1..-1"), (List{1, 0, -1}));
}

TEST(FrameSetTest, AFrameCountsOnce) {
  EXPECT_EQ(Parsed("3,1-4,2"), (List{3, 1, 2, 4}));
  EXPECT_EQ(FrameSet::Parse("1-10,5-15").Size(), 15);
}

TEST(FrameSetTest, RefusesWhatIsNoSet) {
  for (const char* text : {"", "a", "1-", "-", "1--", "1-5x", "1-5x0", "1-5x-1", "1,,2", "1-5,",
                           "1.5", "1-5 ", "1-5y2", "99999999999999999999", "1...3"}) {
    EXPECT_THROW(FrameSet::Parse(text), Failure) << text;
  }
}

TEST(FrameSetTest, AMillionFramesAreOneRange) {
  const FrameSet set = FrameSet::Parse("1-1000000000000");
  EXPECT_EQ(set.Size(), 1000000000000);
  EXPECT_TRUE(set.Contains(999999999999));
  EXPECT_EQ(set.AtOrBefore(2000000000000), 1000000000000);
  EXPECT_EQ(set.Part(999999999999, 1000000000000).Text(), "999999999999");
  EXPECT_EQ(FrameSet::ParseOpen("5-").AtOrBefore(777), 777);
  FrameSet added;
  for (std::int64_t frame = 1; frame <= 1000000; ++frame) added.Add(frame);
  EXPECT_EQ(added.Text(), "1-1000000");
}

TEST(FrameSetTest, WritesWhatItReads) {
  for (const char* text : {"1001-1010,1013,1020-1030x2", "5", "-5--1", "10-1", "3,9", "9-3x3"}) {
    EXPECT_EQ(FrameSet::Parse(text).Text(), text);
  }
  FrameSet added;
  const List frames = {1, 5, 6, 7, 20, 22, 24, 26, 40};
  for (const std::int64_t frame : frames) added.Add(frame);
  EXPECT_EQ(added.Text(), "1,5-7,20-26x2,40");
  EXPECT_EQ(Parsed(added.Text()), frames);
}

TEST(FrameSetTest, PartsFollowOneAnotherAndHoldEveryFrameOnce) {
  const FrameSet set = FrameSet::Parse("1-10,20-14x2,5");
  for (const std::int64_t parts : {1, 2, 3, 7, 14, 40}) {
    List all;
    for (std::int64_t k = 1; k <= parts; ++k) {
      const List part = FramesOf(set.Part(k, parts));
      EXPECT_LE(static_cast<std::int64_t>(part.size()), set.Size() / parts + 1);
      all.insert(all.end(), part.begin(), part.end());
    }
    EXPECT_EQ(all, FramesOf(set)) << parts;
  }
}

TEST(FrameSetTest, FindsHolesAndNeighbours) {
  EXPECT_EQ(FrameSet::Parse("1-3,6,7,9").Holes().Text(), "4,5,8");
  EXPECT_TRUE(FrameSet::Parse("1-9x2").Holes().IsEmpty());
  const FrameSet set = FrameSet::Parse("5,10-20x5");
  EXPECT_EQ(set.AtOrBefore(4), std::nullopt);
  EXPECT_EQ(set.AtOrBefore(9), 5);
  EXPECT_EQ(set.AtOrBefore(15), 15);
  EXPECT_EQ(set.AtOrBefore(99), 20);
  EXPECT_EQ(FrameSet::Parse("9,3-1").Smallest(), 1);
  EXPECT_EQ(FrameSet::Parse("9,3-1").Largest(), 9);
}

std::string Named(const std::string& pattern, std::int64_t frame) {
  return Sequence::Find(pattern).value().FileOf(frame).string();
}

TEST(SequenceTest, PutsTheNumberIntoItsPlace) {
  EXPECT_EQ(Named("a/plate.####.exr", 7), "a/plate.0007.exr");
  EXPECT_EQ(Named("plate.####.exr", 123456), "plate.123456.exr");
  EXPECT_EQ(Named("p@@@_v2.png", 12), "p012_v2.png");
  EXPECT_EQ(Named("p%04d.left.png", 12), "p0012.left.png");
  EXPECT_EQ(Named("p%d.png", 12), "p12.png");
  EXPECT_EQ(Named("p.####.png", -5), "p.-005.png");
  EXPECT_EQ(Named("v#1/p.##.png", 3), "v#1/p.03.png");
}

TEST(SequenceTest, NeedsOnePlace) {
  EXPECT_FALSE(Sequence::Find("plate.exr"));
  EXPECT_FALSE(Sequence::Find("take#2/plate%.exr"));
  EXPECT_THROW(Sequence::Find("a##_b##.png"), Failure);
  EXPECT_THROW(Sequence::Find("a##_%04d.png"), Failure);
}

TEST(SequenceTest, FindsItsFramesInTheFolder) {
  std::string folder = (std::filesystem::temp_directory_path() / "vitrell-seq-XXXXXX").string();
  ASSERT_NE(::mkdtemp(folder.data()), nullptr);
  for (const char* name :
       {"p.0003.png", "p.0001.png", "p.0002.png", "p.10000.png", "p.-007.png", "p.01.png",
        "p.00004.png", "p.0005.jpg", "p.x.png", "q.0006.png", "p.0008.png.bak", "p..png"}) {
    std::ofstream(std::filesystem::path(folder) / name) << "x";
  }
  EXPECT_EQ(Sequence::Find(folder + "/p.####.png")->FramesInFolder().Text(), "-7,1-3,10000");
  std::filesystem::remove_all(folder);
  EXPECT_THROW(Sequence::Find(folder + "/p.####.png")->FramesInFolder(), Failure);
}

}  // namespace
}  // namespace vitrell::media
