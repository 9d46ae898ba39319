// Opening and feeding encoders.
#include "media/video_encoder.h"

#include <cerrno>
#include <new>
#include <utility>

#include "media/failure.h"
#include "media/video_codecs.h"
#include "media/video_containers.h"
#include "media/video_messages.h"

extern "C" {
#include <libavutil/dict.h>
}

namespace vitrell::media {
namespace {

struct Options {
  AVDictionary* entries = nullptr;
  Options() = default;
  ~Options() { av_dict_free(&entries); }
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;
};

}  // namespace

VideoEncoder::VideoEncoder(std::filesystem::path name, const VideoForm& form,
                           const VideoOrigin& origin, const AVFrame& first,
                           const VideoWriteOrder& order)
    : name_(std::move(name)),
      form_(form),
      colours_(ColoursForOutput(ColoursOf(first), static_cast<AVPixelFormat>(first.format),
                                form.pixelFormat, first.width, first.height)),
      encoder_(avcodec_alloc_context3(form.codec)),
      converter_(order.threads) {
  if (encoder_ == nullptr) throw std::bad_alloc();
  AVCodecContext& encoder = *encoder_;
  encoder.width = first.width;
  encoder.height = first.height;
  encoder.pix_fmt = form_.pixelFormat;
  const AVRational rate = origin.rate;
  encoder.framerate = rate;
  encoder.time_base = HasOnlyARate() ? AVRational{rate.den, rate.num} : origin.stream.time_base;
  encoder.sample_aspect_ratio = first.sample_aspect_ratio;
  encoder.field_order = origin.fieldOrder;
  encoder.thread_count = order.encoderThreads;
  encoder.strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL;
  encoder.flags |= AV_CODEC_FLAG_BITEXACT;
  if ((form_.container->flags & AVFMT_GLOBALHEADER) != 0) {
    encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  }
  SetColours(colours_, encoder);
  Options options;
  SetCodecOptions(order.encoding, *form_.codec, form_.pixelFormat, first.width, first.height,
                  &options.entries);
  if (const int error = avcodec_open2(&encoder, form_.codec, &options.entries); error < 0) {
    if (error == AVERROR(ENOMEM)) throw std::bad_alloc();
    throw Failure(kFailed, name_.string() + ": " + form_.codec->name +
                               " cannot write this video (" + VideoErrorCause(error) +
                               "). Choose another format or --video-codec.");
  }
}

// Without stamps of its own, one frame after the other.
bool VideoEncoder::HasOnlyARate() const { return IsY4m(form_.container->name); }

int VideoEncoder::Give(const AVFrame& rgb, const AVFrame& decoded, std::int64_t begin) {
  const FrameHandle frame = MakeFrame(rgb.width, rgb.height, form_.pixelFormat);
  SetColours(colours_, *frame);
  converter_.Convert(rgb, *frame, name_);
  frame->pts = HasOnlyARate() ? framesGiven_ : decoded.pts - begin;
  frame->pkt_duration = decoded.pkt_duration;
  frame->sample_aspect_ratio = decoded.sample_aspect_ratio;
  frame->interlaced_frame = decoded.interlaced_frame;
  frame->top_field_first = decoded.top_field_first;
  if (!HasOnlyARate()) durations_[frame->pts] = decoded.pkt_duration;
  ++framesGiven_;
  return avcodec_send_frame(encoder_.get(), frame.get());
}

int VideoEncoder::GiveEnd() { return avcodec_send_frame(encoder_.get(), nullptr); }

int VideoEncoder::Take(AVPacket& packet) {
  const int error = avcodec_receive_packet(encoder_.get(), &packet);
  if (error < 0) return error;
  if (const auto known = durations_.find(packet.pts); known != durations_.end()) {
    packet.duration = known->second;
    durations_.erase(known);
  }
  return 0;
}

}  // namespace vitrell::media
