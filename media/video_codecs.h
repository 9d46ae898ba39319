// The codecs that videos are written with: which encoder of the libraries, and with which options.
#ifndef VITRELL_MEDIA_VIDEO_CODECS_H_
#define VITRELL_MEDIA_VIDEO_CODECS_H_

#include "media/video_containers.h"
#include "media/video_encoding.h"
#include "media/video_handles.h"

namespace vitrell::media {

// The wish, or the container's usual one, which is null where the libraries lack it. Throws Failure
// (wrong usage).
const AVCodec* EncoderFor(const VideoContainer& container, const VideoEncoding& encoding);

// Refuses a quality where the encoder has no scale of it, and a lossless one that is none. Throws
// Failure (wrong usage).
void CheckQuality(const AVCodec& codec, const VideoEncoding& encoding);

// What the encoder is opened with for frames of this form and size: quality, profile.
void SetCodecOptions(const VideoEncoding& encoding, const AVCodec& codec, AVPixelFormat pixelFormat,
                     int width, int height, AVDictionary** options);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_CODECS_H_
