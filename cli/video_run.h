// The frames of a video, from the reader through the effect to the writer.
#ifndef VITRELL_CLI_VIDEO_RUN_H_
#define VITRELL_CLI_VIDEO_RUN_H_

#include <deque>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/video_crew.h"
#include "cli/video_shot.h"
#include "cli/video_telling.h"
#include "media/failure.h"
#include "media/video_handles.h"
#include "media/video_writer.h"

namespace vitrell::cli {

class VideoRun {
 public:
  // All of these must outlive it.
  VideoRun(const RenderArguments& arguments, VideoShot& shot, VideoCrew& crew,
           media::VideoWriter& writer, VideoTelling& telling)
      : arguments_(arguments), shot_(shot), crew_(crew), writer_(writer), telling_(telling) {}

  // Renders all frames and hands them to the writer in their order, and everything else of the file
  // at its place among them. What is rendered is kept, under a name that says so, when the rest
  // cannot be read, a signal comes or a worker dies. Throws Failure.
  void Run();

 private:
  // What belongs to a frame that the crew has.
  struct Frame {
    media::FrameHandle marks;                  // time stamps and the like, without pixels
    std::vector<media::PacketHandle> packets;  // of other streams, that come before it
  };

  // One step of the work; false when there is nothing left to do.
  bool Step();
  void ReadFrame();
  void PutIn(const AVFrame& decoded);
  void WriteFrame();
  void TakeAnswer(const VideoFrameAnswer& answer);
  void TellAlpha();
  void WritePackets(const std::vector<media::PacketHandle>& packets);
  [[noreturn]] void FailUnfinished(int exitCode, const std::string& cause);

  const RenderArguments& arguments_;
  VideoShot& shot_;
  VideoCrew& crew_;
  media::VideoWriter& writer_;
  VideoTelling& telling_;
  media::FrameHandle decoded_ = media::MakeFrame();
  std::deque<Frame> frames_;
  bool ended_ = false;
  bool toldAlpha_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_RUN_H_
