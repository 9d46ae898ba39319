// Photographs that a camera held another way up.
#ifndef VITRELL_MEDIA_ORIENTATION_H_
#define VITRELL_MEDIA_ORIENTATION_H_

#include <OpenImageIO/imageio.h>

#include <filesystem>

#include "media/picture.h"

namespace vitrell::media {

// The orientation tag, 1 (normal) to 8, numbered as in EXIF. Anything else counts as normal, and so
// does EXR, which has no such tag: programs carry it along from other files without turning the
// picture by it.
int OrientationOf(const OIIO::ImageSpec& spec, const Format& format);

// Adds the tag to the header where the picture library does not look for it (PNG, WebP).
void FindOrientation(const std::filesystem::path& file, const Format& format,
                     OIIO::ImageSpec& spec);

// Puts the pixels upright and sets the tag to normal. Sizes, offsets, resolutions and the shape of
// pixels follow. Samples are moved, never computed.
void MakeUpright(Picture& picture);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_ORIENTATION_H_
