// Walking two sets of numbers side by side.
#include "cli/video_frame_plan.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "cli/failure.h"
#include "cli/sequence_plan.h"
#include "media/standard_streams.h"
#include "media/video_input.h"

namespace vitrell::cli {
namespace {

media::FrameSet FramesOf(const std::string& text) {
  media::FrameSet frames = media::FrameSet::ParseOpen(text.empty() ? "0-" : text);
  const bool plain = !text.ends_with('-') || text.find(',') == std::string::npos;
  if (plain && frames.Smallest() >= 0 && frames.IsAscending()) return frames;
  throw Failure(kWrongUsage, "--frames " + text +
                                 ": the frames of a video count from 0 and come in their order. "
                                 "Give 10-20, 0-100x2, or 10- for all from there on.");
}

// Where the Kth of N parts begins, k from 0.
std::int64_t BeginOf(std::int64_t k, std::int64_t n, std::int64_t size) {
  return size / n * k + size % n * k / n;
}

}  // namespace

VideoFramePlan::VideoFramePlan(const RenderArguments& arguments)
    : video_(arguments.input),
      output_(*media::Sequence::Find(arguments.output)),
      frames_(FramesOf(arguments.frames.frames)) {
  const std::string& frames = arguments.frames.frames;
  const std::string& numbers = arguments.frames.framesOut;
  openFrames_ = frames.empty() || frames.ends_with('-');
  outputFrames_ = numbers.empty() ? frames_ : media::FrameSet::ParseOpen(numbers);
  const bool openNumbers = numbers.empty() || numbers.ends_with('-');
  if (openFrames_ && !openNumbers) {
    throw Failure(kWrongUsage,
                  "--frames-out: nobody knows how many frames there will be. Give the first "
                  "number, --frames-out 1-, or --frames with an end.");
  }
  if (!openFrames_) end_ = frames_.Size();
  if (!openNumbers && outputFrames_.Size() != end_) {
    throw Failure(kWrongUsage, "--frames-out: has " + std::to_string(outputFrames_.Size()) +
                                   " frames for " + std::to_string(end_) +
                                   ". Give as many, or the first one: --frames-out 1-");
  }
  ChoosePart(arguments);
  Rewind();
}

void VideoFramePlan::ChoosePart(const RenderArguments& arguments) {
  const std::optional<PartOfFrames> part = ParsePartOfFrames(arguments.frames.part);
  if (!part) return;
  std::int64_t size = end_;
  if (openFrames_) {
    if (media::IsStandardStream(arguments.input)) {
      throw Failure(kWrongUsage,
                    "--part: nobody knows how many frames come through a pipe. Give --frames with "
                    "an end.");
    }
    size = Size(media::CountVideoFrames(arguments.input));
  }
  begin_ = BeginOf(part->number - 1, part->count, size);
  // Headers and packets may tell fewer frames than there are: the last part has the rest.
  if (openFrames_ && part->number == part->count) return;
  end_ = BeginOf(part->number, part->count, size);
}

void VideoFramePlan::Rewind() {
  at_ = begin_;
  cursor_.emplace(frames_);
  cursor_->Skip(begin_);
  outputCursor_.emplace(outputFrames_);
  outputCursor_->Skip(begin_);
}

std::optional<FrameJob> VideoFramePlan::Next() {
  if (at_ >= end_) return std::nullopt;
  const std::optional<std::int64_t> frame = cursor_->Next();
  const std::optional<std::int64_t> number = outputCursor_->Next();
  if (!frame || !number) return std::nullopt;
  ++at_;
  FrameJob job;
  job.frame = *frame;
  job.input = video_;
  job.output = output_.FileOf(*number).string();
  return job;
}

std::int64_t VideoFramePlan::Size(std::int64_t framesOfVideo) const {
  if (!IsOpen()) return end_ - begin_;
  if (framesOfVideo <= 0) return 0;
  // An open set is one range that takes every frame.
  return std::max<std::int64_t>(framesOfVideo - frames_.Smallest() - begin_, 0);
}

media::FrameSet VideoFramePlan::Rest() {
  media::FrameSet rest;
  while (const std::optional<FrameJob> job = Next()) rest.Add(job->frame);
  return rest;
}

media::FrameSet VideoFramePlan::FindExisting() {
  media::FrameSet existing;
  const media::FrameSet found = output_.FramesInFolder();
  if (found.IsEmpty()) return existing;
  // Only numbers in a row go on without an end.
  const std::int64_t most = IsOpen() ? found.Largest() - outputFrames_.Smallest() + 1 : kOpen;
  while (at_ - begin_ < most) {
    const std::optional<FrameJob> job = Next();
    if (!job) break;
    std::error_code ignored;
    if (std::filesystem::exists(job->output, ignored)) existing.Add(job->frame);
  }
  Rewind();
  return existing;
}

}  // namespace vitrell::cli
