// Frames and their files.
#include "cli/sequence_plan.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "cli/failure.h"
#include "media/output_file.h"
#include "media/standard_streams.h"
#include "media/video_containers.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

bool IsFile(const std::string& name) {
  std::error_code ignored;
  return fs::exists(name, ignored);
}

// The two ends of a set by number; the nearest frame that is there stands in for one that is not.
std::int64_t NearestIn(const media::FrameSet& found, std::int64_t frame) {
  return found.AtOrBefore(frame).value_or(found.Smallest());
}

[[noreturn]] void FailOverUse(const std::string& message) { throw Failure(kWrongUsage, message); }

}  // namespace

bool IsSequenceName(const std::string& name) {
  return !media::IsStandardStream(name) && !IsFile(name) && media::Sequence::Find(name);
}

bool MeansSequence(const RenderArguments& arguments) {
  return !arguments.frames.frames.empty() || !arguments.frames.framesOut.empty() ||
         IsSequenceName(arguments.input);
}

std::optional<PartOfFrames> ParsePartOfFrames(const std::string& text) {
  PartOfFrames part;
  const char* const end = text.data() + text.size();
  const auto [slash, first] = std::from_chars(text.data(), end, part.number);
  if (first != std::errc() || slash == end || *slash != '/') return std::nullopt;
  const auto [last, second] = std::from_chars(slash + 1, end, part.count);
  if (second != std::errc() || last != end) return std::nullopt;
  if (part.number < 1 || part.number > part.count) {
    FailOverUse("--part " + text + ": is none of its parts. Give 1/" + std::to_string(part.count) +
                " to " + std::to_string(part.count) + "/" + std::to_string(part.count) + ".");
  }
  return part;
}

SequencePlan::SequencePlan(const RenderArguments& arguments, const std::string& layer) {
  FindSequences(arguments);
  ChooseFrames(arguments);
  ChoosePart(arguments);
  Rewind();
  FindMissing(arguments);
  FindLayer(layer);
  Rewind();
}

void SequencePlan::FindSequences(const RenderArguments& arguments) {
  if (arguments.effect.at != 0) {
    FailOverUse("--at: is for one picture; the values of a sequence move with its frames.");
  }
  for (const std::string& name : {arguments.input, arguments.output}) {
    if (!media::IsStandardStream(name)) continue;
    FailOverUse("a sequence needs files; - is one picture. Write plate.####.png.");
  }
  if (!IsFile(arguments.input)) input_ = media::Sequence::Find(arguments.input);
  if (!input_) still_ = arguments.input;
  if (!input_ && arguments.frames.frames.empty()) {
    FailOverUse(arguments.input +
                ": has no place for a frame's number. Write plate.####.png, or give --frames for "
                "one picture in all frames.");
  }
  output_ = media::Sequence::Find(arguments.output);
  if (!output_ && media::IsVideoName(arguments.output)) {
    video_ = arguments.output;
    return;
  }
  if (!output_) {
    FailOverUse(arguments.output +
                ": has no place for a frame's number, and every frame would replace the one "
                "before. Write look.####.png.");
  }
  if (input_ && media::IsSameFile(input_->FileOf(1), output_->FileOf(1))) {
    FailOverUse(
        arguments.output +
        ": OUTPUT is the same sequence as INPUT, which would be lost. Choose another name.");
  }
}

void SequencePlan::ChooseFrames(const RenderArguments& arguments) {
  if (input_) found_ = input_->FramesInFolder();
  if (input_ && found_.IsEmpty()) {
    throw Failure(kFailed, arguments.input +
                               ": there is no frame of this name. Check the name and the folder.");
  }
  const FrameArguments& wanted = arguments.frames;
  const bool fill = wanted.missing == "hold" || wanted.missing == "black";
  if (!wanted.frames.empty()) {
    frames_ = media::FrameSet::Parse(wanted.frames);
  } else if (fill) {
    frames_ = media::FrameSet::Parse(std::to_string(found_.Smallest()) + "-" +
                                     std::to_string(found_.Largest()));
  } else {
    frames_ = found_;
  }
  outputFrames_ = wanted.framesOut.empty() ? frames_ : media::FrameSet::ParseOpen(wanted.framesOut);
  const std::int64_t size = frames_.Size();
  if (!wanted.framesOut.ends_with('-') && outputFrames_.Size() != size) {
    FailOverUse("--frames-out: has " + std::to_string(outputFrames_.Size()) + " frames for " +
                std::to_string(size) + ". Give as many, or the first one: --frames-out 1-");
  }
}

