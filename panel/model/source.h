// What is looked at: a picture, a sequence of pictures, or a video.
#ifndef VITRELL_PANEL_MODEL_SOURCE_H_
#define VITRELL_PANEL_MODEL_SOURCE_H_

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "headless/world_buffer.h"
#include "look/animation.h"
#include "media/picture.h"

namespace vitrell::panel {

// One picture of it, which any number of threads may read.
struct SourceFrame {
  headless::WorldBuffer world;  // as the effect gets it
  std::int64_t number = 0;      // of the frame, as keys count
  std::int64_t clippedPixels = 0;
  std::shared_ptr<const media::Picture> picture;  // as the file holds it; null for videos

  int Width() const { return world.Width(); }
  int Height() const { return world.Height(); }
};

// Any number of threads may use one; reading is done by one after the other.
class Source {
 public:
  virtual ~Source() = default;

  // As the command line takes it: "shot.mov", "plate.####.exr".
  virtual const std::filesystem::path& Name() const = 0;
  // At least 1.
  virtual std::int64_t FrameCount() const = 0;
  virtual double FramesPerSecond() const = 0;
  // The number of a frame, as keys count; `index` counts from 0.
  virtual std::int64_t NumberOf(std::int64_t index) const = 0;
  // Throws media::Failure.
  virtual std::shared_ptr<const SourceFrame> Read(std::int64_t index) = 0;
  virtual bool IsVideo() const { return false; }

  bool IsClip() const { return FrameCount() > 1; }
  // In which times of keys become frames.
  look::TimeBase Times() const {
    return {FramesPerSecond(), static_cast<double>(NumberOf(FrameCount() - 1) + 1)};
  }
};

// Tells by the file's name and content which of them it is. Reads little more than a header, but
// all of a video's packets. Throws media::Failure naming file, cause and remedy.
std::unique_ptr<Source> OpenSource(const std::filesystem::path& file);

// A picture as a frame.
std::shared_ptr<const SourceFrame> FrameOfPicture(const std::filesystem::path& file,
                                                  std::int64_t number);

// "plate.####.exr" for "plate.0101.exr", if its folder holds another frame; empty otherwise.
std::filesystem::path SequenceAround(const std::filesystem::path& file);

}  // namespace vitrell::panel

#endif  // VITRELL_PANEL_MODEL_SOURCE_H_
