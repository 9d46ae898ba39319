// Videos in: any file that FFmpeg's libraries read, frame by frame.
#ifndef VITRELL_MEDIA_VIDEO_READER_H_
#define VITRELL_MEDIA_VIDEO_READER_H_

#include <atomic>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "media/video_handles.h"
#include "media/video_io.h"

namespace vitrell::media {

struct VideoReadOptions {
  int threads = 1;
  std::int64_t maxPixels = 1'000'000'000;  // of a frame
  const std::atomic<bool>* stop = nullptr;
};

// Reads the best video stream and hands on the packets of the others. Used by one thread.
class VideoReader {
 public:
  using PacketSink = std::function<void(const AVPacket&)>;

  // "-" is standard input. Throws Failure, also for a file without a video.
  VideoReader(const std::filesystem::path& file, const VideoReadOptions& options);

  const AVFormatContext& Container() const { return *container_; }
  const AVStream& Stream() const { return *stream_; }
  const AVCodecContext& Decoder() const { return *decoder_; }
  // As messages show it.
  const std::filesystem::path& Name() const { return name_; }
  // Frames per second, exactly as the file tells; 25 if it tells nothing.
  AVRational FrameRate() const { return frameRate_; }
  // As the header tells; 0: unknown.
  std::int64_t ExpectedFrames() const;

  // From now on `sink` gets the packets of the other streams, in the file's order, also those that
  // were read already.
  void SetPacketSink(PacketSink sink);

  // The next frame in the order of presentation. Its pts, in the stream's time base, is above that
  // of the frame before; its pkt_duration is 0 where the file tells none. False at the end of the
  // video, and of what can be read of a damaged one. Throws Failure.
  bool Next(AVFrame& frame);
  std::int64_t FramesRead() const { return framesRead_; }

  // After the end: why there are not all frames, as the rest of a sentence about the file
  // ("ends too early"); empty if all is well.
  const std::string& Damage() const { return damage_; }

 private:
  void ThrowIfStopped() const;
  // Gives the decoder the next packet of the video, or the end.
  void Feed();
  void HandOn(const AVPacket& packet);
  void Stamp(AVFrame& frame);
  bool HasSameSize(const AVFrame& frame);
  void LookForMissingFrames();
  void TellDamage(const std::string& damage);

  std::filesystem::path name_;
  std::unique_ptr<VideoPipe> pipe_;
  DemuxerHandle container_;
  CodecHandle decoder_;
  PacketHandle packet_ = MakePacket();
  AVStream* stream_ = nullptr;
  AVRational frameRate_{25, 1};
  const std::atomic<bool>* stop_ = nullptr;
  std::int64_t maxPixels_;
  int width_ = 0;
  int height_ = 0;
  bool ended_ = false;
  std::int64_t packetsRead_ = 0;
  std::int64_t packetEnd_ = 0;  // in the file
  std::int64_t framesRead_ = 0;
  std::int64_t lastTime_ = 0;
  std::int64_t lastDuration_ = 0;
  std::int64_t farthestEnd_ = AV_NOPTS_VALUE;
  PacketSink sink_;
  std::deque<PacketHandle> waiting_;
  std::string damage_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_READER_H_
