// --frames of a video.
#ifndef VITRELL_CLI_VIDEO_RANGE_H_
#define VITRELL_CLI_VIDEO_RANGE_H_

#include <cstdint>
#include <string>

#include "media/video_excerpt.h"

namespace vitrell::cli {

// Frames beyond this number are not asked for.
inline constexpr std::int64_t kMostVideoFrames = 1'000'000'000;

// "10-20", "10..20", "10" and "10-" for all from there on; empty: the whole video. Throws Failure
// (wrong usage).
media::VideoRange ParseVideoRange(const std::string& text);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_RANGE_H_
