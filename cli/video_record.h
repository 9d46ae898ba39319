// What a video was made of, kept beside it where --existing asks for it.
#ifndef VITRELL_CLI_VIDEO_RECORD_H_
#define VITRELL_CLI_VIDEO_RECORD_H_

#include <functional>
#include <optional>

#include "cli/arguments.h"
#include "cli/notes.h"
#include "media/fingerprint.h"

namespace vitrell::cli {

class VideoRecord {
 public:
  // The arguments must outlive it.
  explicit VideoRecord(const RenderArguments& arguments) : arguments_(arguments) {}

  // Whether the output is there, whole and made of the same, and may stay. A reason to make it
  // again is noted. `madeOf` reads all of the input and is asked only if it matters.
  bool IsThereAlready(const std::function<media::Fingerprint()>& madeOf, Notes& notes);
  // After the output took its name. Throws Failure.
  void Keep() const;

 private:
  const RenderArguments& arguments_;
  std::optional<media::Fingerprint> madeOf_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_VIDEO_RECORD_H_
