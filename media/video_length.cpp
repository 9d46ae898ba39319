// Headers, indices and the ends of files.
#include "media/video_length.h"

#include <cstdio>
#include <string_view>

#include "media/video_messages.h"

extern "C" {
#include <libavutil/avutil.h>
#include <libavutil/dict.h>
}

namespace vitrell::media {
namespace {

// What Matroska tells of a stream: "00:00:02.000000000". In seconds; 0: nothing.
double TaggedSeconds(const AVStream& stream) {
  const AVDictionaryEntry* tag = av_dict_get(stream.metadata, "DURATION", nullptr, 0);
  int hours = 0;
  int minutes = 0;
  double seconds = 0;
  if (tag == nullptr || std::sscanf(tag->value, "%d:%d:%lf", &hours, &minutes, &seconds) != 3) {
    return 0;
  }
  return hours * 3600.0 + minutes * 60.0 + seconds;
}

}  // namespace

std::int64_t FramesInHeader(const AVFormatContext& container, const AVStream& stream,
                            AVRational frameRate) {
  if (stream.nb_frames > 0) return stream.nb_frames;
  double seconds = TaggedSeconds(stream);
  if (stream.duration > 0) {
    seconds = static_cast<double>(stream.duration) * av_q2d(stream.time_base);
  } else if (seconds <= 0 && container.duration > 0) {
    seconds = static_cast<double>(container.duration) / AV_TIME_BASE;
  }
  return static_cast<std::int64_t>(seconds * av_q2d(frameRate) + 0.5);
}

std::string ShortageOf(const AVFormatContext& container, const AVStream& stream,
                       const ReadLength& read) {
  const std::string_view format = container.iformat->name;
  // Frames all have one size, and there is nothing else.
  if (format == "yuv4mpegpipe" && avio_tell(container.pb) != read.fileOffset) {
    return "ends in the middle of a frame";
  }
  if (format == "avi" && stream.duration > 0 && read.farthestEnd < stream.duration) {
    return "ends too early";
  }
  // Only this demuxer's index lists what it will read, and not what can be sought.
  if (format.starts_with("mov,")) {
    const int listed = avformat_index_get_entries_count(&stream);
    if (read.packets < listed) {
      return "ends too early (" + std::to_string(read.packets) + " of " + std::to_string(listed) +
             " frames are there)";
    }
  }
  // This demuxer says so, but returns a plain end of the file.
  return HasVideoMessage("File ended prematurely") ? "ends too early" : "";
}

}  // namespace vitrell::media
