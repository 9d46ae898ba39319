// The commands of the first pages can be pasted one after another once the demo has run.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

// Lines of code that begin with `vitrell`, but for those about files of the reader's own.
std::vector<std::string> CommandsOf(const fs::path& page) {
  std::ifstream file(page);
  std::vector<std::string> commands;
  bool inCode = false;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("```")) inCode = !inCode;
    const bool ownFile = line.find(" in.") != std::string::npos;
    if (inCode && line.starts_with("vitrell ") && !ownFile) commands.push_back(line);
  }
  return commands;
}

class DocsRunTest : public ToolTest {
 protected:
  // In the shell, whose quotes the commands have.
  int RunInShell(const std::string& command) const {
    const std::string tool = fs::path(VITRELL_TOOL_PATH).parent_path();
    return std::system(("cd '" + Folder().string() + "' && PATH='" + tool + "':\"$PATH\" && " +
                        command + " >out.txt 2>&1")
                           .c_str());
  }
};

TEST_F(DocsRunTest, CommandsCanBePastedInOrder) {
  const fs::path docs = VITRELL_DOCS_FOLDER;
  fs::create_directory(InFolder("out"));
  fs::create_directory_symlink(docs.parent_path() / "presets", InFolder("presets"));
  media::WritePictureFile(InFolder("out/sample.png"),
                          media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT8, 1));
  std::size_t renders = 0;
  for (const fs::path& page : {docs.parent_path() / "README.md", docs / "guide.md"}) {
    for (const std::string& command : CommandsOf(page)) {
      EXPECT_EQ(RunInShell(command), 0) << page.filename() << ": " << command << '\n'
                                        << ReadFile("out.txt");
      if (command.starts_with("vitrell render out/")) ++renders;
    }
  }
  EXPECT_GE(renders, 7U);
}

}  // namespace
}  // namespace vitrell::cli
