// The header of an EXR part that is written anew.
#ifndef VITRELL_MEDIA_EXR_HEADER_H_
#define VITRELL_MEDIA_EXR_HEADER_H_

#include <ImfHeader.h>
#include <OpenImageIO/imageio.h>

#include "media/exchange.h"
#include "media/picture.h"

namespace vitrell::media {

bool IsTiled(const Imf::Header& header);

// The header of the input's part with the channels of `form`, named as in `spec`: rendered ones get
// their types from there, the others keep theirs. Compression and fingerprint are those of `spec`;
// tiles stay, without smaller levels. Rows go from top to bottom.
Imf::Header RenderedHeader(const Picture& input, const OIIO::ImageSpec& spec,
                           const OutputForm& form, Imf::Header header);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_EXR_HEADER_H_
