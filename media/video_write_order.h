// What a video is written from, and how.
#ifndef VITRELL_MEDIA_VIDEO_WRITE_ORDER_H_
#define VITRELL_MEDIA_VIDEO_WRITE_ORDER_H_

#include <filesystem>
#include <optional>

#include "media/carried_streams.h"
#include "media/video_encoding.h"
#include "media/video_handles.h"

namespace vitrell::media {

// What a written video comes from: everything but the frames.
struct VideoOrigin {
  const AVFormatContext& container;
  const AVStream& stream;  // of the frames
  AVRational rate{25, 1};
  AVFieldOrder fieldOrder = AV_FIELD_UNKNOWN;
};

struct VideoWriteOrder {
  std::filesystem::path target;  // "-": standard output
  bool onlyTry = false;          // nothing is to be written in the end
  bool dropAlpha = false;        // the frames are opaque, whatever the first one's format says
  VideoEncoding encoding;
  int threads = 1;                  // for conversions
  int encoderThreads = 1;           // the bytes of some codecs depend on it
  std::optional<CarriedSpan> span;  // nothing: all of the input
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_WRITE_ORDER_H_
