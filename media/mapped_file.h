// A file's bytes without a copy of them.
#ifndef VITRELL_MEDIA_MAPPED_FILE_H_
#define VITRELL_MEDIA_MAPPED_FILE_H_

#include <cstddef>
#include <filesystem>
#include <span>
#include <string_view>

namespace vitrell::media {

// Bytes that are changed here do not change in the file.
class MappedFile {
 public:
  explicit MappedFile(const std::filesystem::path& file);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // False where the file cannot be read or is empty; then there are no bytes.
  bool IsOpen() const { return !bytes_.empty(); }
  std::string_view Text() const { return {bytes_.data(), bytes_.size()}; }
  std::span<char> Bytes() { return bytes_; }

 private:
  std::span<char> bytes_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_MAPPED_FILE_H_
