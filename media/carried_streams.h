// What goes from one video file to another untouched.
#ifndef VITRELL_MEDIA_CARRIED_STREAMS_H_
#define VITRELL_MEDIA_CARRIED_STREAMS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "media/video_handles.h"

namespace vitrell::media {

// The part of the input that is written, on the clock of the rendered video's stream. The output
// begins at 0 then.
struct CarriedSpan {
  std::int64_t framesBefore = 0;  // by which the timecode is later
  std::int64_t begin = 0;
  std::int64_t end = 0;  // of chapters
};

// Sound, subtitles, attachments and further videos as they are stored; chapters; metadata of the
// file and its streams with the timecode; of the rendered video its display matrix, sample aspect
// and other marks beside the frames. The timecode track of a QuickTime file is made anew from the
// metadata.
class CarriedStreams {
 public:
  // Gives `to` a stream for each stream of `from` that it can hold, in the same order; that of
  // `video` is left for its encoder to describe. Both must outlive this object. Without a span all
  // of the input is written.
  CarriedStreams(const AVFormatContext& from, const AVStream& video, AVFormatContext& to,
                 const std::optional<CarriedSpan>& span);

  AVStream& Video() const { return *video_; }
  // That belong to what is written.
  unsigned Chapters() const { return chapters_; }
  // Of a span: that of its first frame; otherwise empty.
  const std::string& Timecode() const { return timecode_; }
  // What the container cannot hold, in whole sentences without the file's name.
  const std::vector<std::string>& Losses() const { return losses_; }

  // Where the output begins, on the clock of one of the input's streams: with the span, or, of a
  // recording of a broadcast, which begins anywhere on a clock that runs for days, with the
  // recording. All others keep their times.
  std::int64_t Start(const AVStream& stream) const;

  // The packet as the output holds it; null for one of a stream that it does not hold.
  PacketHandle Carried(const AVPacket& packet) const;

 private:
  void AddStream(const AVStream& stream, AVFormatContext& to);
  void CopyChapters(AVFormatContext& to);
  void CopyMetadata(const AVDictionary* from, AVDictionary** to);
  bool FitToSpan(AVChapter& chapter) const;

  const AVFormatContext& from_;
  const AVStream& source_;
  std::optional<CarriedSpan> span_;
  unsigned chapters_ = 0;
  std::string timecode_;
  AVStream* video_ = nullptr;
  std::vector<AVStream*> streams_;  // in the order of the input; null: left out
  std::vector<std::string> losses_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_CARRIED_STREAMS_H_
