// What the tests of sequences have in common: a plate of small pictures, and its look.
#ifndef VITRELL_CLI_SEQUENCE_FILES_H_
#define VITRELL_CLI_SEQUENCE_FILES_H_

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/tool_run.h"
#include "media/picture_files.h"

namespace vitrell::cli {

constexpr const char* kPlate = "plate.####.png";
constexpr const char* kLook = "out/look.####.png";

class SequenceRunTest : public ToolTest {
 protected:
  SequenceRunTest() { std::filesystem::create_directory(InFolder("out")); }

  static std::string Name(const std::string& start, int frame) {
    const std::string digits = std::to_string(frame);
    return start + std::string(4 - digits.size(), '0') + digits + ".png";
  }

  void MakePlate(int first, int last) const {
    for (int frame = first; frame <= last; ++frame) MakeFrame(frame, 24, 16);
  }
  void MakeFrame(int frame, int width, int height) const {
    media::WritePictureFile(
        InFolder(Name("plate.", frame)),
        media::NoisePicture(width, height, 4, OIIO::TypeDesc::UINT8, static_cast<uint32_t>(frame)));
  }

  ToolResult Render(std::vector<std::string> more, const std::string& input = kPlate,
                    const std::string& output = kLook) const {
    more.insert(more.begin(), {"render", input, output});
    return Run(more);
  }

  std::vector<std::string> Out() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(InFolder("out"))) {
      names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  static std::vector<std::string> Looks(const std::vector<int>& frames) {
    std::vector<std::string> names;
    for (const int frame : frames) names.push_back(Name("look.", frame));
    return names;
  }
  std::vector<uint16_t> Pixels(const std::string& name) const {
    return media::ReadPictureFile(InFolder(name)).samples;
  }
};

inline bool Holds(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_FILES_H_
