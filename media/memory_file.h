// A file without a place on any disk, for writers that take nothing but a file name.
#ifndef VITRELL_MEDIA_MEMORY_FILE_H_
#define VITRELL_MEDIA_MEMORY_FILE_H_

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>

#include "media/file_sink.h"

namespace vitrell::media {

// Writers that open files themselves overlook failing writes. In memory there is room; the bytes
// then go through a sink, which sees every failure.
class MemoryFile {
 public:
  // Throws Failure where the system has no such files.
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  // A name under which it can be opened while the object lives. It has no extension.
  const std::filesystem::path& Path() const { return path_; }

  // Returns the cause when the contents may be incomplete, because files of the process may not
  // grow as far; empty if all went well. The sink tells its own failures.
  std::string CopyTo(FileSink& sink) const;
  // The same for an open file, such as standard output, whose failures it tells too.
  std::string CopyTo(int file) const;

 private:
  std::string CopyBlocks(
      const std::function<bool(const void* block, std::size_t size, off_t offset)>& take) const;

  int file_ = -1;
  std::filesystem::path path_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_MEMORY_FILE_H_
