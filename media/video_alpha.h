// What alpha means in the frames of a video.
#ifndef VITRELL_MEDIA_VIDEO_ALPHA_H_
#define VITRELL_MEDIA_VIDEO_ALPHA_H_

#include "headless/world_buffer.h"
#include "media/video_handles.h"

namespace vitrell::media {

// Frames are of the format kRgb8, for worlds of 8 bits, or kRgb16; frame and world have one size.

// Sets alpha to opaque.
void MakeOpaque(AVFrame& frame);

// Multiplies the colours by alpha, which becomes opaque.
void LayOverBlack(AVFrame& frame);

// Divides colours that were multiplied by alpha, in the frame and on their way into the world, as
// it is done for pictures: values above white become white, and where alpha is 0 they stay.
void GiveDividedByAlpha(AVFrame& frame, headless::WorldBuffer& world);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_ALPHA_H_
