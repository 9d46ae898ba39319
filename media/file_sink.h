// A file that picture writers write to, which remembers the first write that failed.
#ifndef VITRELL_MEDIA_FILE_SINK_H_
#define VITRELL_MEDIA_FILE_SINK_H_

#include <OpenImageIO/filesystem.h>

#include <filesystem>
#include <string>

namespace vitrell::media {

// Some writers do not look at the result of every write; without this a full disk would leave a
// damaged picture that counts as written.
class FileSink : public OIIO::Filesystem::IOProxy {
 public:
  // Opens an existing file for writing; opened() tells whether that worked.
  explicit FileSink(const std::filesystem::path& file);
  ~FileSink() override;

  // Not "file": some writers would take the object for the library's own file class.
  const char* proxytype() const override { return "sink"; }
  void close() override;
  bool seek(int64_t offset) override;
  size_t read(void* buffer, size_t size) override;
  size_t write(const void* buffer, size_t size) override;
  size_t pread(void* buffer, size_t size, int64_t offset) override;
  size_t pwrite(const void* buffer, size_t size, int64_t offset) override;
  size_t size() const override;

  // Forgets everything written.
  void Restart();
  // Puts these bytes in the place of everything written.
  void Replace(const void* bytes, std::size_t size);

  // The cause of the first failed write, or of what failed while closing: putting the contents on
  // the disk, and a length other than what was written. Empty if all went well.
  const std::string& FirstError() const { return firstError_; }

 private:
  void Remember();
  void CheckLength();

  int file_ = -1;
  int64_t end_ = 0;  // of the furthest write
  std::string firstError_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FILE_SINK_H_
