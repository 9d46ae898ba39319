// The custom layer of many frames: a picture for all, a picture for each, or a video.
#ifndef VITRELL_CLI_LAYER_FRAMES_H_
#define VITRELL_CLI_LAYER_FRAMES_H_

#include <cstdint>
#include <optional>
#include <string>

#include "cli/arguments.h"
#include "cli/notes.h"
#include "media/frame_set.h"
#include "media/picture.h"
#include "media/sequence.h"
#include "media/video_finder.h"

namespace vitrell::cli {

// Reads it, frame after frame.
class LayerFrames {
 public:
  // The arguments must outlive it.
  explicit LayerFrames(const RenderArguments& arguments) : arguments_(arguments) {}

  bool IsVideo(const std::string& file);
  // Of the file; that of a video is worked out once.
  std::string HashOf(const std::string& file);
  // Of a video its frame with this number, from 0, or its last one, of which a note tells; of a
  // picture the picture. Throws Failure, also when interrupted.
  media::Picture Read(const std::string& file, std::int64_t number, Notes& notes);

 private:
  const RenderArguments& arguments_;
  std::string known_;  // the file of which is known whether it is a video
  bool isVideo_ = false;
  std::string hash_;  // of that video; empty: nobody asked
  std::optional<media::VideoFinder> video_;
};

// Which file belongs to which frame of a video. The first one of a sequence goes with the video's
// first frame, and its last one holds.
class LayerFiles {
 public:
  LayerFiles() = default;
  // A file, or the name of a sequence, or empty. Throws Failure if there is no frame of the name.
  explicit LayerFiles(const std::string& layer);

  // From 0. Empty for no layer.
  std::string FileOf(std::int64_t number) const;
  // Of all files.
  std::string Hash() const;
  // What is to be told about a layer of a video with so many frames; empty for nothing.
  std::string AdviceFor(std::int64_t framesOfVideo) const;

 private:
  std::string layer_;
  std::optional<media::Sequence> sequence_;
  media::FrameSet frames_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_LAYER_FRAMES_H_
