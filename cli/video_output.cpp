// Opening, filling and naming a video.
#include "cli/video_output.h"

#include "cli/still_render.h"
#include "cli/video_checks.h"
#include "cli/video_facts.h"
#include "cli/video_run.h"

namespace vitrell::cli {

void VideoOutput::Open(const media::VideoOrigin& origin, const AVFrame& first, bool deep,
                       const std::optional<media::CarriedSpan>& span, const VideoFacts& input) {
  const bool dropAlpha = AlphaOf(arguments_.alpha) == media::AlphaMeaning::kIgnored;
  writer_.emplace(origin, first, deep,
                  media::VideoWriteOrder{arguments_.output, arguments_.dryRun, dropAlpha,
                                         VideoEncodingOf(arguments_), arguments_.threads,
                                         encoderThreads_, span});
  telling_.GetReport().videoOutput = OutputFacts(arguments_.output, writer_->Form(), input);
  telling_.TellLosses(*writer_);
  telling_.GetNotes().FailIfStrict();
}

void VideoOutput::Render(VideoSource& source, VideoCrew& crew) {
  VideoRun(arguments_, source, crew, *writer_, telling_).Run();
  writer_->Finish();
  telling_.TellLosses(*writer_);
  telling_.GetNotes().FailIfStrict();
  writer_->Commit(arguments_.force);
  telling_.GetReport().writeSeconds += telling_.Clock().Lap();
}

}  // namespace vitrell::cli
