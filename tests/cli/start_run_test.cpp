// What the program loads before it does anything.
#include <cstdlib>
#include <string>

#include "cli/tool_run.h"

namespace vitrell::cli {
namespace {

class StartRunTest : public ToolTest {
 protected:
  // What the loader finds, instead of a run of the program.
  std::string LoadedLibraries() const {
    ::setenv("LD_TRACE_LOADED_OBJECTS", "1", 1);
    const ToolResult result = Run({});
    ::unsetenv("LD_TRACE_LOADED_OBJECTS");
    return result.out;
  }
};

TEST_F(StartRunTest, LoadsNoLibrariesForFormatsItDoesNotOpen) {
  if (!VITRELL_HAS_STAND_INS) GTEST_SKIP() << "this build loads the libraries themselves";
  const std::string libraries = LoadedLibraries();
  ASSERT_NE(libraries.find("libOpenImageIO.so"), std::string::npos) << libraries;
  // Cameras, maps, logging: each loaded only by a library that a stand-in replaces.
  for (const char* const name : {"libgstreamer", "libgdal", "liblog4cplus"}) {
    EXPECT_EQ(libraries.find(name), std::string::npos) << name << " in\n" << libraries;
  }
}

}  // namespace
}  // namespace vitrell::cli
