// Decoding up to a frame.
#include "media/video_finder.h"

#include <algorithm>
#include <utility>

#include "media/failure.h"
#include "media/pixel_formats.h"

namespace vitrell::media {

VideoFinder::VideoFinder(std::filesystem::path file, const VideoReadOptions& options)
    : file_(std::move(file)), options_(options), pictures_(file_, 1) {}

void VideoFinder::Begin() {
  reader_.emplace(file_, options_);
  reader_->UseThreads(1);
  at_ = -1;
}

bool VideoFinder::Advance() {
  FrameHandle next = MakeFrame();
  if (!reader_->Next(*next)) return false;
  // Packets of other streams would add up.
  static_cast<void>(reader_->TakePackets());
  frame_ = std::move(next);
  ++at_;
  return true;
}

Picture VideoFinder::At(std::int64_t number) {
  const std::int64_t wanted = last_ ? std::min(number, *last_) : number;
  if (!reader_ || wanted < at_) Begin();
  while (at_ < wanted) {
    if (Advance()) continue;
    if (at_ < 0) throw Failure(kFailed, file_.string() + ": has no frames. Check the file.");
    last_ = at_;
    break;
  }
  return pictures_.Make(*frame_, IsDeep(static_cast<AVPixelFormat>(frame_->format)));
}

}  // namespace vitrell::media
