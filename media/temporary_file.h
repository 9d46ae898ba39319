// Hidden files that are written beside a target, and removal of those that killed processes left.
#ifndef VITRELL_MEDIA_TEMPORARY_FILE_H_
#define VITRELL_MEDIA_TEMPORARY_FILE_H_

#include <filesystem>
#include <string>

namespace vitrell::media {

// Creates an empty file ".vitrell-HOST-PROCESS-NUMBER" with the extension, for reading and writing.
// It stays locked until the returned descriptor is closed or the process ends, however it ends.
// Returns -1 when it cannot be created, with the cause in errno.
int CreateTemporaryFile(const std::filesystem::path& folder, const std::string& extension,
                        std::filesystem::path& file);

// Removes the folder's temporary files whose process is gone: those of this host that nobody has
// locked. On folders that several machines share, where a lock may not reach the others, the files
// of other hosts stay.
void RemoveAbandonedFiles(const std::filesystem::path& folder);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_TEMPORARY_FILE_H_
