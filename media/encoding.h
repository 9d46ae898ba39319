// How a format compresses, as far as that can be chosen.
#ifndef VITRELL_MEDIA_ENCODING_H_
#define VITRELL_MEDIA_ENCODING_H_

#include <OpenImageIO/imageio.h>

#include <optional>
#include <string>

#include "media/formats.h"

namespace vitrell::media {

// What the user asked for. Whatever is unset follows the input file, or else the format's default.
struct Encoding {
  std::optional<int> quality;  // 1 to 100
  std::string compression;     // a name of the format's own
  bool lossless = false;
};

// Throws Failure for a choice that the format does not support, listing those that it does.
void CheckEncoding(const Encoding& encoding, const Format& format);

// The default quality; 0 for formats that have no such setting.
int UsualQuality(const Format& format);

// Writes the requested settings, or the defaults, into the header of an output.
void SetEncoding(const Encoding& encoding, const Format& format, OIIO::ImageSpec& spec);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_ENCODING_H_
