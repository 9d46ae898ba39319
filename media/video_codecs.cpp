// The table of encoders.
#include "media/video_codecs.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "media/failure.h"
#include "media/pixel_formats.h"

namespace vitrell::media {
namespace {

// Of several encoders of a codec the one that is usually taken, and the worst number of its scale
// of quality, whose best is 0; 0: it has none.
struct Encoder {
  std::string_view codec;
  std::string_view name;
  int worst;
};

constexpr std::array kEncoders = {
    Encoder{"prores", "prores_ks", 0}, Encoder{"h264", "libx264", 51},
    Encoder{"hevc", "libx265", 51},    Encoder{"h265", "libx265", 51},
    Encoder{"vp8", "libvpx", 63},      Encoder{"vp9", "libvpx-vp9", 63},
    Encoder{"av1", "libaom-av1", 63},
};

constexpr int kUsualQuality = 65;

const Encoder* EncoderNamed(std::string_view name) {
  const auto* found = std::find_if(kEncoders.begin(), kEncoders.end(), [&](const Encoder& e) {
    return e.name == name || e.codec == name;
  });
  return found == kEncoders.end() ? nullptr : found;
}

bool IsLossless(const AVCodec& codec) {
  const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec.id);
  return descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_LOSSLESS) != 0 &&
         (descriptor->props & AV_CODEC_PROP_LOSSY) == 0;
}

}  // namespace

const AVCodec* EncoderFor(const VideoContainer& container, const VideoEncoding& encoding) {
  if (encoding.codec.empty()) return avcodec_find_encoder_by_name(container.encoder);
  const Encoder* usual = EncoderNamed(encoding.codec);
  const std::string name = usual == nullptr ? encoding.codec : std::string{usual->name};
  const AVCodec* codec = avcodec_find_encoder_by_name(name.c_str());
  if (codec == nullptr) {
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get_by_name(name.c_str());
    if (descriptor != nullptr) codec = avcodec_find_encoder(descriptor->id);
  }
  if (codec == nullptr || codec->type != AVMEDIA_TYPE_VIDEO) {
    throw Failure(kWrongUsage, "--video-codec " + encoding.codec +
                                   ": there is no such encoder here. `ffmpeg -encoders` lists "
                                   "them; usual ones are prores, ffv1, h264, hevc, vp9, av1.");
  }
  return codec;
}

void CheckQuality(const AVCodec& codec, const VideoEncoding& encoding) {
  const Encoder* scale = EncoderNamed(codec.name);
  if (encoding.quality && (scale == nullptr || scale->worst == 0)) {
    throw Failure(kWrongUsage, std::string("--quality: ") + codec.name +
                                   " takes none. It is for .mp4 (H.264) and .webm (VP9).");
  }
  if (encoding.lossless && !IsLossless(codec)) {
    throw Failure(kWrongUsage, std::string("--lossless: ") + codec.name +
                                   " is not without loss. Write .mkv (FFV1).");
  }
}

void SetCodecOptions(const VideoEncoding& encoding, const AVCodec& codec, AVPixelFormat pixelFormat,
                     int width, int height, AVDictionary** options) {
  const std::string_view name = codec.name;
  if (const Encoder* encoder = EncoderNamed(name); encoder != nullptr && encoder->worst > 0) {
    const int quality = encoding.quality.value_or(kUsualQuality);
    av_dict_set_int(options, "crf", ((100 - quality) * encoder->worst + 50) / 100, 0);
  }
  // The same bytes on any processor: one would choose by its vectors, the other name them.
  if (name.starts_with("libx264")) av_dict_set(options, "x264-params", "cpu-independent=1", 0);
  if (name == "libx265") av_dict_set(options, "x265-params", "info=0", 0);
  if (name == "prores_ks") av_dict_set(options, "profile", "4444", 0);
  if (name == "ffv1") {
    // The archives' form: slices with checksums, every frame by itself. The slices of frames with a
    // shorter side come out empty, or are refused; the first level has none.
    constexpr int kShortestSide = 3;
    const bool slices = std::min(width, height) >= kShortestSide;
    av_dict_set(options, "level", slices ? "3" : "1", 0);
    if (slices) av_dict_set(options, "slicecrc", "1", 0);
    av_dict_set(options, "g", "1", 0);
  }
  if (name.starts_with("libvpx")) {
    av_dict_set(options, "b", "0", 0);
    av_dict_set(options, "cpu-used", "2", 0);
    if (HasAlpha(pixelFormat)) av_dict_set(options, "auto-alt-ref", "0", 0);
  }
}

}  // namespace vitrell::media
