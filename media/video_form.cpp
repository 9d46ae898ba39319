// Tables of containers and codecs, and the choices from them.
#include "media/video_form.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <string_view>
#include <vector>

#include "media/failure.h"
#include "media/standard_streams.h"
#include "media/video_colours.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::media {
namespace {

struct Container {
  std::string_view extension;
  const char* muxer;
  const char* encoder;  // the usual one
};

constexpr std::array kContainers = {
    Container{"mov", "mov", "prores_ks"}, Container{"mkv", "matroska", "ffv1"},
    Container{"mp4", "mp4", "libx264"},   Container{"webm", "webm", "libvpx-vp9"},
    Container{"nut", "nut", "rawvideo"},  Container{"y4m", "yuv4mpegpipe", "wrapped_avframe"},
};

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

std::string ExtensionOf(const std::filesystem::path& file) {
  std::string extension = file.extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return static_cast<char>(std::tolower(c & 0xff)); });
  return extension;
}

const Container* ContainerNamed(std::string_view extension) {
  const auto* found =
      std::find_if(kContainers.begin(), kContainers.end(),
                   [&](const Container& container) { return container.extension == extension; });
  return found == kContainers.end() ? nullptr : found;
}

const Container& ContainerFor(const std::filesystem::path& target, const VideoEncoding& encoding) {
  const bool standard = IsStandardStream(target);
  const std::string name = !standard                    ? ExtensionOf(target)
                           : encoding.container.empty() ? "y4m"
                                                        : encoding.container;
  const Container* container = ContainerNamed(name);
  if (container == nullptr) {
    throw Failure(kWrongUsage, ShownTarget(target) + ": videos are written as " +
                                   VideoExtensions() + ". Use one of these extensions.");
  }
  return *container;
}

