// Where the frames of a video come from that is written.
#ifndef VITRELL_CLI_VIDEO_SOURCE_H_
#define VITRELL_CLI_VIDEO_SOURCE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "cli/video_frame.h"
#include "media/video_handles.h"

namespace vitrell::cli {

// One frame that is to be rendered and what belongs to it.
struct VideoSourceFrame {
  VideoFrameJob job;                 // but for what the crew fills in
  const AVFrame* decoded = nullptr;  // until the next one; null: whoever renders it reads it
  media::FrameHandle marks;          // time stamps and the like, without pixels
  std::vector<media::PacketHandle> packets;  // of other streams, that come before it
};

class VideoSource {
 public:
  VideoSource() = default;
  virtual ~VideoSource() = default;
  VideoSource(const VideoSource&) = delete;
  VideoSource& operator=(const VideoSource&) = delete;

  // As messages show it.
  virtual std::string Name() const = 0;
  // 0: unknown.
  virtual std::int64_t ExpectedFrames() const = 0;
  // False at the end. Throws Failure.
  virtual bool Next(VideoSourceFrame& frame) = 0;
  // Packets behind the last frame.
  virtual std::vector<media::PacketHandle> TakeLastPackets() { return {}; }
  // After the end: why there are not all frames, as the rest of a sentence about the input; empty
  // if all is well.
  virtual std::string Damage() const { return {}; }
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_SOURCE_H_
