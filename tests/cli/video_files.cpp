// Calling the two programs.
#include "cli/video_files.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace vitrell::cli {

std::string VideoTest::Shell(const std::string& command) const {
  const std::string line = "cd '" + Folder().string() + "' && " + command;
  std::FILE* pipe = ::popen(line.c_str(), "r");
  std::string text;
  std::array<char, 4096> block{};
  while (const std::size_t size = std::fread(block.data(), 1, block.size(), pipe)) {
    text.append(block.data(), size);
  }
  const int status = ::pclose(pipe);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command;
  return text;
}

void VideoTest::Ffmpeg(const std::string& arguments) const {
  Shell("ffmpeg -nostdin -v error -y " + arguments);
}

std::string VideoTest::Probe(const std::string& file, const std::string& entries,
                             const std::string& more) const {
  return Shell("ffprobe -v error -of default=nw=1 " + more + " -show_entries '" + entries + "' " +
               file);
}

std::string VideoTest::FrameHashes(const std::string& file, const std::string& pixelFormat) const {
  return Shell("ffmpeg -nostdin -v error -i " + file +
               " -map 0:v:0 -fps_mode passthrough -pix_fmt " + pixelFormat +
               " -f framehash - | grep -v '^#' | cut -d, -f6");
}

ToolResult VideoTest::Neutral(const std::string& input, const std::string& output,
                              const std::vector<std::string>& more) const {
  std::vector<std::string> arguments = {"render", input, output};
  for (const std::vector<std::string>& part : {NeutralSettings(), more}) {
    arguments.insert(arguments.end(), part.begin(), part.end());
  }
  return Run(arguments);
}

std::vector<std::string> NeutralSettings() {
  return {"--set", "lens.type=none", "--set", "fast-blur.visible=off"};
}

}  // namespace vitrell::cli
