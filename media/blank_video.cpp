// Describing a video.
#include "media/blank_video.h"

#include <array>
#include <cmath>
#include <new>

#include "media/video_messages.h"

extern "C" {
#include <libavutil/rational.h>
}

namespace vitrell::media {
namespace {

// Of television, which are told as if they had two or three decimals.
constexpr std::array kSlowedRates = {24, 30, 48, 60, 120};
constexpr double kRounding = 0.005;
constexpr int kMostDenominator = 100000;

}  // namespace

AVRational ExactRate(double framesPerSecond) {
  for (const int rate : kSlowedRates) {
    const AVRational slowed{rate * 1000, 1001};
    if (std::abs(framesPerSecond - av_q2d(slowed)) < kRounding) return slowed;
  }
  return av_d2q(framesPerSecond, kMostDenominator);
}

AVPixelFormat RgbFormat(bool deep, bool alpha) {
  if (deep) return alpha ? AV_PIX_FMT_RGBA64 : AV_PIX_FMT_RGB48;
  return alpha ? AV_PIX_FMT_RGBA : AV_PIX_FMT_RGB24;
}

BlankVideo::BlankVideo(AVRational rate) : rate_(rate), container_(avformat_alloc_context()) {
  CollectVideoMessages();
  if (container_ == nullptr) throw std::bad_alloc();
  stream_ = avformat_new_stream(container_.get(), nullptr);
  if (stream_ == nullptr) throw std::bad_alloc();
  stream_->codecpar->codec_type = AVMEDIA_TYPE_VIDEO;
  stream_->time_base = {rate.den, rate.num};
  stream_->avg_frame_rate = rate;
  stream_->r_frame_rate = rate;
}

FrameHandle BlankVideo::Marks(std::int64_t place) {
  FrameHandle marks = MakeFrame();
  marks->pts = place;
  marks->pkt_duration = 1;
  return marks;
}

}  // namespace vitrell::media
