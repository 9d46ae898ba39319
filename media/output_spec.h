// The header of the output: the input's metadata as far as they stay true.
#ifndef VITRELL_MEDIA_OUTPUT_SPEC_H_
#define VITRELL_MEDIA_OUTPUT_SPEC_H_

#include <OpenImageIO/imageio.h>

#include <set>
#include <string>
#include <vector>

#include "media/exchange.h"
#include "media/formats.h"
#include "media/picture.h"
#include "media/picture_writer.h"

namespace vitrell::media {

// The header for the chosen form. Its sample type is what is wished for; the writer may change it.
OIIO::ImageSpec MakeOutputSpec(const Picture& input, const OutputForm& form, const Format& format,
                               const WriteOrder& order, std::vector<std::string>& notices);

// What metadata of the input are missing in a written file's header: "ICC profile", "EXIF data",
// "orientation", "resolution".
std::set<std::string> LostMetadata(const OIIO::ImageSpec& input, const OIIO::ImageSpec& written);

// Whether there are data of a camera, beyond what the library makes up.
bool HasExif(const OIIO::ImageSpec& spec);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_OUTPUT_SPEC_H_
