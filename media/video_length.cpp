// Headers, indices and the ends of files.
#include "media/video_length.h"

#include <algorithm>
#include <string_view>

#include "media/video_messages.h"

extern "C" {
#include <libavutil/avutil.h>
#include <libavutil/dict.h>
#include <libavutil/parseutils.h>
}

namespace vitrell::media {
namespace {

// A header that tells more is wrong.
constexpr double kMostFrames = 1e15;

// What Matroska tells of a stream: "00:00:02.000000000". In seconds; 0: nothing.
double TaggedSeconds(const AVStream& stream) {
  const AVDictionaryEntry* tag = av_dict_get(stream.metadata, "DURATION", nullptr, 0);
  std::int64_t microseconds = 0;
  if (tag == nullptr || av_parse_time(&microseconds, tag->value, 1) < 0) return 0;
  return static_cast<double>(microseconds) / AV_TIME_BASE;
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
  const double frames = seconds * av_q2d(frameRate);
  if (!(frames > 0)) return 0;
  return static_cast<std::int64_t>(std::min(frames, kMostFrames) + 0.5);
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
