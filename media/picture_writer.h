// Writing the result of the effect as a picture.
#ifndef VITRELL_MEDIA_PICTURE_WRITER_H_
#define VITRELL_MEDIA_PICTURE_WRITER_H_

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "headless/world_buffer.h"
#include "media/encoding.h"
#include "media/formats.h"
#include "media/picture.h"

namespace vitrell::media {

enum class Depth { kAuto, k8, k16 };

struct WriteOrder {
  std::filesystem::path target;  // "-": standard output, as PNG
  // kAuto keeps the type of the input's file; otherwise the file holds this many bits, if its
  // format can.
  Depth depth = Depth::kAuto;
  Encoding encoding;
  bool force = false;              // replace an existing file
  bool onlyTry = false;            // write into memory and forget it
  std::int64_t clippedPixels = 0;  // of the input, as it was given to the effect
  std::string fingerprint;         // into the header, where it has a place; empty: none
  // Called with the file's header and format and the sentences that will be returned, before the
  // file takes its name. It may throw; then there is no file.
  std::function<void(const OIIO::ImageSpec& written, const Format& format,
                     const std::vector<std::string>& notices)>
      agree;
};

// The format that the target's extension tells. Throws Failure if none does.
const Format& FormatFor(const std::filesystem::path& target);

// Refuses an extension that no picture format has, and an encoding that the format does not take,
// before any work is done. Throws Failure.
// By names alone: nothing of the picture library is called, which would start its threads.
void CheckEncodingFor(const std::filesystem::path& target, const Encoding& encoding);
// And that there is a writer.
void CheckWritable(const std::filesystem::path& target, const Encoding& encoding);

// Writes the result with the size, metadata and channels of the input, beside the target and then
// renamed. What the format cannot hold is told in the returned sentences. Throws Failure, also
// when stopped by `progress`, and then leaves no file.
std::vector<std::string> WritePicture(const Picture& input, const headless::WorldBuffer& given,
                                      const headless::WorldBuffer& result, const WriteOrder& order,
                                      const FileProgress& progress);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PICTURE_WRITER_H_
