// The effect's result for a picture as a frame of a video.
#ifndef VITRELL_MEDIA_STILL_EXCHANGE_H_
#define VITRELL_MEDIA_STILL_EXCHANGE_H_

#include "headless/world_buffer.h"
#include "media/picture.h"
#include "media/video_handles.h"

namespace vitrell::media {

// `taken` has the size that the effect saw and is of the format kRgb8 or kRgb16, whatever the depth
// of the result. Where the effect left a channel as `given`, the picture's own value is kept, as in
// the file of a still. True when any pixel is not opaque; with `overBlack` all are opaque after it,
// and their colours multiplied by what alpha was.
bool TakeStill(const Picture& input, const headless::WorldBuffer& given,
               const headless::WorldBuffer& result, bool overBlack, AVFrame& taken);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_STILL_EXCHANGE_H_
