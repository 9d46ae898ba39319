// The pixel format that a video is written in.
#ifndef VITRELL_MEDIA_WRITTEN_PIXELS_H_
#define VITRELL_MEDIA_WRITTEN_PIXELS_H_

#include "media/video_containers.h"
#include "media/video_encoding.h"
#include "media/video_handles.h"

namespace vitrell::media {

// The wish, or the usual one of those that container and encoder take. Throws Failure (wrong usage)
// that names them.
AVPixelFormat ChoosePixelFormat(const VideoContainer& container, const AVCodec& codec,
                                const VideoEncoding& encoding, const VideoContent& content);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_WRITTEN_PIXELS_H_
