// The containers that videos are written in, by their extensions.
#ifndef VITRELL_MEDIA_VIDEO_CONTAINERS_H_
#define VITRELL_MEDIA_VIDEO_CONTAINERS_H_

#include <filesystem>
#include <string>
#include <string_view>

#include "media/video_encoding.h"

namespace vitrell::media {

struct VideoContainer {
  std::string_view extension;
  const char* muxer;
  const char* encoder;  // the usual one
};

// Whether the extension is one of those that videos are written with.
bool IsVideoName(const std::filesystem::path& file);
// "mov, mkv, mp4, webm, nut, y4m".
std::string VideoExtensions();

// Of the target, which may be "-". Throws Failure (wrong usage).
const VideoContainer& ContainerFor(const std::filesystem::path& target,
                                   const VideoEncoding& encoding);

// Frames without stamps of their own, one after the other at the rate, in a few pixel formats.
bool IsY4m(std::string_view muxer);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_CONTAINERS_H_
