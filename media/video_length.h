// How long a video should be, and what shows that it is shorter.
#ifndef VITRELL_MEDIA_VIDEO_LENGTH_H_
#define VITRELL_MEDIA_VIDEO_LENGTH_H_

#include <cstdint>
#include <string>

#include "media/video_handles.h"

namespace vitrell::media {

// The frames of a stream, as the headers tell; 0: they do not.
std::int64_t FramesInHeader(const AVFormatContext& container, const AVStream& stream,
                            AVRational frameRate);

// What was read of a stream until its end.
struct ReadLength {
  std::int64_t packets = 0;
  std::int64_t fileOffset = 0;                // behind the last packet
  std::int64_t farthestEnd = AV_NOPTS_VALUE;  // of all packets, in the stream's time base
};

// Why that is not all, as the rest of a sentence about the file; empty where nothing shows it.
std::string ShortageOf(const AVFormatContext& container, const AVStream& stream,
                       const ReadLength& read);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_LENGTH_H_
