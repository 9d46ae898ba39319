// Frames that are to be told of together.
#ifndef VITRELL_CLI_GATHERED_FRAMES_H_
#define VITRELL_CLI_GATHERED_FRAMES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "media/frame_set.h"

namespace vitrell::cli {

// Takes them in any order, each once. Those that come in the order of their numbers take no memory
// for each, as a million that are missing do.
class GatheredFrames {
 public:
  void Add(std::int64_t frame);
  void AddAll(const GatheredFrames& others);

  bool IsEmpty() const { return size_ == 0; }
  std::int64_t Size() const { return size_; }
  // In the order of their numbers, as a set that can be given to --frames.
  std::string Text() const;

 private:
  media::FrameSet ascending_;
  std::int64_t last_ = 0;           // of these
  std::vector<std::int64_t> late_;  // those that came after one behind them
  std::int64_t size_ = 0;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_GATHERED_FRAMES_H_
