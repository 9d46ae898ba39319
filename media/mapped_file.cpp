// Mapping files.
#include "media/mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vitrell::media {

MappedFile::MappedFile(const std::filesystem::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor < 0) return;
  if (::fstat(descriptor, &status) == 0 && status.st_size > 0) {
    const auto size = static_cast<std::size_t>(status.st_size);
    void* bytes = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE, descriptor, 0);
    if (bytes != MAP_FAILED) bytes_ = {static_cast<char*>(bytes), size};
  }
  ::close(descriptor);
}

MappedFile::~MappedFile() {
  if (IsOpen()) ::munmap(bytes_.data(), bytes_.size());
}

}  // namespace vitrell::media
