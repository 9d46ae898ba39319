// What is looked at: a picture, a sequence of pictures, or a video.
#ifndef VITRELL_PANEL_MODEL_SOURCE_H_
#define VITRELL_PANEL_MODEL_SOURCE_H_

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "headless/world_buffer.h"
#include "media/picture.h"

namespace vitrell::panel {

// One picture of it, which any number of threads may read.
struct SourceFrame {
  headless::WorldBuffer world;  // as the effect gets it
  std::int64_t number = 0;
  // The file's own samples; null for videos.
  std::shared_ptr<const media::Picture> picture;
  // What the user should know about the file, in whole sentences.
  std::vector<std::string> notices;

  int Width() const { return world.Width(); }
  int Height() const { return world.Height(); }
};

// Used by one thread at a time.
class Source {
 public:
  virtual ~Source() = default;

  // At least 1.
  virtual std::int64_t FrameCount() const = 0;
  virtual double FramesPerSecond() const = 0;
  // `index` counts from 0. Throws media::Failure.
  virtual std::shared_ptr<const SourceFrame> Read(std::int64_t index) = 0;
  // As the command line takes it: "shot.mov", "plate.####.exr".
  virtual std::filesystem::path Name() const = 0;
  bool IsClip() const { return FrameCount() > 1; }
};

// Tells by the file's name and content which one it is. Throws media::Failure naming file, cause
// and remedy.
std::unique_ptr<Source> OpenSource(const std::filesystem::path& file);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_SOURCE_H_
