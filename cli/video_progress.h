// How far the frames of a video are.
#ifndef VITRELL_CLI_VIDEO_PROGRESS_H_
#define VITRELL_CLI_VIDEO_PROGRESS_H_

#include <cstdint>
#include <string>

namespace vitrell::cli {

// "[######------]  42 %  frame 42 of 100  12.3 frames/s  about 5 s left"; without the number of all
// frames (0: unknown) "frame 42  12.3 frames/s". Time left is told once a second has passed.
std::string FrameProgressLine(std::int64_t done, std::int64_t all, double elapsedSeconds);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_PROGRESS_H_
