// Counting frames, and choosing packets by their time.
#include "media/video_excerpt.h"

#include <algorithm>
#include <iterator>
#include <utility>

extern "C" {
#include <libavutil/mathematics.h>
}

namespace vitrell::media {
namespace {

// How far behind the frames of its time a packet may stand in a file.
constexpr std::int64_t kSecondsOfDelay = 1;

}  // namespace

bool VideoExcerpt::Next(AVFrame& frame) {
  if (ended_) return false;
  const bool read = number_ < 0 ? SkipToFirst(frame) : reader_.Next(frame);
  if (!read) {
    ended_ = true;
    // To the end of what is there.
    reached_ = VideoRange::kEnd;
    return false;
  }
  ++number_;
  if (number_ == range_.first) begin_ = frame.pts;
  reached_ = frame.pts;
  if (number_ <= range_.last) return true;
  --number_;
  ReadPacketsOfEnd(frame);
  return false;
}

bool VideoExcerpt::SkipToFirst(AVFrame& frame) {
  if (!reader_.Next(frame)) return false;
  while (number_ + 1 < range_.first) {
    ++number_;
    DropPacketsBefore(frame.pts);
    if (!reader_.Next(frame)) return false;
  }
  if (!range_.IsWhole()) DropPacketsBefore(frame.pts);
  return true;
}

// With the first frame behind the range, at whose time it ends.
void VideoExcerpt::ReadPacketsOfEnd(AVFrame& frame) {
  const std::int64_t end = frame.pts;
  const std::int64_t enough =
      end + av_rescale_q(kSecondsOfDelay, {1, 1}, reader_.Stream().time_base);
  while (frame.pts < enough && reader_.Next(frame)) {
  }
  ended_ = true;
  reached_ = end;
}

void VideoExcerpt::DropPacketsBefore(std::int64_t time) {
  std::vector<PacketHandle> packets = reader_.TakePackets();
  std::move(packets.begin(), packets.end(), std::back_inserter(held_));
  held_.erase(std::remove_if(held_.begin(), held_.end(),
                             [&](const PacketHandle& packet) { return IsBefore(*packet, time); }),
              held_.end());
}

// By the order in which decoders take them, which is also that of the file. Pictures of a cover and
// the like have no time and belong to every frame.
bool VideoExcerpt::IsBefore(const AVPacket& packet, std::int64_t time) const {
  const std::int64_t at = packet.dts != AV_NOPTS_VALUE ? packet.dts : packet.pts;
  if (at == AV_NOPTS_VALUE) return false;
  const AVStream& stream =
      *reader_.Container().streams[static_cast<std::size_t>(packet.stream_index)];
  if ((stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0) return false;
  return av_compare_ts(at, stream.time_base, time, reader_.Stream().time_base) < 0;
}

bool VideoExcerpt::MayBegin(const AVPacket& packet) {
  const auto index = static_cast<std::size_t>(packet.stream_index);
  const AVStream& stream = *reader_.Container().streams[index];
  if (stream.codecpar->codec_type != AVMEDIA_TYPE_VIDEO) return true;
  if (begun_.size() <= index) begun_.resize(index + 1);
  if ((packet.flags & AV_PKT_FLAG_KEY) != 0) begun_[index] = true;
  return begun_[index];
}

std::vector<PacketHandle> VideoExcerpt::TakePackets() {
  if (range_.IsWhole()) return reader_.TakePackets();
  std::vector<PacketHandle> packets = reader_.TakePackets();
  std::move(packets.begin(), packets.end(), std::back_inserter(held_));
  std::vector<PacketHandle> taken;
  std::deque<PacketHandle> kept;
  for (PacketHandle& packet : held_) {
    if (IsBefore(*packet, begin_)) continue;
    const bool timeless = !IsBefore(*packet, VideoRange::kEnd);
    if (!timeless && !IsBefore(*packet, reached_)) {
      kept.push_back(std::move(packet));
    } else if (MayBegin(*packet)) {
      taken.push_back(std::move(packet));
    }
  }
  held_ = std::move(kept);
  return taken;
}

std::string VideoExcerpt::Damage() const {
  if (number_ == range_.last) return {};
  if (!reader_.Damage().empty() || range_.IsWhole() || range_.last == VideoRange::kEnd) {
    return reader_.Damage();
  }
  return "has only " + std::to_string(number_ + 1) + " frames; --frames asks for frame " +
         std::to_string(range_.last);
}

}  // namespace vitrell::media
