// Putting metadata into a finished file.
#ifndef VITRELL_MEDIA_METADATA_WRITER_H_
#define VITRELL_MEDIA_METADATA_WRITER_H_

#include <filesystem>
#include <string>
#include <vector>

#include "media/file_sink.h"
#include "media/formats.h"
#include "media/metadata.h"

namespace vitrell::media {

// Puts the metadata in the place of those that a whole picture file holds. The file is read by its
// name and written through the sink that wrote it, which is still open. Returns what was not taken,
// looked for in the result: "XMP data", "EXIF data (2 of 60 entries)".
std::vector<std::string> PutMetadata(const Metadata& metadata, const Format& format,
                                     const std::filesystem::path& file, FileSink& sink);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_METADATA_WRITER_H_
