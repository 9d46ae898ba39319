// Which channels the output has, and how its colours stand to alpha.
#ifndef VITRELL_MEDIA_OUTPUT_FORM_H_
#define VITRELL_MEDIA_OUTPUT_FORM_H_

#include <string>
#include <vector>

#include "media/exchange.h"
#include "media/formats.h"
#include "media/picture.h"

namespace vitrell::media {

// Whether the output is what the effect saw, because its format cannot place other pixels in it.
bool NeedsWholeFrame(const Picture& input, const Format& format);

// Channels, alpha and size of the output. What the result holds and the format cannot is told in
// `notices`; so is a grey input that comes out coloured.
OutputForm ChooseForm(const Picture& input, const ResultTraits& result, const Format& format,
                      std::vector<std::string>& notices);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_OUTPUT_FORM_H_
