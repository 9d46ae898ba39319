// The frames of a sequence as those of a video.
#ifndef VITRELL_CLI_SEQUENCE_SOURCE_H_
#define VITRELL_CLI_SEQUENCE_SOURCE_H_

#include <cstdint>
#include <string>

#include "cli/sequence_plan.h"
#include "cli/video_source.h"

namespace vitrell::cli {

class SequenceSource : public VideoSource {
 public:
  // The plan must outlive it. `name` is that of the sequence.
  SequenceSource(std::string name, SequencePlan& plan) : name_(std::move(name)), plan_(plan) {}

  std::string Name() const override { return name_; }
  std::int64_t ExpectedFrames() const override { return plan_.Size(); }
  bool Next(VideoSourceFrame& frame) override;

 private:
  std::string name_;
  SequencePlan& plan_;
  std::int64_t place_ = 0;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_SEQUENCE_SOURCE_H_
