// The frames of a written video on their way to packets.
#ifndef VITRELL_MEDIA_VIDEO_ENCODER_H_
#define VITRELL_MEDIA_VIDEO_ENCODER_H_

#include <cstdint>
#include <filesystem>
#include <map>

#include "media/frame_converter.h"
#include "media/video_colours.h"
#include "media/video_form.h"
#include "media/video_handles.h"
#include "media/video_write_order.h"

namespace vitrell::media {

// The same frames and orders give the same packets. Used by one thread.
class VideoEncoder {
 public:
  // Sizes and tags are those of the first frame. Throws Failure that names the target.
  VideoEncoder(std::filesystem::path name, const VideoForm& form, const VideoOrigin& origin,
               const AVFrame& first, const VideoWriteOrder& order);

  const AVCodecContext& Context() const { return *encoder_; }

  // A frame of kRgb8 or kRgb16 with the time stamps and marks of the decoded one, `begin` of whose
  // time base is the time 0 of what is written. An error of the libraries is returned, otherwise 0.
  // Throws Failure when the pixels cannot be converted.
  int Give(const AVFrame& rgb, const AVFrame& decoded, std::int64_t begin);
  // After the last one.
  int GiveEnd();

  // The next packet, in the time base of Context, or AVERROR(EAGAIN), AVERROR_EOF or an error.
  int Take(AVPacket& packet);

 private:
  bool HasOnlyARate() const;

  std::filesystem::path name_;
  VideoForm form_;
  VideoColours colours_;
  CodecHandle encoder_;
  FrameConverter converter_;
  std::int64_t framesGiven_ = 0;
  // Encoders forget how long a frame lasts; by time stamp, for those that are in the encoder.
  std::map<std::int64_t, std::int64_t> durations_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_ENCODER_H_
