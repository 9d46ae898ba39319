// Which part of a file and which of its channels are wanted.
#ifndef VITRELL_MEDIA_SELECTION_H_
#define VITRELL_MEDIA_SELECTION_H_

#include <OpenImageIO/imageio.h>

#include <filesystem>
#include <string>

#include "media/picture.h"

namespace vitrell::media {

// The part with this name, or else this number, counted from 0; empty is the first. Throws Failure
// with the list of parts.
int FindPart(OIIO::ImageInput& input, const Format& format, const std::string& wanted,
             const std::filesystem::path& file);

// The channels with these names, in the order red, green, blue, alpha: one (grey), two (grey and
// alpha), three or four, apart by commas. A single name may also be that of a layer, which stands
// for its colours and its alpha. Empty: as the header tells. Throws Failure with the list of
// channels.
ChannelLayout ChooseChannels(const OIIO::ImageSpec& spec, const std::string& wanted,
                             const std::filesystem::path& file);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_SELECTION_H_
