// What the numbers of a video's pixel format are.
#ifndef VITRELL_MEDIA_PIXEL_FORMATS_H_
#define VITRELL_MEDIA_PIXEL_FORMATS_H_

#include "media/video_handles.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::media {

// What the effect's pixels are made from: alpha, red, green, blue in bytes, and red, green, blue,
// alpha in words of 0 to 65535.
constexpr AVPixelFormat kRgb8 = AV_PIX_FMT_ARGB;
constexpr AVPixelFormat kRgb16 = AV_PIX_FMT_RGBA64;

// Throws Failure for a format that the libraries do not know, as all below do.
const AVPixFmtDescriptor& DescriptorOf(AVPixelFormat format);

bool IsRgb(AVPixelFormat format);
bool IsGrey(AVPixelFormat format);
bool HasAlpha(AVPixelFormat format);
// More than 8 bits in a channel.
bool IsDeep(AVPixelFormat format);
// Formats whose name tells a full range whatever the tag says.
bool IsOldFullRange(AVPixelFormat format);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_PIXEL_FORMATS_H_
