// The thumbnail in EXIF data.
#ifndef VITRELL_MEDIA_THUMBNAIL_H_
#define VITRELL_MEDIA_THUMBNAIL_H_

#include <exiv2/exif.hpp>

#include "headless/world_buffer.h"
#include "media/formats.h"

namespace vitrell::media {

// Whether EXIF data of a file of this format hold one. In a TIFF its place is that of the second
// page.
bool HasThumbnail(const Exiv2::ExifData& exif, const Format& format);

// Puts a small version of the result, a JPEG of at most 160 x 120 pixels, into EXIF data that have
// none. Transparency is ignored.
void AddThumbnail(const headless::WorldBuffer& result, Exiv2::ExifData& exif);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_THUMBNAIL_H_
