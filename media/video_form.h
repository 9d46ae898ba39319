// In which container, codec and pixel format a video is written.
#ifndef VITRELL_MEDIA_VIDEO_FORM_H_
#define VITRELL_MEDIA_VIDEO_FORM_H_

#include <filesystem>

#include "media/video_encoding.h"
#include "media/video_handles.h"

namespace vitrell::media {

struct VideoForm {
  const AVOutputFormat* container = nullptr;
  const AVCodec* codec = nullptr;
  AVPixelFormat pixelFormat = AV_PIX_FMT_NONE;
};

// Refuses containers, codecs and wishes that do not go together, before anything is read. `target`
// may be "-". Throws Failure (wrong usage).
void CheckVideoEncoding(const std::filesystem::path& target, const VideoEncoding& encoding);

// What the target is written as. Throws Failure, also for sizes that the pixel format cannot have.
VideoForm ChooseVideoForm(const std::filesystem::path& target, const VideoEncoding& encoding,
                          const VideoContent& content);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_FORM_H_
