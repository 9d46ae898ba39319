// Which frames of a sequence are rendered, from which files into which.
#ifndef VITRELL_CLI_SEQUENCE_PLAN_H_
#define VITRELL_CLI_SEQUENCE_PLAN_H_

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/arguments.h"
#include "cli/frame_job.h"
#include "media/frame_set.h"
#include "media/sequence.h"

namespace vitrell::cli {

// Whether the name has a place for a frame's number and is not itself the name of a file.
bool IsSequenceName(const std::string& name);

// Whether the arguments are for a sequence: INPUT has a place for the frame's number and is not
// itself the name of a file, or frames are asked for. A still may have any name as OUTPUT.
bool MeansSequence(const RenderArguments& arguments);

// The Kth of N: of --part K/N.
struct PartOfFrames {
  std::int64_t number = 1;
  std::int64_t count = 1;
};
// Nothing if the text is not of that form. Throws Failure (wrong usage) if K is not one of N.
std::optional<PartOfFrames> ParsePartOfFrames(const std::string& text);

class SequencePlan {
 public:
  // Looks into the folders. Throws Failure over names and numbers that do not fit together, and
  // where there are no frames at all.
  // OUTPUT may be one video, which all frames go into.
  SequencePlan(const RenderArguments& arguments, const std::string& layer);

  // How many jobs Next gives.
  std::int64_t Size() const { return end_ - begin_; }
  // The next job; nothing after the last one.
  std::optional<FrameJob> Next();
  // From the first frame again.
  void Rewind();

  // Frames of this part that were asked for, or lie between those that were found, and have no
  // file.
  const media::FrameSet& Missing() const { return missing_; }
  // Whether the missing ones get no job.
  bool LeavesMissingOut() const { return leaveOut_; }
  // The first frame that there is of the input, whatever is rendered of it; of one picture the
  // first that is rendered.
  std::int64_t FirstFrame() const { return input_ ? found_.Smallest() : frames_.Smallest(); }
  // The last frame of the whole sequence, whatever the part.
  std::int64_t LastFrame() const { return frames_.Largest(); }
  // Throws Failure if frames are missing and --missing is fail.
  void RefuseMissing(const RenderArguments& arguments) const;
  // Warnings in whole sentences: holes, a layer with fewer frames.
  const std::vector<std::string>& Advice() const { return advice_; }

  // The name of the output with the place for its number; not for a video.
  const media::Sequence& Output() const { return *output_; }

 private:
  void FindSequences(const RenderArguments& arguments);
  void ChooseFrames(const RenderArguments& arguments);
  void FindMissing(const RenderArguments& arguments);
  void ChoosePart(const RenderArguments& arguments);
  void FindLayer(const std::string& layer);
  FrameJob JobOf(std::int64_t frame, std::int64_t outputFrame) const;

  std::string still_;  // the input, where it is one picture for all frames
  std::string video_;  // the output, where it is one
  std::optional<media::Sequence> input_;
  std::optional<media::Sequence> output_;
  std::string layerFile_;
  std::optional<media::Sequence> layer_;
  media::FrameSet found_;  // of the input
  media::FrameSet layerFrames_;
  media::FrameSet frames_;        // all that are rendered, of all parts
  media::FrameSet outputFrames_;  // one for each of these
  media::FrameSet missing_;
  bool leaveOut_ = false;
  bool black_ = false;
  std::int64_t begin_ = 0;  // of this part, among the frames
  std::int64_t end_ = 0;
  std::int64_t at_ = 0;
  std::optional<media::FrameCursor> cursor_;
  std::optional<media::FrameCursor> outputCursor_;
  std::vector<std::string> advice_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_PLAN_H_
