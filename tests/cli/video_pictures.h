// A video, and the pictures that are rendered from its frames.
#ifndef VITRELL_TESTS_CLI_VIDEO_PICTURES_H_
#define VITRELL_TESTS_CLI_VIDEO_PICTURES_H_

#include <string>
#include <vector>

#include "cli/video_files.h"

namespace vitrell::cli {

inline constexpr const char* kPictures = "out/look.####.png";

class VideoPicturesTest : public VideoTest {
 protected:
  VideoPicturesTest();

  // in.mkv, of which no frame is like another.
  void MakeVideo(int frames, const std::string& pixels = "bgr0") const;
  ToolResult Render(std::vector<std::string> more, const std::string& output = kPictures) const;
  // A hash of each picture from a number on: Hashes("out/look.", 0, "rgb24").
  std::string Hashes(const std::string& start, int first, const std::string& pixels) const;
  // The names of what was written: "look.0000.png look.0001.png ".
  std::string Out() const;
};

// The names that these frames have there.
std::string PictureNames(const std::vector<int>& frames, const std::string& start = "look.");

}  // namespace vitrell::cli

#endif  // VITRELL_TESTS_CLI_VIDEO_PICTURES_H_
