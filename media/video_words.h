// 16-bit RGB as the libraries' converter makes it, and as everybody else means it.
//
// Where the converter has no way of its own for two formats, it goes through 8-bit levels with a
// fraction: its white is 255 * 256. Here white is 65535, as in files of RGB.
#ifndef VITRELL_MEDIA_VIDEO_WORDS_H_
#define VITRELL_MEDIA_VIDEO_WORDS_H_

#include "media/video_handles.h"

namespace vitrell::media {

// Whether the converter moves the words of this format to and from kRgb16 as they are.
bool HasExactWords(AVPixelFormat format);

// From the converter's white to 65535. Alpha, of which the upper `alphaBits` are right, gets the
// lower ones from these; 0: it is right already. The frame is of kRgb16.
void WidenWords(AVFrame& frame, int alphaBits);

// From white as 65535 to the converter's, colours alone. WidenWords gives the same frame again.
void NarrowWords(const AVFrame& frame, AVFrame& narrowed);

// From kRgb8 to kRgb16, 255 to 65535.
void BytesToWords(const AVFrame& bytes, AVFrame& words);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_VIDEO_WORDS_H_
