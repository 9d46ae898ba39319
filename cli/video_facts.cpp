// Names of formats.
#include "cli/video_facts.h"

#include "media/standard_streams.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vitrell::cli {

VideoFacts InputFacts(const media::VideoReader& reader, const AVFrame& first) {
  VideoFacts facts;
  facts.file = reader.Name().string();
  facts.container = reader.Container().iformat->name;
  facts.codec = avcodec_get_name(reader.Stream().codecpar->codec_id);
  facts.pixelFormat = av_get_pix_fmt_name(static_cast<AVPixelFormat>(first.format));
  facts.width = first.width;
  facts.height = first.height;
  const AVRational rate = reader.FrameRate();
  facts.frameRate = std::to_string(rate.num) + "/" + std::to_string(rate.den);
  return facts;
}

VideoFacts OutputFacts(const std::string& output, const media::VideoForm& form,
                       const VideoFacts& input) {
  VideoFacts facts = input;
  facts.file = media::ShownTarget(output);
  facts.container = form.container->name;
  facts.codec = avcodec_get_name(form.codec->id);
  facts.pixelFormat = av_get_pix_fmt_name(form.pixelFormat);
  return facts;
}

}  // namespace vitrell::cli
