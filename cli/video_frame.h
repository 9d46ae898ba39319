// What is told to a worker about one frame of a video, and what comes back; the pixels are in
// memory that both have.
#ifndef VITRELL_CLI_VIDEO_FRAME_H_
#define VITRELL_CLI_VIDEO_FRAME_H_

#include <cstdint>
#include <string>

#include "cli/frame_job.h"
#include "media/shared_frame.h"

namespace vitrell::cli {

// Where a frame is while it is rendered.
struct VideoSlot {
  media::SharedFrame decoded;
  media::SharedFrame rendered;
};

struct VideoFrameJob {
  int slot = 0;
  std::int64_t number = 0;  // of the video's frame, from 0
  double seconds = 0;       // since the first one of the range
  bool overBlack = false;   // the output stores no transparency
  media::FrameForm form;    // of the decoded frame; no format: none
  FrameJob still;           // what is rendered in its place
};

// Of all frames of one video.
struct VideoSize {
  int width = 0;
  int height = 0;
  bool deep = false;  // 16 bits
};

struct VideoFrameAnswer {
  FrameAnswer frame;
  bool endsVideo = false;  // it fails, and those before it are kept
  bool transparent = false;
  double readSeconds = 0;
  double effectSeconds = 0;
  double writeSeconds = 0;
};

// As bytes between two processes of one program.
std::string Pack(const VideoFrameJob& job);
std::string Pack(const VideoFrameAnswer& answer);
VideoFrameJob UnpackVideoJob(const std::string& bytes);
VideoFrameAnswer UnpackVideoAnswer(const std::string& bytes);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_FRAME_H_
