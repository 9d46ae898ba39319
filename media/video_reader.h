// Videos in: any file that FFmpeg's libraries read, frame by frame.
#ifndef VITRELL_MEDIA_VIDEO_READER_H_
#define VITRELL_MEDIA_VIDEO_READER_H_

#include <atomic>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "media/video_handles.h"
#include "media/video_io.h"
#include "media/video_length.h"

namespace vitrell::media {

struct VideoReadOptions {
  std::int64_t maxPixels = 1'000'000'000;  // of a frame
  const std::atomic<bool>* stop = nullptr;
};

// Reads the best video stream and keeps the packets of the others. Used by one thread. Until
// UseThreads the process has no other thread because of it.
class VideoReader {
 public:
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

  // From now on decodes with so many; to be called at most once. What the decoder got before is
  // given to one with these threads again.
  void UseThreads(int threads);

  // The next frame in the order of presentation. Its pts, in the stream's time base, is above that
  // of the frame before; its pkt_duration is 0 where the file tells none. False at the end of the
  // video, and of what can be read of a damaged one. Throws Failure.
  bool Next(AVFrame& frame);
  // The packets of the other streams that were read since the last call, in the file's order.
  std::vector<PacketHandle> TakePackets();

  // After the end: why there are not all frames, as the rest of a sentence about the file
  // ("ends too early"); empty if all is well.
  const std::string& Damage() const { return damage_; }

 private:
  void ThrowIfStopped() const;
  // Gives the decoder the next packet of the video, or the end.
  void Feed();
  // Gives it one of those that another decoder got; false when there is none.
  bool FeedAgain();
  bool HasBegun() const;
  static void Keep(const AVPacket& packet, std::vector<PacketHandle>& kept);
  void Stamp(AVFrame& frame);
  bool HasSameSize(const AVFrame& frame);
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
  ReadLength read_;
  std::int64_t framesRead_ = 0;
  std::int64_t lastTime_ = 0;
  std::int64_t lastDuration_ = 0;
  std::vector<PacketHandle> others_;
  // While there may be another decoder: what this one got.
  bool mayChangeDecoder_ = true;
  std::vector<PacketHandle> fed_;
  // For another decoder: packets that it gets again, and frames that are known already.
  std::deque<PacketHandle> again_;
  std::int64_t known_ = 0;
  std::string damage_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_READER_H_
