// Bytes of videos in and out.
#ifndef VITRELL_MEDIA_VIDEO_IO_H_
#define VITRELL_MEDIA_VIDEO_IO_H_

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <string>

#include "media/video_handles.h"

namespace vitrell::media {

// Standard input as the libraries read a video: once, from its beginning to its end.
class VideoPipe {
 public:
  // Once `stop` is true, reading ends; null: it never does.
  explicit VideoPipe(const std::atomic<bool>* stop);
  ~VideoPipe();
  VideoPipe(const VideoPipe&) = delete;
  VideoPipe& operator=(const VideoPipe&) = delete;

  AVIOContext* Context() const { return context_; }

 private:
  static int Read(void* pipe, uint8_t* buffer, int size);

  const std::atomic<bool>* stop_;
  std::size_t headTaken_ = 0;
  AVIOContext* context_ = nullptr;
};

// A file, or standard output, as the libraries write a video. Remembers the first write that
// failed, since muxers do not look at the result of every write.
class VideoSink {
 public:
  // An existing file, or "-": standard output, where nobody can go back. Throws Failure.
  explicit VideoSink(const std::filesystem::path& file);
  ~VideoSink();
  VideoSink(const VideoSink&) = delete;
  VideoSink& operator=(const VideoSink&) = delete;

  AVIOContext* Context() const { return context_; }
  // Hands the last bytes over and closes.
  void Close();
  // The cause of the first failed write or of a failed close; 0: all went well.
  int FirstError() const { return firstError_; }

 private:
  static int Write(void* sink, uint8_t* bytes, int size);
  static std::int64_t Seek(void* sink, std::int64_t offset, int whence);

  int file_ = -1;
  bool isStandardOutput_ = false;
  int firstError_ = 0;
  AVIOContext* context_ = nullptr;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_IO_H_
