// Preferences of pixel formats.
#include "media/written_pixels.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "media/failure.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::media {
namespace {

// Those that the muxer of Y4M writes.
constexpr std::array kY4mFormats = {
    AV_PIX_FMT_YUV420P,   AV_PIX_FMT_YUV422P,   AV_PIX_FMT_YUV444P,   AV_PIX_FMT_YUV411P,
    AV_PIX_FMT_GRAY8,     AV_PIX_FMT_GRAY16,    AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV422P10,
    AV_PIX_FMT_YUV444P10, AV_PIX_FMT_YUV420P12, AV_PIX_FMT_YUV422P12, AV_PIX_FMT_YUV444P12,
    AV_PIX_FMT_YUV420P16, AV_PIX_FMT_YUV422P16, AV_PIX_FMT_YUV444P16};

std::span<const AVPixelFormat> FormatsOf(const AVCodec& codec) {
  std::size_t count = 0;
  while (codec.pix_fmts != nullptr && codec.pix_fmts[count] != AV_PIX_FMT_NONE) ++count;
  return {codec.pix_fmts, count};
}

// Formats from which the first one that the codec takes is taken.
std::vector<AVPixelFormat> Preferred(const VideoContainer& container, const AVCodec& codec,
                                     const VideoContent& content) {
  using List = std::vector<AVPixelFormat>;
  const bool deep = content.deep;
  const bool alpha = content.alpha;
  const std::string_view name = codec.name;
  if (name == "prores_ks") {
    return {alpha ? AV_PIX_FMT_YUVA444P10 : AV_PIX_FMT_YUV444P10};
  }
  if (name == "ffv1") {
    if (deep) return {alpha ? AV_PIX_FMT_GBRAP16 : AV_PIX_FMT_GBRP16};
    return {alpha ? AV_PIX_FMT_BGRA : AV_PIX_FMT_BGR0};
  }
  if (name == "rawvideo") {
    if (deep) return {alpha ? AV_PIX_FMT_RGBA64LE : AV_PIX_FMT_RGB48LE};
    return {alpha ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGB24};
  }
  if (IsY4m(container.muxer)) {
    return deep ? List{content.sourceFormat, AV_PIX_FMT_YUV444P16}
                : List{content.sourceFormat, AV_PIX_FMT_YUV444P};
  }
  if (alpha && !deep) return {AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUV420P};
  return deep ? List{AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV420P} : List{AV_PIX_FMT_YUV420P};
}

bool IsAmong(AVPixelFormat format, std::span<const AVPixelFormat> formats) {
  return std::find(formats.begin(), formats.end(), format) != formats.end();
}

}  // namespace

AVPixelFormat ChoosePixelFormat(const VideoContainer& container, const AVCodec& codec,
                                const VideoEncoding& encoding, const VideoContent& content) {
  const std::span<const AVPixelFormat> formats =
      IsY4m(container.muxer) ? std::span<const AVPixelFormat>(kY4mFormats) : FormatsOf(codec);
  if (!encoding.pixelFormat.empty()) {
    const AVPixelFormat wanted = av_get_pix_fmt(encoding.pixelFormat.c_str());
    if (wanted != AV_PIX_FMT_NONE && (formats.empty() || IsAmong(wanted, formats))) return wanted;
    std::string names;
    for (const AVPixelFormat format : formats) {
      names += (names.empty() ? "" : ", ") + std::string(av_get_pix_fmt_name(format));
    }
    throw Failure(kWrongUsage, "--pixel-format " + encoding.pixelFormat + ": " + codec.name +
                                   " does not take it. Choose from " + names + ".");
  }
  for (const AVPixelFormat format : Preferred(container, codec, content)) {
    if (formats.empty() || IsAmong(format, formats)) return format;
  }
  // The lists of formats end with a mark that the span leaves out.
  return avcodec_find_best_pix_fmt_of_list(codec.pix_fmts, content.sourceFormat,
                                           content.alpha ? 1 : 0, nullptr);
}

}  // namespace vitrell::media
