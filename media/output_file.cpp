// Writing beside the target and renaming.
#include "media/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "media/failure.h"
#include "media/memory_file.h"
#include "media/replaced_file.h"
#include "media/standard_streams.h"
#include "media/temporary_file.h"
#include "media/unfinished_file.h"

namespace vitrell::media {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxLinks = 40;  // as the system follows

[[noreturn]] void Fail(const fs::path& file, const std::string& cause, FailureKind kind = kFailed) {
  throw Failure(kind, ShownTarget(file) + ": " + cause);
}

fs::path FolderOf(const fs::path& file) {
  return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// The file behind a symbolic link, whether it exists already or not.
fs::path ResolveLinks(fs::path target) {
  std::error_code error;
  for (int links = 0; links < kMaxLinks && fs::is_symlink(target, error); ++links) {
    const fs::path next = fs::read_symlink(target, error);
    if (error) break;
    target = FolderOf(target) / next;  // An absolute path replaces the folder.
  }
  return target;
}

void RefuseExisting(const fs::path& target) {
  Fail(target, "already exists. Choose another name, or add --force to replace it.");
}

// A rename is durable only once its folder is flushed. Some file systems do not support that.
void FlushFolder(const fs::path& folder) {
  const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  static_cast<void>(::fsync(file));
  ::close(file);
}

}  // namespace

std::string LastSystemError() { return std::generic_category().message(errno); }

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void CheckTarget(const fs::path& target, bool force) {
  if (target.empty()) throw Failure(kWrongUsage, "the output's name is empty. Give a file name.");
  if (IsStandardStream(target)) {
    if (::isatty(STDOUT_FILENO) != 1) return;
    Fail(target, "is a terminal. Redirect it to a file or a program.");
  }
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (status.type() == fs::file_type::directory) {
    Fail(target, "is a folder. Give the name of a file in it.");
  }
  if (fs::exists(status) && status.type() != fs::file_type::regular) {
    Fail(target, "is not a regular file. Give a file name; the output is written as a whole.");
  }
  if (fs::exists(status) && !force) RefuseExisting(target);
  const fs::path folder = FolderOf(ResolveLinks(target));
  if (!fs::is_directory(folder, error)) {
    Fail(target, "the folder " + folder.string() + " does not exist. Create it first.");
  }
  if (::access(folder.c_str(), W_OK | X_OK) != 0) {
    Fail(target, "the folder " + folder.string() + " cannot be written to (" + LastSystemError() +
                     "). Choose another folder, or change its permissions.");
  }
}

FailureKind KindOfError(int error) {
  constexpr std::array kLasting = {EACCES, EPERM, EROFS, ENAMETOOLONG, EINVAL, EFBIG, EPIPE};
  const bool lasting = std::find(kLasting.begin(), kLasting.end(), error) != kLasting.end();
  return lasting ? kFailed : kTryLater;
}

bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  // Hard links, too.
  if (fs::equivalent(a, b, error)) return true;
  const auto place = [](const fs::path& file) {
    const fs::path target = ResolveLinks(file);
    std::error_code ignored;
    return fs::weakly_canonical(FolderOf(target), ignored) / target.filename();
  };
  return place(a) == place(b);
}

OutputFile::OutputFile(const fs::path& target, Purpose purpose)
    : shown_(target), target_(ResolveLinks(target)) {
  if (purpose == Purpose::kTry || IsStandardStream(target)) {
    memory_ = std::make_unique<MemoryFile>();
    temporary_ = memory_->Path();
    return;
  }
  const fs::path folder = FolderOf(target_);
  RemoveAbandonedFiles(folder);
  file_ = CreateTemporaryFile(folder, target_.extension().string(), temporary_);
  if (file_ < 0) {
    const FailureKind kind = KindOfError(errno);
    Fail(shown_,
         "cannot be created in " + folder.string() + " (" + LastSystemError() +
             "). Choose another folder, or change its permissions.",
         kind);
  }
  SetUnfinishedFile(temporary_.string());
  mode_ = TakeOver(target_, file_, notices_);
}

OutputFile::~OutputFile() {
  if (memory_ != nullptr) return;
  if (!committed_) ::unlink(temporary_.c_str());
  ::close(file_);
  SetUnfinishedFile({});
}

void OutputFile::CommitToStandardOutput() const {
  const std::string cause = memory_->CopyTo(STDOUT_FILENO);
  if (!cause.empty()) Fail(shown_, "cannot be written (" + cause + ").");
}

void OutputFile::TakeName(const fs::path& name) {
  if (::rename(temporary_.c_str(), name.c_str()) != 0) {
    const FailureKind kind = KindOfError(errno);
    Fail(shown_, "cannot take its name (" + LastSystemError() + "). Choose another name.", kind);
  }
  committed_ = true;
  FlushFolder(FolderOf(name));
}

void OutputFile::FlushContents() const {
  const bool onDisk = (!mode_ || ::fchmod(file_, *mode_) == 0) && ::fsync(file_) == 0;
  if (onDisk) return;
  Fail(shown_, "cannot be written (" + LastSystemError() + "). Free some space and try again.",
       kTryLater);
}

void OutputFile::Commit(bool force) {
  if (memory_ != nullptr) {
    CommitToStandardOutput();
    return;
  }
  FlushContents();
  std::error_code error;
  if (!force && fs::exists(target_, error)) RefuseExisting(shown_);
  TakeName(target_);
}

fs::path OutputFile::KeepUnfinished() {
  FlushContents();
  fs::path partial = target_;
  partial.replace_extension(".partial" + target_.extension().string());
  TakeName(partial);
  return partial;
}

std::vector<std::string> WriteTextFile(const fs::path& target, std::string_view text) {
  OutputFile output(target);
  const int file = ::open(output.TemporaryPath().c_str(), O_WRONLY | O_CLOEXEC);
  const bool written = file >= 0 && WriteAll(file, text);
  const std::string cause = LastSystemError();
  const bool closed = file < 0 || ::close(file) == 0;
  if (!written || !closed) {
    Fail(target, "cannot be written (" + cause + "). Free some space and try again.", kTryLater);
  }
  output.Commit(true);
  std::vector<std::string> notices = output.Notices();
  for (std::string& notice : notices) notice.insert(0, target.string() + ": ");
  return notices;
}

}  // namespace vitrell::media
