// Some of the frames of a video, and what belongs to their time.
#ifndef VITRELL_MEDIA_VIDEO_EXCERPT_H_
#define VITRELL_MEDIA_VIDEO_EXCERPT_H_

#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "media/video_handles.h"
#include "media/video_reader.h"

namespace vitrell::media {

// Frames of a video by their numbers, from 0, without a gap.
struct VideoRange {
  static constexpr std::int64_t kEnd = std::numeric_limits<std::int64_t>::max();
  std::int64_t first = 0;
  std::int64_t last = kEnd;  // kEnd: the last one that there is

  bool IsWhole() const { return first == 0 && last == kEnd; }
};

// Reads a range of a reader's frames, for which those before are decoded, too: nothing else tells
// exactly which frame is which. Of the other streams it hands on what begins in the time of these
// frames; a further video begins with its next key frame. A range that is the whole video hands on
// everything.
class VideoExcerpt {
 public:
  // The reader must outlive it.
  VideoExcerpt(VideoReader& reader, const VideoRange& range) : reader_(reader), range_(range) {}

  const VideoRange& Range() const { return range_; }

  // The next frame of the range; see VideoReader::Next. False at its end.
  bool Next(AVFrame& frame);
  // Of the frame that Next gave last.
  std::int64_t Number() const { return number_; }
  // When the first frame of the range is shown, in the video's time base; known with that frame.
  std::int64_t Begin() const { return begin_; }

  // The packets of other streams that come before the frame that Next gives next, or behind the
  // last one.
  std::vector<PacketHandle> TakePackets();

  // After the end: why there are not all frames of the range, as the rest of a sentence about the
  // file; empty if all is well.
  std::string Damage() const;

 private:
  bool SkipToFirst(AVFrame& frame);
  void ReadPacketsOfEnd(AVFrame& frame);
  void DropPacketsBefore(std::int64_t time);
  bool IsBefore(const AVPacket& packet, std::int64_t time) const;
  bool MayBegin(const AVPacket& packet);

  VideoReader& reader_;
  VideoRange range_;
  std::int64_t number_ = -1;
  std::int64_t begin_ = 0;
  std::int64_t reached_ = 0;  // packets before this time can be handed on
  bool ended_ = false;
  std::deque<PacketHandle> held_;
  std::vector<bool> begun_;  // further videos, by stream
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_EXCERPT_H_
