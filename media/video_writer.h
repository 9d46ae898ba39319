// Videos out: rendered frames beside everything else of the file that they come from.
#ifndef VITRELL_MEDIA_VIDEO_WRITER_H_
#define VITRELL_MEDIA_VIDEO_WRITER_H_

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "media/carried_streams.h"
#include "media/output_file.h"
#include "media/pixel_formats.h"
#include "media/video_encoder.h"
#include "media/video_form.h"
#include "media/video_handles.h"
#include "media/video_io.h"
#include "media/video_reader.h"
#include "media/video_write_order.h"

namespace vitrell::media {

VideoOrigin OriginOf(const VideoReader& reader);

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
  void Begin();
  // What the encoder has ready.
  void SendEncoded();
  void Send(AVPacket& packet);
  void End();
  [[noreturn]] void Fail(int error) const;

  VideoOrigin origin_;
  std::filesystem::path target_;
  std::filesystem::path name_;
  VideoForm form_;
  std::unique_ptr<OutputFile> output_;
  std::unique_ptr<VideoSink> sink_;
  MuxerHandle muxer_;
  std::optional<CarriedStreams> carried_;
  std::optional<VideoEncoder> encoder_;
  PacketHandle packet_ = MakePacket();
  std::vector<std::string> losses_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_WRITER_H_
