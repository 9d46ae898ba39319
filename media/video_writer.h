// Videos out: rendered frames beside everything else of the file that they come from.
#ifndef VITRELL_MEDIA_VIDEO_WRITER_H_
#define VITRELL_MEDIA_VIDEO_WRITER_H_

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "media/carried_streams.h"
#include "media/output_file.h"
#include "media/video_colours.h"
#include "media/video_form.h"
#include "media/video_handles.h"
#include "media/video_io.h"
#include "media/video_reader.h"

namespace vitrell::media {

// What a written video comes from: everything but the frames.
struct VideoOrigin {
  const AVFormatContext& container;
  const AVStream& stream;  // of the frames
  AVRational rate{25, 1};
  AVFieldOrder fieldOrder = AV_FIELD_UNKNOWN;
};

VideoOrigin OriginOf(const VideoReader& reader);

struct VideoWriteOrder {
  std::filesystem::path target;  // "-": standard output
  bool onlyTry = false;          // nothing is to be written in the end
  bool dropAlpha = false;        // the frames are opaque, whatever the first one's format says
  VideoEncoding encoding;
  int threads = 1;                  // for conversions
  int encoderThreads = 1;           // the bytes of some codecs depend on it
  std::optional<CarriedSpan> span;  // nothing: all of the input
};

// Writes beside the target; see OutputFile. The same frames and orders give the same bytes: no
// dates, no random numbers. Used by one thread. Any function may throw Failure.
class VideoWriter {
 public:
  // `first` is the first decoded frame: sizes and tags are taken from it. What the
  // origin names must outlive the writer.
  VideoWriter(const VideoOrigin& origin, const AVFrame& first, bool deep,
              const VideoWriteOrder& order);

  const VideoForm& Form() const { return form_; }
  bool KeepsAlpha() const { return HasAlpha(form_.pixelFormat); }
  // What the file cannot hold, and what one that is replaced loses; whole sentences.
  const std::vector<std::string>& Losses() const { return losses_; }

  // A frame of kRgb8 or kRgb16 with the time stamps and marks of the decoded one, as
  // VideoReader::Next gives it. The order is that of the time stamps.
  void Write(const AVFrame& rgb, const AVFrame& decoded);

  // A packet of another stream of the input, at its place among the frames in the file's order.
  void WritePacket(const AVPacket& packet);

  // Ends the file and adds to the losses what is not in it, compared with the input. It still has
  // no name.
  void Finish();
  // After Finish: the file takes its name.
  void Commit(bool force);
  // Ends the file and lets it take a name that tells that it is not whole, which is returned; empty
  // for standard output.
  std::filesystem::path KeepUnfinished();

 private:
  void OpenEncoder(const AVFrame& first, const VideoWriteOrder& order);
  void Begin();
  void Encode(const AVFrame* frame);
  void Send(AVPacket& packet);
  void End();
  [[noreturn]] void Fail(int error) const;

  VideoOrigin origin_;
  std::filesystem::path target_;
  std::filesystem::path name_;
  VideoForm form_;
  VideoColours colours_;
  std::unique_ptr<OutputFile> output_;
  std::unique_ptr<VideoSink> sink_;
  MuxerHandle muxer_;
  std::optional<CarriedStreams> carried_;
  CodecHandle encoder_;
  FrameConverter converter_;
  PacketHandle packet_ = MakePacket();
  std::int64_t framesWritten_ = 0;
  // Encoders forget how long a frame lasts; by time stamp, for those that are in the encoder.
  std::map<std::int64_t, std::int64_t> durations_;
  std::vector<std::string> losses_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_WRITER_H_
