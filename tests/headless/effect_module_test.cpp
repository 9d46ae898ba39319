// Loading of modules, and the texts of errors.
#include "headless/effect_module.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "headless/effect_host.h"
#include "headless/host_error.h"

namespace vitrell::headless {
namespace {

using testing::HasSubstr;

std::string LoadError(const std::filesystem::path& path) {
  try {
    const EffectModule module(path);
  } catch (const HostError& error) {
    return error.what();
  }
  return "no error";
}

TEST(EffectModuleTest, LoadsAndRuns) {
  const EffectHost host{std::filesystem::path(VITRELL_TINY_MODULE)};
  EXPECT_EQ(host.Parameters().size(), 1U);
}

TEST(EffectModuleTest, MissingFileIsTold) {
  EXPECT_EQ(LoadError("/nowhere/Effect.so"),
            "There is no effect module at /nowhere/Effect.so; build the effect or name its module "
            "with --effect.");
}

TEST(EffectModuleTest, FileThatIsNoModuleIsTold) {
  const std::string path = testing::TempDir() + "vitrell_no_module.so";
  std::ofstream(path) << "text";
  EXPECT_THAT(LoadError(path), HasSubstr("cannot be loaded: "));
  std::filesystem::remove(path);
}

TEST(EffectModuleTest, ModuleWithoutEntryPointIsTold) {
  EXPECT_THAT(LoadError(VITRELL_MODULE_WITHOUT_ENTRY),
              HasSubstr("is no effect module: it exports no function EntryPointFunc"));
}

TEST(HostErrorTest, CodesHaveNamesAndMeanings) {
  EXPECT_EQ(DescribeError(516),
            "PF_Err_BAD_CALLBACK_PARAM (516): a host suite or callback that the effect needs is "
            "missing or was called wrongly");
  EXPECT_EQ(ErrorName(517), "PF_Interrupt_CANCEL");
  EXPECT_EQ(ErrorName(4), "PF_Err_OUT_OF_MEMORY");
  EXPECT_EQ(ErrorName(-3), "unknown error");
}

}  // namespace
}  // namespace vitrell::headless
