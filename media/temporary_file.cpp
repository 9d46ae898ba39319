// Names, locks and the search for files without an owner.
#include "media/temporary_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <string_view>

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxAttempts = 1000;
constexpr mode_t kNewFileMode = 0666;  // less the user's umask
constexpr std::size_t kMaxHostName = 64;

std::string NamePrefix() {
  std::array<char, kMaxHostName + 1> host{};
  if (::gethostname(host.data(), kMaxHostName) != 0) host[0] = '\0';
  return ".vitrell-" + std::string(host.data()) + "-";
}

// Takes a run of digits away from the front.
bool TakeDigits(std::string_view& text) {
  const auto* end =
      std::find_if(text.begin(), text.end(), [](char c) { return std::isdigit(c & 0xff) == 0; });
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count > 0;
}

// Only what CreateTemporaryFile makes on this host.
bool IsOurName(std::string_view name, const std::string& prefix) {
  if (!name.starts_with(prefix)) return false;
  name.remove_prefix(prefix.size());
  if (!TakeDigits(name) || !name.starts_with('-')) return false;
  name.remove_prefix(1);
  return TakeDigits(name) && (name.empty() || name.starts_with('.'));
}

// Whether the name still leads to the open file.
bool IsStillThere(int file, const fs::path& name) {
  struct stat opened {};
  struct stat named {};
  return ::fstat(file, &opened) == 0 && ::lstat(name.c_str(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

void RemoveIfAbandoned(const fs::path& name) {
  // For writing, because locks for one alone need it on network file systems.
  const int file = ::open(name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return;
  if (::flock(file, LOCK_EX | LOCK_NB) == 0 && IsStillThere(file, name)) ::unlink(name.c_str());
  ::close(file);
}

}  // namespace

int CreateTemporaryFile(const fs::path& folder, const std::string& extension, fs::path& file) {
  const std::string prefix = NamePrefix() + std::to_string(::getpid()) + "-";
  for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
    file = folder / std::string(prefix).append(std::to_string(attempt)).append(extension);
    const int opened = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
    if (opened < 0) {
      if (errno == EEXIST) continue;
      return -1;
    }
    // Another process may have found it before it was locked. Where there are no locks, nobody can
    // take it for abandoned.
    const bool locked = ::flock(opened, LOCK_EX) == 0;
    if (!locked || IsStillThere(opened, file)) return opened;
    ::close(opened);
  }
  errno = EEXIST;
  return -1;
}

void RemoveAbandonedFiles(const fs::path& folder) {
  const std::string prefix = NamePrefix();
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path& name = entry->path();
    std::error_code ignored;
    const bool regular = entry->symlink_status(ignored).type() == fs::file_type::regular;
    if (regular && IsOurName(name.filename().string(), prefix)) RemoveIfAbandoned(name);
  }
}

}  // namespace vitrell::media
