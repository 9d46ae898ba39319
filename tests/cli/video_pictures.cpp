// Rendering them, and looking at what is there.
#include "cli/video_pictures.h"

#include <filesystem>

namespace vitrell::cli {

VideoPicturesTest::VideoPicturesTest() { std::filesystem::create_directory(InFolder("out")); }

void VideoPicturesTest::MakeVideo(int frames, const std::string& pixels) const {
  Ffmpeg("-f lavfi -i testsrc2=s=48x32:r=25,noise=alls=40:allf=t -frames:v " +
         std::to_string(frames) + " -c:v ffv1 -pix_fmt " + pixels + " in.mkv");
}

ToolResult VideoPicturesTest::Render(std::vector<std::string> more,
                                     const std::string& output) const {
  more.insert(more.begin(), {"render", "in.mkv", output});
  return Run(more);
}

std::string VideoPicturesTest::Hashes(const std::string& start, int first,
                                      const std::string& pixels) const {
  return Shell("ffmpeg -nostdin -v error -start_number " + std::to_string(first) + " -i " + start +
               "%04d.png -pix_fmt " + pixels + " -f framehash - | grep -v '^#' | cut -d, -f6");
}

std::string VideoPicturesTest::Out() const { return Shell("ls out | tr '\\n' ' '"); }

std::string PictureNames(const std::vector<int>& frames, const std::string& start) {
  std::string text;
  for (const int frame : frames) {
    const std::string digits = std::to_string(frame);
    text += start + std::string(4 - digits.size(), '0') + digits + ".png ";
  }
  return text;
}

}  // namespace vitrell::cli
