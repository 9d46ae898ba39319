// The video that is written, from its first frame to its name.
#ifndef VITRELL_CLI_VIDEO_OUTPUT_H_
#define VITRELL_CLI_VIDEO_OUTPUT_H_

#include <optional>

#include "cli/arguments.h"
#include "cli/report.h"
#include "cli/video_crew.h"
#include "cli/video_source.h"
#include "cli/video_telling.h"
#include "media/carried_streams.h"
#include "media/video_writer.h"

namespace vitrell::cli {

class VideoOutput {
 public:
  // `encoderThreads`: see CountEncoderThreads. The others must outlive it.
  VideoOutput(const RenderArguments& arguments, int encoderThreads, VideoTelling& telling)
      : arguments_(arguments), encoderThreads_(encoderThreads), telling_(telling) {}

  // The form depends on the first frame, which need not have pixels; `input` is what the report
  // tells of the other side. Throws Failure.
  void Open(const media::VideoOrigin& origin, const AVFrame& first, bool deep,
            const std::optional<media::CarriedSpan>& span, const VideoFacts& input);
  // All frames, and the name. Throws Failure.
  void Render(VideoSource& source, VideoCrew& crew);
  // A file without a name is gone then.
  void Close() { writer_.reset(); }

 private:
  const RenderArguments& arguments_;
  int encoderThreads_;
  VideoTelling& telling_;
  std::optional<media::VideoWriter> writer_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_OUTPUT_H_
