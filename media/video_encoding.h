// What a video is written from: the wishes, and what the frames are.
#ifndef VITRELL_MEDIA_VIDEO_ENCODING_H_
#define VITRELL_MEDIA_VIDEO_ENCODING_H_

#include <optional>
#include <string>

#include "media/video_handles.h"

namespace vitrell::media {

// What was asked for; the rest is the container's usual.
struct VideoEncoding {
  std::string container;       // "y4m", "nut": of standard output; empty: by the extension
  std::string codec;           // a name of the libraries': "prores", "libx265"
  std::string pixelFormat;     // likewise: "yuv422p10le"
  std::optional<int> quality;  // 1 to 100
  bool lossless = false;
};

// Of the frames that are to be written.
struct VideoContent {
  AVPixelFormat sourceFormat = AV_PIX_FMT_NONE;
  bool deep = false;
  bool alpha = false;
  int width = 0;
  int height = 0;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_ENCODING_H_
