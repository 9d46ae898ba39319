// Files in memory.
#include "media/memory_file.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "media/failure.h"
#include "media/output_file.h"

namespace vitrell::media {
namespace {

constexpr off_t kBlock = 16 << 20;

// The process's file size limit applies to files in memory, too; one that ends at it is truncated.
bool ReachedLimit(off_t size) {
  struct rlimit limit {};
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY &&
         static_cast<rlim_t>(size) >= limit.rlim_cur;
}

}  // namespace

MemoryFile::MemoryFile() : file_(::memfd_create("vitrell", MFD_CLOEXEC)) {
  if (file_ < 0) {
    throw Failure(kFailed, "a file in memory cannot be made (" + LastSystemError() +
                               "). Choose another format.");
  }
  path_ = "/proc/self/fd/" + std::to_string(file_);
}

MemoryFile::~MemoryFile() { ::close(file_); }

std::string MemoryFile::CopyBlocks(
    const std::function<bool(const void* block, std::size_t size, off_t offset)>& take) const {
  struct stat status {};
  if (::fstat(file_, &status) != 0) return LastSystemError();
  if (ReachedLimit(status.st_size)) return std::generic_category().message(EFBIG);
  for (off_t offset = 0; offset < status.st_size; offset += kBlock) {
    const auto size = static_cast<std::size_t>(std::min(kBlock, status.st_size - offset));
    void* block = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file_, offset);
    if (block == MAP_FAILED) return LastSystemError();
    const bool taken = take(block, size, offset);
    ::munmap(block, size);
    if (!taken) break;
  }
  return {};
}

std::string MemoryFile::CopyTo(FileSink& sink) const {
  return CopyBlocks([&](const void* block, std::size_t size, off_t offset) {
    return sink.pwrite(block, size, offset) == size;
  });
}

std::string MemoryFile::CopyTo(int file) const {
  std::string cause;
  const std::string cut = CopyBlocks([&](const void* block, std::size_t size, off_t /*offset*/) {
    if (WriteAll(file, {static_cast<const char*>(block), size})) return true;
    cause = LastSystemError();
    return false;
  });
  return cut.empty() ? cause : cut;
}

}  // namespace vitrell::media
