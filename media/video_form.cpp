// Choices that must go together.
#include "media/video_form.h"

#include <string>
#include <string_view>

#include "media/failure.h"
#include "media/pixel_formats.h"
#include "media/standard_streams.h"
#include "media/video_codecs.h"
#include "media/video_containers.h"
#include "media/written_pixels.h"

namespace vitrell::media {
namespace {

// x264 and x265 keep to whole chroma samples.
void CheckSize(const std::filesystem::path& target, const VideoForm& form,
               const VideoContent& content) {
  const std::string_view name = form.codec->name;
  if (!name.starts_with("libx26")) return;
  const AVPixFmtDescriptor& pixels = DescriptorOf(form.pixelFormat);
  const bool fits = content.width % (1 << pixels.log2_chroma_w) == 0 &&
                    content.height % (1 << pixels.log2_chroma_h) == 0;
  if (fits) return;
  throw Failure(kFailed, ShownTarget(target) + ": " + form.codec->name + " cannot write " +
                             std::to_string(content.width) + " x " +
                             std::to_string(content.height) + " pixels as " + pixels.name +
                             ", since one side is odd. Add --pixel-format yuv444p, or write "
                             ".mkv, .mov or .webm.");
}

}  // namespace

void CheckVideoEncoding(const std::filesystem::path& target, const VideoEncoding& encoding) {
  const VideoContainer& container = ContainerFor(target, encoding);
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
  CheckQuality(*codec, encoding);
}

VideoForm ChooseVideoForm(const std::filesystem::path& target, const VideoEncoding& encoding,
                          const VideoContent& content) {
  CheckVideoEncoding(target, encoding);
  const VideoContainer& container = ContainerFor(target, encoding);
  VideoForm form;
  form.container = av_guess_format(container.muxer, nullptr, nullptr);
  form.codec = EncoderFor(container, encoding);
  form.pixelFormat = ChoosePixelFormat(container, *form.codec, encoding, content);
  CheckSize(target, form, content);
  return form;
}

}  // namespace vitrell::media
