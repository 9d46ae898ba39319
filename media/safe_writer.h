// Writing one picture file with the picture library so that no failure is overlooked.
#ifndef VITRELL_MEDIA_SAFE_WRITER_H_
#define VITRELL_MEDIA_SAFE_WRITER_H_

#include <OpenImageIO/imageio.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "media/file_sink.h"
#include "media/formats.h"
#include "media/memory_file.h"
#include "media/metadata.h"
#include "media/picture.h"
#include "media/result_rows.h"

namespace vitrell::media {

// The format's writer. Throws Failure, which names the target, if there is none.
std::unique_ptr<OIIO::ImageOutput> MakeWriter(const Format& format,
                                              const std::filesystem::path& target);

// Everything that is written passes the sink, at once or from a file in memory, because no writer
// sees every failure itself. All functions throw Failure, which names the target.
class SafeWriter {
 public:
  // `temporary` exists and is overwritten. The references must outlive the object.
  SafeWriter(const Format& format, const std::filesystem::path& temporary,
             const std::filesystem::path& target);

  // An ICC profile that the format's library finds fault with is left out, which shows when the
  // header is read back.
  void Open(OIIO::ImageSpec spec);

  // Of the opened file: with the writer's choice of types where it lacks those asked for.
  const OIIO::ImageSpec& Header() const { return writer_->spec(); }

  void WritePixels(ResultRows& rows, StoppableProgress& progress);

  // Between the pixels and the end. Returns what the file does not take.
  std::vector<std::string> AddMetadata(const Metadata& metadata);

  void Finish();

 private:
  bool WriteRows(ResultRows& rows, StoppableProgress& progress);
  bool OpenOnce(const OIIO::ImageSpec& spec);
  [[noreturn]] void FailToWrite(const std::string& cause) const;
  void FailIfSinkFailed() const;

  const Format& format_;
  const std::filesystem::path& temporary_;
  const std::filesystem::path& target_;
  FileSink sink_;
  std::unique_ptr<MemoryFile> memory_;
  std::unique_ptr<OIIO::ImageOutput> writer_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_SAFE_WRITER_H_
