// The process that guarded cases run in tells what went wrong, and goes on.
#include "reliability/guarded_cases.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/platform.h"
#include "reliability/sanitizers.h"

namespace vitrell::reliability {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

std::string TouchClosedPage() {
  const std::size_t page = headless::PageBytes();
  std::byte* const memory = headless::MapBetweenClosedPages(page);
  *static_cast<volatile std::byte*>(memory + page - 1) = std::byte{1};
  *static_cast<volatile std::byte*>(memory + page) = std::byte{1};
  return "";
}

TEST(GuardedCasesTest, NamesWhatCrashesAndWhatComplains) {
  if (kSanitized) GTEST_SKIP() << "a sanitizer ends the process in its own way";
  const auto fine = [] { return std::string(); };
  const auto complains = [] { return std::string("is not right"); };
  EXPECT_THAT(RunGuarded({{"first", fine},
                          {"closed", TouchClosedPage},
                          {"third", fine},
                          {"wrong", complains},
                          {"last", fine}}),
              ElementsAre(StartsWith("closed: ends "), "wrong: is not right"));
  EXPECT_THAT(RunGuarded({{"other", complains}}), ElementsAre("other: is not right"));
  EXPECT_THAT(RunGuarded({{"all well", fine}}), ElementsAre());
}

}  // namespace
}  // namespace vitrell::reliability
