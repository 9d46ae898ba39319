// Files that appear complete or not at all.
#ifndef VITRELL_MEDIA_OUTPUT_FILE_H_
#define VITRELL_MEDIA_OUTPUT_FILE_H_

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "media/failure.h"

namespace vitrell::media {

class MemoryFile;

// The text of errno: "No space left on device".
std::string LastSystemError();

// Of a system error over a file: kTryLater but for matters of names, rights and limits. A full disk
// and a share that went away may be better later.
FailureKind KindOfError(int error);

// False when a write failed, with the cause in errno.
bool WriteAll(int file, std::string_view bytes);

// Refuses a target that cannot become the output: a folder, a device, a file that exists (unless
// force), a folder that is missing or may not be written to; and "-", which is standard output,
// where that is a terminal. Throws Failure.
void CheckTarget(const std::filesystem::path& target, bool force);

// Whether both names lead to the same file, also through links, and also where there is no file
// yet.
bool IsSameFile(const std::filesystem::path& a, const std::filesystem::path& b);

// A hidden file in the target's folder with the target's extension. It takes the target's name
// with Commit() and is removed otherwise, also when the process is interrupted; after a killed one
// the next object in that folder removes it. A target that is a symbolic link stays one; one that
// is replaced hands on its rights and owner. At most one object exists at a time.
// For standard output, and for one that is only tried, it is a file in memory.
class OutputFile {
 public:
  enum class Purpose { kWrite, kTry };

  // Creates the empty temporary file. Throws Failure.
  explicit OutputFile(const std::filesystem::path& target, Purpose purpose = Purpose::kWrite);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  const std::filesystem::path& TemporaryPath() const { return temporary_; }
  // What the replaced file loses: an owner that cannot be kept, other names. Whole sentences.
  const std::vector<std::string>& Notices() const { return notices_; }
  // Puts the contents on the disk and renames, or hands them to standard output. Throws Failure.
  // With force false the target is looked for once more, since rendering took its time.
  void Commit(bool force);
  // Like Commit, but under a name that tells that the file is not whole, which it returns:
  // "out.partial.mkv" for "out.mkv". An older file of that name is replaced.
  std::filesystem::path KeepUnfinished();

 private:
  void CommitToStandardOutput() const;
  void FlushContents() const;
  void TakeName(const std::filesystem::path& name);

  std::filesystem::path shown_;   // as the user named it
  std::filesystem::path target_;  // links resolved
  std::filesystem::path temporary_;
  std::vector<std::string> notices_;
  std::optional<mode_t> mode_;  // of the replaced file
  int file_ = -1;               // the temporary one, locked
  bool committed_ = false;
  std::unique_ptr<MemoryFile> memory_;
};

// Writes a whole text through an OutputFile, over an existing file too. Returns what the replaced
// file loses. Throws Failure.
std::vector<std::string> WriteTextFile(const std::filesystem::path& target, std::string_view text);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_OUTPUT_FILE_H_