void SequencePlan::FindMissing(const RenderArguments& arguments) {
  const std::string& missing = arguments.frames.missing;
  black_ = missing == "black";
  if (!input_) return;
  if (arguments.frames.frames.empty() && !black_ && missing != "hold") {
    if (const media::FrameSet holes = found_.Holes(); !holes.IsEmpty()) {
      advice_.push_back(arguments.input + ": frames " + holes.Text() +
                        " are not there and are left out; --missing hold or black fills them.");
    }
    return;
  }
  for (; at_ < end_; ++at_) {
    const std::optional<std::int64_t> frame = cursor_->Next();
    if (frame && !found_.Contains(*frame)) missing_.Add(*frame);
  }
  leaveOut_ = missing == "skip" || missing == "fail";
  if (missing_.IsEmpty() || missing == "fail") return;
  advice_.push_back(arguments.input + ": frames " + missing_.Text() + " are not there and are " +
                    (missing == "skip"    ? "left out."
                     : missing == "black" ? "black."
                                          : "taken from the frame before."));
}

void SequencePlan::RefuseMissing(const RenderArguments& arguments) const {
  if (missing_.IsEmpty() || arguments.frames.missing != "fail") return;
  throw Failure(kFailed, arguments.input + ": frames " + missing_.Text() +
                             " are not there. Add --missing skip, hold or black.");
}

void SequencePlan::ChoosePart(const RenderArguments& arguments) {
  end_ = frames_.Size();
  const std::optional<PartOfFrames> part = ParsePartOfFrames(arguments.frames.part);
  if (!part) return;
  const std::int64_t size = end_;
  const auto beginOf = [&](std::int64_t number) {
    return size / part->count * number + size % part->count * number / part->count;
  };
  begin_ = beginOf(part->number - 1);
  end_ = beginOf(part->number);
}

void SequencePlan::FindLayer(const std::string& layer) {
  layerFile_ = layer;
  if (layer.empty() || IsFile(layer)) return;
  layer_ = media::Sequence::Find(layer);
  if (!layer_) return;
  layerFrames_ = layer_->FramesInFolder();
  if (layerFrames_.IsEmpty()) {
    throw Failure(kFailed,
                  layer + ": there is no frame of this name. Check the name and the folder.");
  }
  if (layerFrames_.Largest() < LastFrame()) {
    advice_.push_back(layer + ": the custom layer ends with frame " +
                      std::to_string(layerFrames_.Largest()) + ", which holds for all after it.");
  }
}

void SequencePlan::Rewind() {
  at_ = begin_;
  cursor_.emplace(frames_);
  cursor_->Skip(begin_);
  outputCursor_.emplace(outputFrames_);
  outputCursor_->Skip(begin_);
}

std::optional<FrameJob> SequencePlan::Next() {
  while (at_ < end_) {
    ++at_;
    const std::optional<std::int64_t> frame = cursor_->Next();
    const std::optional<std::int64_t> output = outputCursor_->Next();
    if (!frame || !output) return std::nullopt;
    if (leaveOut_ && missing_.Contains(*frame)) continue;
    return JobOf(*frame, *output);
  }
  return std::nullopt;
}

FrameJob SequencePlan::JobOf(std::int64_t frame, std::int64_t outputFrame) const {
  FrameJob job;
  job.frame = frame;
  job.input = input_ ? input_->FileOf(NearestIn(found_, frame)).string() : still_;
  job.black = black_ && missing_.Contains(frame);
  job.output = output_ ? output_->FileOf(outputFrame).string() : video_;
  job.layer = layer_ ? layer_->FileOf(NearestIn(layerFrames_, frame)).string() : layerFile_;
  return job;
}

}  // namespace vitrell::cli
