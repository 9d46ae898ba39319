// The output stream of all picture writers; it remembers the first write that failed.
#ifndef VITRELL_MEDIA_FILE_SINK_H_
#define VITRELL_MEDIA_FILE_SINK_H_

#include <OpenImageIO/filesystem.h>

#include <filesystem>
#include <string>

namespace vitrell::media {

// Some writers ignore the result of a write; without this class a full disk would leave a damaged
// picture that is reported as written.
class FileSink : public OIIO::Filesystem::IOProxy {
 public:
  // Opens an existing file for writing; opened() tells whether that worked.
  explicit FileSink(const std::filesystem::path& file);
  ~FileSink() override;

  // Not "file": some writers would cast the object to the library's own file class.
  const char* proxytype() const override { return "sink"; }
  void close() override;
  bool seek(int64_t offset) override;
  size_t read(void* buffer, size_t size) override;
  size_t write(const void* buffer, size_t size) override;
  size_t pread(void* buffer, size_t size, int64_t offset) override;
  size_t pwrite(const void* buffer, size_t size, int64_t offset) override;
  size_t size() const override;

  // Truncates the file to nothing.
  void Restart();
  // Replaces the contents by these bytes.
  void Replace(const void* bytes, std::size_t size);

  // The cause of the first failure: a write, the flush to disk on closing, or a file length that is
  // not what was written. Empty if there was none.
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