const AVCodec* EncoderFor(const Container& container, const VideoEncoding& encoding) {
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

std::span<const AVPixelFormat> FormatsOf(const AVCodec& codec) {
  std::size_t count = 0;
  while (codec.pix_fmts != nullptr && codec.pix_fmts[count] != AV_PIX_FMT_NONE) ++count;
  return {codec.pix_fmts, count};
}

// Formats from which the first one that the codec takes is taken.
std::vector<AVPixelFormat> Preferred(const Container& container, const AVCodec& codec,
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
  if (std::string_view(container.muxer) == "yuv4mpegpipe") {
    return deep ? List{content.sourceFormat, AV_PIX_FMT_YUV444P16}
                : List{content.sourceFormat, AV_PIX_FMT_YUV444P};
  }
  if (alpha && !deep) return {AV_PIX_FMT_YUVA420P, AV_PIX_FMT_YUV420P};
  return deep ? List{AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV420P} : List{AV_PIX_FMT_YUV420P};
}

// Those that the muxer writes.
constexpr std::array kY4mFormats = {
    AV_PIX_FMT_YUV420P,   AV_PIX_FMT_YUV422P,   AV_PIX_FMT_YUV444P,   AV_PIX_FMT_YUV411P,
    AV_PIX_FMT_GRAY8,     AV_PIX_FMT_GRAY16,    AV_PIX_FMT_YUV420P10, AV_PIX_FMT_YUV422P10,
    AV_PIX_FMT_YUV444P10, AV_PIX_FMT_YUV420P12, AV_PIX_FMT_YUV422P12, AV_PIX_FMT_YUV444P12,
    AV_PIX_FMT_YUV420P16, AV_PIX_FMT_YUV422P16, AV_PIX_FMT_YUV444P16};

bool IsAmong(AVPixelFormat format, std::span<const AVPixelFormat> formats) {
  return std::find(formats.begin(), formats.end(), format) != formats.end();
}

AVPixelFormat ChoosePixelFormat(const Container& container, const AVCodec& codec,
                                const VideoEncoding& encoding, const VideoContent& content) {
  const bool y4m = std::string_view(container.muxer) == "yuv4mpegpipe";
  const std::span<const AVPixelFormat> formats =
      y4m ? std::span<const AVPixelFormat>(kY4mFormats) : FormatsOf(codec);
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

// x264 and x265 keep to whole chroma samples.
void CheckSize(const std::filesystem::path& target, const VideoForm& form,
               const VideoContent& content) {
  const std::string_view name = form.codec->name;
  if (!name.starts_with("libx26")) return;
  const AVPixFmtDescriptor* pixels = av_pix_fmt_desc_get(form.pixelFormat);
  const bool fits = content.width % (1 << pixels->log2_chroma_w) == 0 &&
                    content.height % (1 << pixels->log2_chroma_h) == 0;
  if (fits) return;
  throw Failure(kFailed, ShownTarget(target) + ": " + form.codec->name + " cannot write " +
                             std::to_string(content.width) + " x " +
                             std::to_string(content.height) + " pixels as " + pixels->name +
                             ", since one side is odd. Add --pixel-format yuv444p, or write "
                             ".mkv, .mov or .webm.");
}

bool IsLossless(const AVCodec& codec) {
  const AVCodecDescriptor* descriptor = avcodec_descriptor_get(codec.id);
  return descriptor != nullptr && (descriptor->props & AV_CODEC_PROP_LOSSLESS) != 0 &&
         (descriptor->props & AV_CODEC_PROP_LOSSY) == 0;
}

}  // namespace

bool IsVideoName(const std::filesystem::path& file) {
  return ContainerNamed(ExtensionOf(file)) != nullptr;
}

std::string VideoExtensions() {
  std::string names;
  for (const Container& container : kContainers) {
    names += (names.empty() ? "" : ", ") + std::string(container.extension);
  }
  return names;
}

void CheckVideoEncoding(const std::filesystem::path& target, const VideoEncoding& encoding) {
  const Container& container = ContainerFor(target, encoding);
  const AVCodec* codec = EncoderFor(container, encoding);
  const AVOutputFormat* muxer = av_guess_format(container.muxer, nullptr, nullptr);
  if (codec == nullptr || muxer == nullptr) {
    throw Failure(kFailed, "." + std::string(container.extension) +
                               ": the installed FFmpeg libraries cannot write it. Use .mkv.");
  }
  if (!encoding.codec.empty() &&
      avformat_query_codec(muxer, codec->id, FF_COMPLIANCE_NORMAL) != 1) {
    throw Failure(kWrongUsage, "--video-codec " + encoding.codec + ": ." +
                                   std::string(container.extension) +
                                   " cannot hold it. Use .mkv, or leave the option out.");
  }
  const Encoder* scale = EncoderNamed(codec->name);
  if (encoding.quality && (scale == nullptr || scale->worst == 0)) {
    throw Failure(kWrongUsage, std::string("--quality: ") + codec->name +
                                   " takes none. It is for .mp4 (H.264) and .webm (VP9).");
  }
  if (encoding.lossless && !IsLossless(*codec)) {
    throw Failure(kWrongUsage, std::string("--lossless: ") + codec->name +
                                   " is not without loss. Write .mkv (FFV1).");
  }
}

VideoForm ChooseVideoForm(const std::filesystem::path& target, const VideoEncoding& encoding,
                          const VideoContent& content) {
  CheckVideoEncoding(target, encoding);
  const Container& container = ContainerFor(target, encoding);
  VideoForm form;
  form.container = av_guess_format(container.muxer, nullptr, nullptr);
  form.codec = EncoderFor(container, encoding);
  form.pixelFormat = ChoosePixelFormat(container, *form.codec, encoding, content);
  CheckSize(target, form, content);
  return form;
}

void SetCodecOptions(const VideoEncoding& encoding, const VideoForm& form, int width, int height,
                     AVDictionary** options) {
  const std::string_view name = form.codec->name;
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
    if (HasAlpha(form.pixelFormat)) av_dict_set(options, "auto-alt-ref", "0", 0);
  }
}

}  // namespace vitrell::media
