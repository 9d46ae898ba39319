// The channels of the output in its header.
#ifndef VITRELL_MEDIA_CHANNEL_NAMES_H_
#define VITRELL_MEDIA_CHANNEL_NAMES_H_

#include <OpenImageIO/imageio.h>

#include "media/exchange.h"
#include "media/formats.h"
#include "media/picture.h"

namespace vitrell::media {

// Sets number, names and the place of alpha. Between formats whose channels have names of their own
// those stay; a new channel gets the name that its role has, within the layer of the others if the
// name is taken. With `keepTypes` a channel keeps its own sample type, if the input tells one for
// each.
void NameChannels(const Picture& input, const OutputForm& form, const Format& format,
                  bool keepTypes, OIIO::ImageSpec& spec);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_CHANNEL_NAMES_H_
