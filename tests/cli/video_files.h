// Videos for tests, made and looked at by the `ffmpeg` and `ffprobe` programs.
#ifndef VITRELL_TESTS_CLI_VIDEO_FILES_H_
#define VITRELL_TESTS_CLI_VIDEO_FILES_H_

#include <string>
#include <vector>

#include "cli/tool_run.h"

namespace vitrell::cli {

class VideoTest : public ToolTest {
 protected:
  // What a command of the shell prints; the test fails if it does.
  std::string Shell(const std::string& command) const;
  // ffmpeg in the test's folder: "-i a.mkv b.mkv".
  void Ffmpeg(const std::string& arguments) const;
  // Values of ffprobe, a line each: Probe("a.mkv", "stream=codec_name,width").
  std::string Probe(const std::string& file, const std::string& entries,
                    const std::string& more = "") const;
  // A hash of each frame, converted to a pixel format.
  std::string FrameHashes(const std::string& file, const std::string& pixelFormat) const;

  // `render` with settings that leave every pixel as it is, and more options.
  ToolResult Neutral(const std::string& input, const std::string& output,
                     const std::vector<std::string>& more = {}) const;
};

// The options that do so.
std::vector<std::string> NeutralSettings();

}  // namespace vitrell::cli

#endif  // VITRELL_TESTS_CLI_VIDEO_FILES_H_
