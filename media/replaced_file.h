// Mode and ownership that a new file inherits from the one that it replaces.
#ifndef VITRELL_MEDIA_REPLACED_FILE_H_
#define VITRELL_MEDIA_REPLACED_FILE_H_

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vitrell::media {

// Gives the open file owner and group of the target, if that exists, and no more rights than it
// has, though its owner may write it. Tells in `notices` what cannot be kept, and that further
// names of the target (hard links) keep the old contents. Returns the rights that the file should
// have in the end.
std::optional<mode_t> TakeOver(const std::filesystem::path& target, int file,
                               std::vector<std::string>& notices);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_REPLACED_FILE_H_
