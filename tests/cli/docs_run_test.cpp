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
    // A command may go on in the next line.
    for (std::string more; line.ends_with('\\') && std::getline(file, more);) {
      line.back() = ' ';
      line += more;
    }
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
  // The beginning of the clip that the guide draws.
  for (const char* frame : {"out/street.0001.png", "out/street.0002.png"}) {
    media::WritePictureFile(InFolder(frame),
                            media::NoisePicture(96, 54, 3, OIIO::TypeDesc::UINT8, 2));
  }
  std::size_t renders = 0;
  for (const fs::path& page : {docs.parent_path() / "README.md", docs / "guide.md"}) {
    for (const std::string& command : CommandsOf(page)) {
      EXPECT_EQ(RunInShell(command), 0) << page.filename() << ": " << command << '\n'
                                        << ReadFile("out.txt");
      if (command.starts_with("vitrell render ")) ++renders;
    }
  }
  EXPECT_GE(renders, 9U);
}

}  // namespace
}  // namespace vitrell::cli
