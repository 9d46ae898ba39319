// Pictures in inks.
#ifndef VITRELL_MEDIA_CMYK_H_
#define VITRELL_MEDIA_CMYK_H_

#include "media/picture.h"

namespace vitrell::media {

// A note for a CMYK picture, whose profile goes: readers turn inks into red, green and blue without
// the profile that tells how they look.
void TellCmyk(Picture& picture);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_CMYK_H_
