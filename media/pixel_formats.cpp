// Facts from the libraries' descriptors.
#include "media/pixel_formats.h"

#include <string_view>

#include "media/failure.h"

namespace vitrell::media {

const AVPixFmtDescriptor& DescriptorOf(AVPixelFormat format) {
  const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
  if (descriptor == nullptr) throw Failure(kFailed, "a video has no known pixel format.");
  return *descriptor;
}

bool IsRgb(AVPixelFormat format) {
  return (DescriptorOf(format).flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL)) != 0;
}

bool IsGrey(AVPixelFormat format) { return DescriptorOf(format).nb_components < 3; }

bool HasAlpha(AVPixelFormat format) {
  return (DescriptorOf(format).flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
}

bool IsDeep(AVPixelFormat format) { return DescriptorOf(format).comp[0].depth > 8; }

bool IsOldFullRange(AVPixelFormat format) {
  return std::string_view(DescriptorOf(format).name).starts_with("yuvj");
}

}  // namespace vitrell::media
