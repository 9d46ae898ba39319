// What goes from one video file to another untouched.
#ifndef VITRELL_MEDIA_CARRIED_STREAMS_H_
#define VITRELL_MEDIA_CARRIED_STREAMS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "media/video_handles.h"

namespace vitrell::media {

// Sound, subtitles, attachments and further videos as they are stored; chapters; metadata of the
// file and its streams with the timecode; of the rendered video its display matrix, sample aspect
// and other marks beside the frames. The timecode track of a QuickTime file is made anew from the
// metadata.
class CarriedStreams {
 public:
  // Gives `to` a stream for each stream of `from` that it can hold, in the same order; that of
  // `video` is left for its encoder to describe. Both must outlive this object.
  CarriedStreams(const AVFormatContext& from, const AVStream& video, AVFormatContext& to);

  AVStream& Video() const { return *video_; }
  // What the container cannot hold, in whole sentences without the file's name.
  const std::vector<std::string>& Losses() const { return losses_; }

  // Where the input begins, in the time base of one of its streams. Recordings of a broadcast begin
  // anywhere on a clock that runs for days; the output begins at 0 then. All others keep their
  // times.
  std::int64_t Start(const AVStream& stream) const;

  // The packet as the output holds it; null for one of a stream that it does not hold.
  PacketHandle Carried(const AVPacket& packet) const;

 private:
  void AddStream(const AVStream& stream, AVFormatContext& to);
  void CopyChapters(AVFormatContext& to) const;

  const AVFormatContext& from_;
  AVStream* video_ = nullptr;
  std::vector<AVStream*> streams_;  // in the order of the input; null: left out
  std::vector<std::string> losses_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_CARRIED_STREAMS_H_
