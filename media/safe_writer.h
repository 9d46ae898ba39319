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

// All output goes through a FileSink, directly or by way of a file in memory, because no writer of
// the library detects every failure. All functions throw Failure, which names the target.
class SafeWriter {
 public:
  // `temporary` exists and is overwritten. The references must outlive the object.
  SafeWriter(const Format& format, const std::filesystem::path& temporary,
             const std::filesystem::path& target);

  // An ICC profile that the format's library rejects is left out; reading back the header shows it.
  void Open(OIIO::ImageSpec spec);

  // The header of the opened file; the sample type is the writer's choice if it lacks the requested
  // one.
  const OIIO::ImageSpec& Header() const { return writer_->spec(); }

  void WritePixels(ResultRows& rows, StoppableProgress& progress);

  // To be called after the pixels and before Finish. Returns the kinds that could not be stored.
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
