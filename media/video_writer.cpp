// Muxing.
#include "media/video_writer.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "media/failure.h"
#include "media/standard_streams.h"
#include "media/video_losses.h"
#include "media/video_messages.h"

namespace vitrell::media {
namespace {

VideoContent ContentOf(const AVFrame& first, bool deep, const VideoWriteOrder& order) {
  const auto format = static_cast<AVPixelFormat>(first.format);
  return {format, deep, HasAlpha(format) && !order.dropAlpha, first.width, first.height};
}

}  // namespace

VideoOrigin OriginOf(const VideoReader& reader) {
  return {reader.Container(), reader.Stream(), reader.FrameRate(), reader.Decoder().field_order};
}

VideoWriter::VideoWriter(const VideoOrigin& origin, const AVFrame& first, bool deep,
                         const VideoWriteOrder& order)
    : origin_(origin),
      target_(order.target),
      name_(ShownTarget(order.target)),
      form_(ChooseVideoForm(order.target, order.encoding, ContentOf(first, deep, order))) {
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
  encoder_.emplace(name_, form_, origin, first, order);
  Begin();
  for (const std::string& loss : carried_->Losses()) {
    losses_.push_back(name_.string() + ": " + loss);
  }
}

void VideoWriter::Begin() {
  const AVCodecContext& encoder = encoder_->Context();
  AVStream& video = carried_->Video();
  avcodec_parameters_from_context(video.codecpar, &encoder);
  video.time_base = encoder.time_base;
  if (video.sample_aspect_ratio.num == 0) video.sample_aspect_ratio = encoder.sample_aspect_ratio;
  video.codecpar->sample_aspect_ratio = video.sample_aspect_ratio;
  if (video.avg_frame_rate.num == 0) video.avg_frame_rate = origin_.rate;
  if (const int error = avformat_write_header(muxer_.get(), nullptr); error < 0) Fail(error);
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
  const int error = encoder_->Give(rgb, decoded, carried_->Start(origin_.stream));
  if (error < 0) Fail(error);
  SendEncoded();
}

void VideoWriter::SendEncoded() {
  while (true) {
    const int error = encoder_->Take(*packet_);
    if (error == AVERROR(EAGAIN) || error == AVERROR_EOF) return;
    if (error < 0) Fail(error);
    AVStream& video = carried_->Video();
    packet_->stream_index = video.index;
    av_packet_rescale_ts(packet_.get(), encoder_->Context().time_base, video.time_base);
    Send(*packet_);
  }
}

void VideoWriter::End() {
  if (const int error = encoder_->GiveEnd(); error < 0) Fail(error);
  SendEncoded();
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
