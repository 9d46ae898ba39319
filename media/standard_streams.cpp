// Reading standard input to its end.
#include "media/standard_streams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <span>
#include <vector>

#include "media/failure.h"
#include "media/output_file.h"
#include "media/picture_limits.h"

namespace vitrell::media {
namespace {

constexpr const char* kShownInput = "standard input";
constexpr const char* kShownOutput = "standard output";
constexpr std::size_t kBlock = 1 << 20;
// The interval in bytes at which free memory is checked, and how much of it must remain.
constexpr std::int64_t kStep = 64 << 20;

[[noreturn]] void Fail(const std::string& cause) {
  throw Failure(kFailed, std::string(kShownInput) + ": " + cause);
}

// So that the same input gives the same dates.
void TakeTimeOfInput(int file) {
  struct stat input {};
  std::array<timespec, 2> times{};
  if (::fstat(STDIN_FILENO, &input) == 0 && S_ISREG(input.st_mode)) times.fill(input.st_mtim);
  static_cast<void>(::futimens(file, times.data()));
}

ssize_t ReadBlock(std::span<char> block) {
  ssize_t size = -1;
  do {
    size = ::read(STDIN_FILENO, block.data(), block.size());
  } while (size < 0 && errno == EINTR);
  if (size < 0) Fail("cannot be read (" + LastSystemError() + "). Give a file.");
  return size;
}

std::string ReadHead() {
  std::array<char, 16> block{};
  std::size_t count = 0;
  while (const ssize_t size = ReadBlock(std::span(block).subspan(count))) {
    count += static_cast<std::size_t>(size);
    if (count == block.size()) break;
  }
  return {block.data(), count};
}

void RefuseTerminal() {
  if (::isatty(STDIN_FILENO) != 1) return;
  Fail("is a terminal. Send a picture from another program, or give the name of a file.");
}

void CopyInput(int file) {
  if (!WriteAll(file, HeadOfStandardInput())) {
    Fail("cannot be kept (" + LastSystemError() + "). Put it into a file and give its name.");
  }
  std::vector<char> block(kBlock);
  std::int64_t sinceAsked = 0;
  while (const ssize_t size = ReadBlock(block)) {
    sinceAsked += size;
    if (sinceAsked > kStep) {
      sinceAsked = 0;
      if (AvailableMemory() < 2 * kStep) {
        Fail("is more than memory holds. Put it into a file and give its name.");
      }
    }
    if (!WriteAll(file, {block.data(), static_cast<std::size_t>(size)})) {
      Fail("cannot be kept (" + LastSystemError() + "). Put it into a file and give its name.");
    }
  }
}

}  // namespace

bool IsStandardStream(const std::filesystem::path& name) { return name == "-"; }

std::string ShownSource(const std::filesystem::path& source) {
  return IsStandardStream(source) ? kShownInput : source.string();
}

std::string ShownTarget(const std::filesystem::path& target) {
  return IsStandardStream(target) ? kShownOutput : target.string();
}

std::string_view HeadOfStandardInput() {
  static const std::string head = [] {
    RefuseTerminal();
    return ReadHead();
  }();
  return head;
}

InputFile::InputFile(const std::filesystem::path& name) : path_(name) {
  if (!IsStandardStream(name)) return;
  RefuseTerminal();
  memory_.emplace();
  path_ = memory_->Path();
  const int file = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) Fail("cannot be kept (" + LastSystemError() + "). Give the name of a file.");
  try {
    CopyInput(file);
  } catch (...) {
    ::close(file);
    throw;
  }
  TakeTimeOfInput(file);
  ::close(file);
}

std::string InputFile::Shown(std::string text) const {
  if (!memory_) return text;
  const std::string name = path_.string();
  for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos;) {
    text.replace(at, name.size(), kShownInput);
  }
  return text;
}

}  // namespace vitrell::media
