// A video that comes from no file: frames at a rate, and nothing beside them.
#ifndef VITRELL_MEDIA_BLANK_VIDEO_H_
#define VITRELL_MEDIA_BLANK_VIDEO_H_

#include <cstdint>

#include "media/video_handles.h"
#include "media/video_writer.h"

namespace vitrell::media {

// 24000/1001 for 23.976 and so on; whole numbers as they are.
AVRational ExactRate(double framesPerSecond);

// RGB in 8 or 16 bits.
AVPixelFormat RgbFormat(bool deep, bool alpha);

class BlankVideo {
 public:
  // Throws std::bad_alloc.
  explicit BlankVideo(AVRational rate);

  VideoOrigin Origin() const { return {*container_, *stream_, rate_}; }
  // The time stamps of a frame by its place, without pixels.
  static FrameHandle Marks(std::int64_t place);

 private:
  AVRational rate_;
  MuxerHandle container_;
  AVStream* stream_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_BLANK_VIDEO_H_
