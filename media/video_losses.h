// What a written video lacks of the one that it was made from.
#ifndef VITRELL_MEDIA_VIDEO_LOSSES_H_
#define VITRELL_MEDIA_VIDEO_LOSSES_H_

#include <filesystem>
#include <string>
#include <vector>

#include "media/video_handles.h"

namespace vitrell::media {

// Of what is written, which may be a part of the input.
struct VideoExpectation {
  unsigned chapters = 0;
  std::string timecode;  // empty: that of the input
};

// Opens the written file and compares: metadata, chapters, timecode, display matrix, sample aspect
// and colour tags of the video. What a container cannot hold its writer leaves out without a word;
// this finds it. Whole sentences without the file's name; streams that are left out are not told.
std::vector<std::string> FindVideoLosses(const AVFormatContext& from, const AVStream& video,
                                         const std::filesystem::path& written,
                                         const VideoExpectation& expected);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_LOSSES_H_
