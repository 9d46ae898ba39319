// Demuxing and decoding.
#include "media/video_reader.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <new>
#include <utility>

#include "media/failure.h"
#include "media/standard_streams.h"
#include "media/video_input.h"
#include "media/video_length.h"
#include "media/video_messages.h"

extern "C" {
#include <libavutil/mathematics.h>
}

namespace vitrell::media {
namespace {

constexpr int kMostSide = 30000;  // of the effect's worlds

AVRational Inverse(AVRational ratio) { return {ratio.den, ratio.num}; }

// The file is not to blame.
void ThrowIfNoMemory(int error) {
  if (error == AVERROR(ENOMEM)) throw std::bad_alloc();
}

}  // namespace

VideoReader::VideoReader(const std::filesystem::path& file, const VideoReadOptions& options)
    : name_(ShownSource(file)), stop_(options.stop), maxPixels_(options.maxPixels) {
  CollectVideoMessages();
  if (IsStandardStream(file)) pipe_ = std::make_unique<VideoPipe>(stop_);
  try {
    container_ = OpenVideoContainer(file, name_, pipe_ ? pipe_->Context() : nullptr);
  } catch (const Failure&) {
    ThrowIfStopped();
    throw;
  }
  stream_ = &FindVideoStream(*container_, name_);
  decoder_ = OpenVideoDecoder(*stream_, name_, {1, maxPixels_});
  const AVRational rate = av_guess_frame_rate(container_.get(), stream_, nullptr);
  if (rate.num > 0 && rate.den > 0) frameRate_ = rate;
}

void VideoReader::ThrowIfStopped() const {
  if (stop_ != nullptr && *stop_) throw Failure(kCancelled, "cancelled; no file was written.");
}

std::int64_t VideoReader::ExpectedFrames() const {
  return FramesInHeader(*container_, *stream_, frameRate_);
}

void VideoReader::UseThreads(int threads) {
  mayChangeDecoder_ = false;
  if (threads > 1) {
    CodecHandle decoder = OpenVideoDecoder(*stream_, name_, {threads, maxPixels_});
    decoder->field_order = decoder_->field_order;
    decoder_ = std::move(decoder);
    std::move(fed_.begin(), fed_.end(), std::back_inserter(again_));
    known_ = framesRead_;
    ended_ = false;
  }
  fed_.clear();
}

std::vector<PacketHandle> VideoReader::TakePackets() { return std::exchange(others_, {}); }

void VideoReader::Keep(const AVPacket& packet, std::vector<PacketHandle>& kept) {
  kept.emplace_back(av_packet_clone(&packet));
  if (kept.back() == nullptr) throw std::bad_alloc();
}

// The first damage is what the others follow from.
void VideoReader::TellDamage(const std::string& damage) {
  if (damage_.empty()) damage_ = damage;
}

// What stands before the first frame is often the rest of a cut recording.
bool VideoReader::HasBegun() const { return framesRead_ > 0 && known_ == 0; }

bool VideoReader::FeedAgain() {
  if (again_.empty()) return false;
  static_cast<void>(avcodec_send_packet(decoder_.get(), again_.front().get()));
  again_.pop_front();
  return true;
}

void VideoReader::Feed() {
  if (FeedAgain()) return;
  while (true) {
    av_packet_unref(packet_.get());
    const int error = av_read_frame(container_.get(), packet_.get());
    ThrowIfStopped();
    ThrowIfNoMemory(error);
    if (error < 0) {
      if (error != AVERROR_EOF) {
        TellDamage("ends too early or is damaged (" + VideoErrorCause(error) + ")");
      }
      avcodec_send_packet(decoder_.get(), nullptr);
      ended_ = true;
      return;
    }
    if (packet_->stream_index != stream_->index) {
      Keep(*packet_, others_);
      continue;
    }
    ++read_.packets;
    read_.fileOffset = avio_tell(container_->pb);
    if (packet_->pts != AV_NOPTS_VALUE) {
      read_.farthestEnd = std::max(read_.farthestEnd, packet_->pts + packet_->duration);
    }
    if ((packet_->flags & AV_PKT_FLAG_CORRUPT) != 0 && HasBegun()) {
      TellDamage("ends too early or is damaged (a frame is not whole)");
      continue;
    }
    if (mayChangeDecoder_) Keep(*packet_, fed_);
    const int sent = avcodec_send_packet(decoder_.get(), packet_.get());
    ThrowIfNoMemory(sent);
    if (sent >= 0) return;
    if (HasBegun()) TellDamage("is damaged (" + VideoErrorCause(sent) + ")");
  }
}

bool VideoReader::Next(AVFrame& frame) {
  while (true) {
    av_frame_unref(&frame);
    const int error = avcodec_receive_frame(decoder_.get(), &frame);
    if (error == AVERROR(EAGAIN) && !ended_) {
      Feed();
      continue;
    }
    ThrowIfNoMemory(error);
    if (error < 0) {
      if (error != AVERROR_EOF && HasBegun()) {
        TellDamage("is damaged (" + VideoErrorCause(error) + ")");
      }
      if (error != AVERROR_EOF && error != AVERROR(EAGAIN) && !ended_) continue;
      TellDamage(ShortageOf(*container_, *stream_, read_));
      return false;
    }
    if (known_ > 0) {
      --known_;
      continue;
    }
    const bool broken = (frame.flags & AV_FRAME_FLAG_CORRUPT) != 0 || frame.decode_error_flags != 0;
    if (broken && framesRead_ > 0) {
      TellDamage("is damaged (a frame could not be decoded whole)");
      continue;
    }
    if (!HasSameSize(frame)) return false;
    Stamp(frame);
    ++framesRead_;
    return true;
  }
}

bool VideoReader::HasSameSize(const AVFrame& frame) {
  const auto text = [](int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
  };
  if (framesRead_ == 0) {
    width_ = frame.width;
    height_ = frame.height;
    const bool large = std::int64_t{width_} * height_ > maxPixels_;
    if (!large && width_ <= kMostSide && height_ <= kMostSide) return true;
    throw Failure(kFailed, name_.string() + ": " + text(width_, height_) +
                               " pixels are more than " +
                               (large ? "--max-pixels allows" : "the effect takes") +
                               ". Use a smaller video.");
  }
  if (frame.width == width_ && frame.height == height_) return true;
  // Also where the seam itself was damaged.
  damage_ = "changes its size at frame " + std::to_string(framesRead_) + " from " +
            text(width_, height_) + " to " + text(frame.width, frame.height);
  return false;
}

void VideoReader::Stamp(AVFrame& frame) {
  std::int64_t usual = frame.pkt_duration;
  if (usual <= 0) usual = av_rescale_q(1, Inverse(frameRate_), stream_->time_base);
  std::int64_t time = frame.best_effort_timestamp;
  if (framesRead_ == 0) {
    if (time == AV_NOPTS_VALUE) time = 0;
  } else {
    if (time == AV_NOPTS_VALUE) time = lastTime_ + std::max<std::int64_t>(lastDuration_, 1);
    time = std::max(time, lastTime_ + 1);
  }
  frame.pts = time;
  lastTime_ = time;
  lastDuration_ = usual;
}

}  // namespace vitrell::media
