// What can be wrong with a picture's file. Every function throws Failure that names file, cause and
// remedy.
#ifndef VITRELL_MEDIA_PICTURE_CHECKS_H_
#define VITRELL_MEDIA_PICTURE_CHECKS_H_

#include <filesystem>
#include <string>

#include "media/formats.h"
#include "media/picture.h"
#include "media/picture_limits.h"

namespace vitrell::media {

[[noreturn]] void FailAsNoPicture(const std::filesystem::path& file, const std::string& cause);
// `message` is the reader's; it may be empty.
[[noreturn]] void FailAsDamaged(const std::filesystem::path& file, const std::string& message);

// Whether there is a file that can be opened and is not empty.
void CheckReadable(const std::filesystem::path& file);

// What the file itself tells before it is opened: the size, where opening costs as much as reading,
// and the lengths of a PSD's sections, for which its reader takes memory.
void CheckUnopened(const std::filesystem::path& file, const Format& format,
                   const PictureLimits& limits);

// The header: kinds of pictures that cannot be read, the size of a layer, the memory for it all.
void CheckSpec(const Picture& picture, const PictureLimits& limits);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PICTURE_CHECKS_H_
