// How a format compresses, as far as that can be chosen.
#ifndef VITRELL_MEDIA_ENCODING_H_
#define VITRELL_MEDIA_ENCODING_H_

#include <OpenImageIO/imageio.h>

#include <optional>
#include <string>

#include "media/formats.h"

namespace vitrell::media {

// What was asked for; the rest is as the input's file has it, or the format's usual.
struct Encoding {
  std::optional<int> quality;  // 1 to 100
  std::string compression;     // a name of the format's own
  bool lossless = false;
};

// Refuses what the format does not take, with what it does. Throws Failure.
void CheckEncoding(const Encoding& encoding, const Format& format);

// The quality where none is asked for; 0 for formats that take none.
int UsualQuality(const Format& format);

// Puts what was asked for, or else the usual, into the header of an output.
void SetEncoding(const Encoding& encoding, const Format& format, OIIO::ImageSpec& spec);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_ENCODING_H_
