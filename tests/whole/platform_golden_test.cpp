// The goldens on a platform without the command line, from records made on one that has it.
#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <memory>

#include "whole/golden_record.h"
#include "whole/literal_bridge.h"
#include "whole/picture_hash.h"

namespace vitrell::whole {
namespace {

TEST(PlatformGoldenTest, GoldensAreTheSameEverywhere) {
  const auto module =
      std::make_shared<headless::EffectModule>(std::filesystem::path(VITRELL_MODULE_PATH));
  PictureHash hash;
  for (const GoldenRecord& expected : ReadGoldenRecords(VITRELL_GOLDEN_RECORDS)) {
    GoldenRecord actual = RenderRecord(expected, module);
    EXPECT_EQ(
        headless::DescribeDifference(FromLiteral(expected.output), FromLiteral(actual.output)), "")
        << expected.name;
    EXPECT_EQ(actual.calls, expected.calls) << expected.name;
    CutAtWhite(actual.output);
    hash.Add(actual.output);
  }
  std::cout << "hash of all goldens: " << std::hex << hash.Value() << std::dec << std::endl;
  EXPECT_EQ(hash.Value(), kAllGoldens);
}

}  // namespace
}  // namespace vitrell::whole
