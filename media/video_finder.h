// Frames of a video by their numbers, as pictures.
#ifndef VITRELL_MEDIA_VIDEO_FINDER_H_
#define VITRELL_MEDIA_VIDEO_FINDER_H_

#include <cstdint>
#include <filesystem>
#include <optional>

#include "media/picture.h"
#include "media/video_handles.h"
#include "media/video_picture.h"
#include "media/video_reader.h"

namespace vitrell::media {

// Quick as long as the numbers go up; for one that goes back the video is read from its beginning.
// Starts no threads.
class VideoFinder {
 public:
  VideoFinder(std::filesystem::path file, const VideoReadOptions& options);

  const std::filesystem::path& File() const { return file_; }
  // The frame with this number, from 0, or the last one that there is. In 8 bits, or 16 if the
  // video has more. Throws Failure.
  Picture At(std::int64_t number);
  // The last frame's number; known once a frame behind it was asked for.
  std::optional<std::int64_t> Last() const { return last_; }

 private:
  void Begin();
  bool Advance();

  std::filesystem::path file_;
  VideoReadOptions options_;
  std::optional<VideoReader> reader_;
  FramePictures pictures_;
  FrameHandle frame_;  // with the number at_
  std::int64_t at_ = -1;
  std::optional<std::int64_t> last_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_FINDER_H_
