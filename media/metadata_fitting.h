// Adapting metadata to the file that they are written to.
#ifndef VITRELL_MEDIA_METADATA_FITTING_H_
#define VITRELL_MEDIA_METADATA_FITTING_H_

#include <OpenImageIO/imageio.h>

#include <string>
#include <vector>

#include "media/formats.h"
#include "media/metadata.h"

namespace vitrell::media {

// The metadata for the output of this header: size, orientation and resolution are the output's,
// and what describes the input's pixels only (the layout of its samples, its thumbnails) is gone.
Metadata FitMetadata(const Metadata& metadata, const Format& format, const OIIO::ImageSpec& output);

// Takes out of the header what the metadata hold too, so that no writer adds its own version.
// `samePlugin` tells that the header comes from a file of the same format.
void DropCarried(const Metadata& metadata, bool samePlugin, OIIO::ImageSpec& spec);

// Gives a header without a resolution the one of the EXIF data, for writers that take it from
// there.
void SetResolution(const Metadata& metadata, OIIO::ImageSpec& spec);

// The kinds that the format has no place for: "EXIF data", "IPTC data", "XMP data", "comment".
std::vector<std::string> KindsWithoutPlace(const Metadata& metadata, const Format& format);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_METADATA_FITTING_H_
