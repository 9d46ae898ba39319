// The file behind picture writers.
#include "media/file_sink.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "media/output_file.h"

namespace vitrell::media {

FileSink::FileSink(const std::filesystem::path& file)
    : IOProxy(file.string(), Write), file_(::open(file.c_str(), O_RDWR | O_TRUNC | O_CLOEXEC)) {
  if (file_ >= 0) return;
  Remember();
  m_mode = Closed;
}

FileSink::~FileSink() { FileSink::close(); }

void FileSink::Remember() {
  if (firstError_.empty()) firstError_ = LastSystemError();
}

void FileSink::CheckLength() {
  if (firstError_.empty() && static_cast<int64_t>(FileSink::size()) != end_) {
    firstError_ = "the file has another length than was written";
  }
}

void FileSink::close() {
  if (file_ < 0) return;
  if (::fsync(file_) != 0) Remember();
  CheckLength();
  if (::close(file_) != 0) Remember();
  file_ = -1;
  m_mode = Closed;
}

bool FileSink::seek(int64_t offset) {
  m_pos = offset;
  return offset >= 0;
}

size_t FileSink::read(void* buffer, size_t size) {
  const size_t done = pread(buffer, size, m_pos);
  m_pos += static_cast<int64_t>(done);
  return done;
}

size_t FileSink::write(const void* buffer, size_t size) {
  const size_t done = pwrite(buffer, size, m_pos);
  m_pos += static_cast<int64_t>(done);
  return done;
}

size_t FileSink::pread(void* buffer, size_t size, int64_t offset) {
  const ssize_t done = ::pread(file_, buffer, size, offset);
  return done > 0 ? static_cast<size_t>(done) : 0;
}

size_t FileSink::pwrite(const void* buffer, size_t size, int64_t offset) {
  const char* bytes = static_cast<const char*>(buffer);
  size_t done = 0;
  while (done < size) {
    const ssize_t now =
        ::pwrite(file_, bytes + done, size - done, offset + static_cast<int64_t>(done));
    if (now < 0 && errno == EINTR) continue;
    if (now <= 0) {
      Remember();
      break;
    }
    done += static_cast<size_t>(now);
    end_ = std::max(end_, offset + static_cast<int64_t>(done));
  }
  return done;
}

void FileSink::Restart() {
  m_pos = 0;
  end_ = 0;
  if (::ftruncate(file_, 0) != 0) Remember();
}

void FileSink::Replace(const void* bytes, std::size_t size) {
  if (pwrite(bytes, size, 0) != size) return;
  end_ = static_cast<int64_t>(size);
  if (::ftruncate(file_, end_) != 0) Remember();
}

size_t FileSink::size() const {
  struct stat status {};
  return ::fstat(file_, &status) == 0 ? static_cast<size_t>(status.st_size) : 0;
}

}  // namespace vitrell::media
