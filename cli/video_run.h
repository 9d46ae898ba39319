// The frames of a video, from the reader through the effect to the writer.
#ifndef VITRELL_CLI_VIDEO_RUN_H_
#define VITRELL_CLI_VIDEO_RUN_H_

#include <deque>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/video_crew.h"
#include "cli/video_source.h"
#include "cli/video_telling.h"
#include "media/failure.h"
#include "media/video_handles.h"
#include "media/video_writer.h"

namespace vitrell::cli {

class VideoRun {
 public:
  // All of these must outlive it.
  VideoRun(const RenderArguments& arguments, VideoSource& source, VideoCrew& crew,
           media::VideoWriter& writer, VideoTelling& telling)
      : arguments_(arguments), source_(source), crew_(crew), writer_(writer), telling_(telling) {}

  // Renders all frames and hands them to the writer in their order, and everything else of the file
  // at its place among them. What is rendered is kept, under a name that says so, when the rest
  // cannot be read, a signal comes or a worker dies. Throws Failure.
  void Run();

 private:
  // One step of the work; false when there is nothing left to do.
  bool Step();
  void ReadFrame();
  void WriteFrame();
  void TakeAnswer(const VideoFrameAnswer& answer);
  void TellAlpha();
  void WritePackets(const std::vector<media::PacketHandle>& packets);
  [[noreturn]] void FailUnfinished(int exitCode, const std::string& cause);

  const RenderArguments& arguments_;
  VideoSource& source_;
  VideoCrew& crew_;
  media::VideoWriter& writer_;
  VideoTelling& telling_;
  std::deque<VideoSourceFrame> frames_;  // that the crew has
  bool ended_ = false;
  bool toldAlpha_ = false;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_RUN_H_
