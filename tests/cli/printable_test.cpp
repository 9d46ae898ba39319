// What reaches a terminal.
#include "cli/printable.h"

#include <gtest/gtest.h>

namespace vitrell::cli {
namespace {

TEST(PrintableTest, OrdinaryTextStays) {
  EXPECT_EQ(Printable("out/a picture (2).png"), "out/a picture (2).png");
  EXPECT_EQ(Printable("B\xc3\xa4ume \xe2\x80\x93 \xf0\x9f\x8c\xb3"),
            "B\xc3\xa4ume \xe2\x80\x93 \xf0\x9f\x8c\xb3");
  EXPECT_EQ(Printable(""), "");
}

TEST(PrintableTest, ControlCharactersAreWrittenOut) {
  EXPECT_EQ(Printable("a\x1b[31mred\a.png"), "a\\x1b[31mred\\x07.png");
  EXPECT_EQ(Printable(std::string_view("\0\t\r\n\x7f", 5)), "\\x00\\x09\\x0d\\x0a\\x7f");
  // The second set: 0x9b begins a command as escape and bracket do.
  EXPECT_EQ(Printable("\xc2\x9b"
                      "2J"),
            "\\xc2\\x9b2J");
  EXPECT_EQ(Printable("\xc2\xa0"), "\xc2\xa0");
}

TEST(PrintableTest, BytesThatAreNotUtf8AreWrittenOut) {
  EXPECT_EQ(Printable("\x9b"
                      "2J"),
            "\\x9b2J");
  EXPECT_EQ(Printable("\xff\xc3"), "\\xff\\xc3");
  EXPECT_EQ(Printable("\xc0\x9b"), "\\xc0\\x9b");
}

TEST(PrintableTest, LinesStayWhereTheyAreWanted) {
  EXPECT_EQ(Printable("a\nb\x1b", true), "a\nb\\x1b");
}

}  // namespace
}  // namespace vitrell::cli
