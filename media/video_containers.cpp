// The table of containers.
#include "media/video_containers.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "media/failure.h"
#include "media/standard_streams.h"

namespace vitrell::media {
namespace {

constexpr std::string_view kY4mMuxer = "yuv4mpegpipe";

constexpr std::array kContainers = {
    VideoContainer{"mov", "mov", "prores_ks"},
    VideoContainer{"mkv", "matroska", "ffv1"},
    VideoContainer{"mp4", "mp4", "libx264"},
    VideoContainer{"webm", "webm", "libvpx-vp9"},
    VideoContainer{"nut", "nut", "rawvideo"},
    VideoContainer{"y4m", kY4mMuxer.data(), "wrapped_avframe"},
};

std::string ExtensionOf(const std::filesystem::path& file) {
  std::string extension = file.extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return static_cast<char>(std::tolower(c & 0xff)); });
  return extension;
}

const VideoContainer* ContainerNamed(std::string_view extension) {
  const auto* found = std::find_if(
      kContainers.begin(), kContainers.end(),
      [&](const VideoContainer& container) { return container.extension == extension; });
  return found == kContainers.end() ? nullptr : found;
}

}  // namespace

bool IsVideoName(const std::filesystem::path& file) {
  return ContainerNamed(ExtensionOf(file)) != nullptr;
}

std::string VideoExtensions() {
  std::string names;
  for (const VideoContainer& container : kContainers) {
    names += (names.empty() ? "" : ", ") + std::string(container.extension);
  }
  return names;
}

const VideoContainer& ContainerFor(const std::filesystem::path& target,
                                   const VideoEncoding& encoding) {
  const bool standard = IsStandardStream(target);
  const std::string name = !standard                    ? ExtensionOf(target)
                           : encoding.container.empty() ? "y4m"
                                                        : encoding.container;
  const VideoContainer* container = ContainerNamed(name);
  if (container == nullptr) {
    throw Failure(kWrongUsage, ShownTarget(target) + ": videos are written as " +
                                   VideoExtensions() + ". Use one of these extensions.");
  }
  return *container;
}

bool IsY4m(std::string_view muxer) { return muxer == kY4mMuxer; }

}  // namespace vitrell::media
