// Encoding and muxing.
#include "media/video_writer.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <string_view>

#include "media/failure.h"
#include "media/standard_streams.h"
#include "media/video_losses.h"
#include "media/video_messages.h"

extern "C" {
#include <libavutil/dict.h>
}

namespace vitrell::media {
namespace {

VideoContent ContentOf(const AVFrame& first, bool deep, const VideoWriteOrder& order) {
  const auto format = static_cast<AVPixelFormat>(first.format);
  return {format, deep, HasAlpha(format) && !order.dropAlpha, first.width, first.height};
}

// Frames without stamps of their own, one after the other at the rate.
bool HasOnlyARate(const VideoForm& form) {
  return std::string_view(form.container->name) == "yuv4mpegpipe";
}

struct Options {
  AVDictionary* entries = nullptr;
  Options() = default;
  ~Options() { av_dict_free(&entries); }
  Options(const Options&) = delete;
  Options& operator=(const Options&) = delete;
};

}  // namespace

VideoOrigin OriginOf(const VideoReader& reader) {
  return {reader.Container(), reader.Stream(), reader.FrameRate(), reader.Decoder().field_order};
}

VideoWriter::VideoWriter(const VideoOrigin& origin, const AVFrame& first, bool deep,
                         const VideoWriteOrder& order)
    : origin_(origin),
      target_(order.target),
      name_(ShownTarget(order.target)),
      form_(ChooseVideoForm(order.target, order.encoding, ContentOf(first, deep, order))),
      converter_(order.threads) {
  using Purpose = OutputFile::Purpose;
  const bool piped = IsStandardStream(target_) && !order.onlyTry;
  if (!piped) {
    output_ =
        std::make_unique<OutputFile>(target_, order.onlyTry ? Purpose::kTry : Purpose::kWrite);
    for (const std::string& notice : output_->Notices()) {
      losses_.push_back(name_.string() + ": " + notice);
    }
  }
  sink_ = std::make_unique<VideoSink>(piped ? target_ : output_->TemporaryPath());
  AVFormatContext* muxer = nullptr;
  if (avformat_alloc_output_context2(&muxer, form_.container, nullptr, nullptr) < 0) {
    throw std::bad_alloc();
  }
  muxer_.reset(muxer);
  muxer->pb = sink_->Context();
  muxer->flags |= AVFMT_FLAG_CUSTOM_IO | AVFMT_FLAG_BITEXACT;
  muxer->strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL;
  carried_.emplace(origin.container, origin.stream, *muxer, order.span);
  OpenEncoder(first, order);
  Begin();
  for (const std::string& loss : carried_->Losses()) {
    losses_.push_back(name_.string() + ": " + loss);
  }
}

void VideoWriter::OpenEncoder(const AVFrame& first, const VideoWriteOrder& order) {
  encoder_.reset(avcodec_alloc_context3(form_.codec));
  if (encoder_ == nullptr) throw std::bad_alloc();
  AVCodecContext& encoder = *encoder_;
  colours_ = ColoursForOutput(ColoursOf(first), static_cast<AVPixelFormat>(first.format),
                              form_.pixelFormat, first.width, first.height);
  encoder.width = first.width;
  encoder.height = first.height;
  encoder.pix_fmt = form_.pixelFormat;
  const AVRational rate = origin_.rate;
  encoder.framerate = rate;
  encoder.time_base =
      HasOnlyARate(form_) ? AVRational{rate.den, rate.num} : origin_.stream.time_base;
  encoder.sample_aspect_ratio = first.sample_aspect_ratio;
  encoder.field_order = origin_.fieldOrder;
  encoder.thread_count = order.encoderThreads;
  encoder.strict_std_compliance = FF_COMPLIANCE_UNOFFICIAL;
  encoder.flags |= AV_CODEC_FLAG_BITEXACT;
  if ((form_.container->flags & AVFMT_GLOBALHEADER) != 0) {
    encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
  }
  SetColours(colours_, encoder);
  Options options;
  SetCodecOptions(order.encoding, form_, first.width, first.height, &options.entries);
  if (const int error = avcodec_open2(&encoder, form_.codec, &options.entries); error < 0) {
    if (error == AVERROR(ENOMEM)) throw std::bad_alloc();
    throw Failure(kFailed, name_.string() + ": " + form_.codec->name +
                               " cannot write this video (" + VideoErrorCause(error) +
                               "). Choose another format or --video-codec.");
  }
}

void VideoWriter::Begin() {
  AVStream& video = carried_->Video();
  avcodec_parameters_from_context(video.codecpar, encoder_.get());
  video.time_base = encoder_->time_base;
  if (video.sample_aspect_ratio.num == 0) {
    video.sample_aspect_ratio = encoder_->sample_aspect_ratio;
  }
  video.codecpar->sample_aspect_ratio = video.sample_aspect_ratio;
  if (video.avg_frame_rate.num == 0) video.avg_frame_rate = origin_.rate;
  Options options;
  if (const int error = avformat_write_header(muxer_.get(), &options.entries); error < 0) {
    Fail(error);
  }
}

// The disk first: what the libraries make of it says less.
void VideoWriter::Fail(int error) const {
  const std::string start = name_.string() + ": cannot be written (";
  if (sink_->FirstError() != 0) {
    throw Failure(KindOfError(sink_->FirstError()),
                  start + std::strerror(sink_->FirstError()) + "). Free some space and try again.");
  }
  if (error == AVERROR(ENOMEM)) throw std::bad_alloc();
  throw Failure(kFailed, start + VideoErrorCause(error) + "). Choose another format.");
}

void VideoWriter::WritePacket(const AVPacket& packet) {
  const PacketHandle carried = carried_->Carried(packet);
  if (carried != nullptr) Send(*carried);
}

void VideoWriter::Send(AVPacket& packet) {
  const int error = av_interleaved_write_frame(muxer_.get(), &packet);
  if (error < 0 || sink_->FirstError() != 0) Fail(error);
}

void VideoWriter::Write(const AVFrame& rgb, const AVFrame& decoded) {
  const FrameHandle frame = MakeFrame(rgb.width, rgb.height, form_.pixelFormat);
  SetColours(colours_, *frame);
  converter_.Convert(rgb, *frame, name_);
  frame->pts = HasOnlyARate(form_) ? framesWritten_ : decoded.pts - carried_->Start(origin_.stream);
  frame->pkt_duration = decoded.pkt_duration;
  frame->sample_aspect_ratio = decoded.sample_aspect_ratio;
  frame->interlaced_frame = decoded.interlaced_frame;
  frame->top_field_first = decoded.top_field_first;
  if (!HasOnlyARate(form_)) durations_[frame->pts] = decoded.pkt_duration;
  ++framesWritten_;
  Encode(frame.get());
}

// Null: the end.
void VideoWriter::Encode(const AVFrame* frame) {
  if (const int error = avcodec_send_frame(encoder_.get(), frame); error < 0) Fail(error);
  while (true) {
    const int error = avcodec_receive_packet(encoder_.get(), packet_.get());
    if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) return;
    if (error < 0) Fail(error);
    if (const auto known = durations_.find(packet_->pts); known != durations_.end()) {
      packet_->duration = known->second;
      durations_.erase(known);
    }
    AVStream& video = carried_->Video();
    packet_->stream_index = video.index;
    av_packet_rescale_ts(packet_.get(), encoder_->time_base, video.time_base);
    Send(*packet_);
  }
}

void VideoWriter::End() {
  Encode(nullptr);
  const int error = av_write_trailer(muxer_.get());
  sink_->Close();
  if (error < 0 || sink_->FirstError() != 0) Fail(error);
}

void VideoWriter::Finish() {
  End();
  if (output_ == nullptr) return;
  for (const std::string& loss :
       FindVideoLosses(origin_.container, origin_.stream, output_->TemporaryPath(),
                       {carried_->Chapters(), carried_->Timecode()})) {
    losses_.push_back(name_.string() + ": " + loss);
  }
}

void VideoWriter::Commit(bool force) {
  if (output_ != nullptr) output_->Commit(force);
}

std::filesystem::path VideoWriter::KeepUnfinished() {
  End();
  return output_ == nullptr ? std::filesystem::path() : output_->KeepUnfinished();
}

}  // namespace vitrell::media
