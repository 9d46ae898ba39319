// Files whose names differ in a frame number: "plate.####.exr".
#ifndef VITRELL_MEDIA_SEQUENCE_H_
#define VITRELL_MEDIA_SEQUENCE_H_

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "media/frame_set.h"

namespace vitrell::media {

// A file's name with one place for the number: a row of "#" or "@", one for each digit, or "%04d",
// "%d". Longer numbers take more digits; a minus takes the place of one. The folder is taken as it
// stands.
class Sequence {
 public:
  // Nothing where the name has no such place. Throws Failure (wrong usage) where it has several.
  static std::optional<Sequence> Find(const std::filesystem::path& name);

  std::filesystem::path FileOf(std::int64_t frame) const;
  // The file with data about all frames: "look.dpx.vitrell.json" for "look.####.dpx".
  std::filesystem::path SidecarFile() const;
  // As it was given.
  const std::filesystem::path& Name() const { return name_; }
  // The frames in the folder, ascending. Throws Failure if it cannot be read.
  FrameSet FramesInFolder() const;

 private:
  std::optional<std::int64_t> FrameOf(const std::string& file) const;

  std::filesystem::path name_;
  std::string before_;  // of the file's name
  std::string after_;
  std::size_t digits_ = 1;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_SEQUENCE_H_
