// "-" as a file's name.
#ifndef VITRELL_MEDIA_STANDARD_STREAMS_H_
#define VITRELL_MEDIA_STANDARD_STREAMS_H_

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "media/memory_file.h"

namespace vitrell::media {

// Whether the name stands for standard input or, for a file to write, for standard output.
bool IsStandardStream(const std::filesystem::path& name);

// The name of a file as messages show it: "-" is "standard input" where the file is read, and
// "standard output" where it is written.
std::string ShownSource(const std::filesystem::path& source);
std::string ShownTarget(const std::filesystem::path& target);

// The first bytes of standard input, at most 16. They are kept and still come first when all of it
// is read.
std::string_view HeadOfStandardInput();

// A file to read whose name may be "-". Readers of pictures go back and forth, so that all of
// standard input is first put into a file in memory.
class InputFile {
 public:
  // Reads standard input to its end if that is meant. Throws Failure, also when there is more than
  // memory holds, and when nobody is there to write it.
  explicit InputFile(const std::filesystem::path& name);

  // The name given, or that of the file in memory, which lasts as long as the object. The file's
  // time of change is that of the file that standard input comes from, or that of year 1970.
  const std::filesystem::path& Path() const { return path_; }

  // The text with "standard input" in place of the name of the file in memory.
  std::string Shown(std::string text) const;

 private:
  std::optional<MemoryFile> memory_;
  std::filesystem::path path_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_STANDARD_STREAMS_H_
