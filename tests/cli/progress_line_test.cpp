// What the progress line says.
#include <gtest/gtest.h>

#include "cli/progress_bar.h"

namespace vitrell::cli {
namespace {

TEST(ProgressLineTest, ShowsPartStageAndTimeLeft) {
  EXPECT_EQ(ProgressLine(4, 13, 0.25, 3.0),
            "[#######-----------------------]  25 %  stage 4 of 13  about 9 s left");
}

TEST(ProgressLineTest, TellsNoTimeBeforeItCanKnow) {
  EXPECT_EQ(ProgressLine(1, 10, 0.05, 3.0),
            "[#-----------------------------]   5 %  stage 1 of 10");
  EXPECT_EQ(ProgressLine(5, 10, 0.5, 0.5), "[###############---------------]  50 %  stage 5 of 10");
}

TEST(ProgressLineTest, NeverLeavesTheBar) {
  EXPECT_EQ(ProgressLine(9, 9, 1.7, 0.1), "[##############################] 100 %  stage 9 of 9");
  EXPECT_EQ(ProgressLine(1, 9, -0.2, 0.1), "[------------------------------]   0 %  stage 1 of 9");
}

TEST(ProgressLineTest, ForAProgramItIsJson) {
  EXPECT_EQ(StageAsJson(4, 13, 3.9 / 13), R"({"stage":4,"stages":13,"done":0.3})");
  EXPECT_EQ(StageAsJson(9, 9, 1.7), R"({"stage":9,"stages":9,"done":1.0})");
}

TEST(ProgressCourseTest, NeverGoesBack) {
  ProgressCourse course;
  course.SetStages(10);
  course.Reach(1, 1);
  EXPECT_DOUBLE_EQ(course.Fraction(), 0.1);
  // A second file is read.
  course.Reach(1, 0.5);
  EXPECT_DOUBLE_EQ(course.Fraction(), 0.1);
  course.Reach(10, 0.5);
  EXPECT_DOUBLE_EQ(course.Fraction(), 0.95);
  // More stages than were foreseen.
  course.Reach(12, 0);
  EXPECT_DOUBLE_EQ(course.Fraction(), 0.95);
  EXPECT_EQ(course.Stages(), 12);
  course.Reach(3, 0);
  EXPECT_EQ(course.Stage(), 12);
}

}  // namespace
}  // namespace vitrell::cli
