// A frame of a video as a picture, for what takes pictures.
#ifndef VITRELL_MEDIA_VIDEO_PICTURE_H_
#define VITRELL_MEDIA_VIDEO_PICTURE_H_

#include <filesystem>
#include <utility>

#include "media/frame_converter.h"
#include "media/picture.h"
#include "media/video_handles.h"

namespace vitrell::media {

class FramePictures {
 public:
  // `video` is the file that messages name and dates are taken from.
  FramePictures(std::filesystem::path video, int threads)
      : video_(std::move(video)), converter_(threads) {}

  // Red, green and blue, and alpha where the frame has it, in 8 or (deep) 16 bits: the same numbers
  // that the effect gets of a video. Throws Failure.
  Picture Make(const AVFrame& decoded, bool deep, AlphaMeaning alpha = AlphaMeaning::kAsInFile);

 private:
  AVFrame& Rgb(const AVFrame& decoded, bool deep);

  std::filesystem::path video_;
  FrameConverter converter_;
  FrameHandle rgb_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_PICTURE_H_
