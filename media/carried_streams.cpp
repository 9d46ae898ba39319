// Copying descriptions and packets.
#include "media/carried_streams.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <string_view>

extern "C" {
#include <libavutil/dict.h>
#include <libavutil/mathematics.h>
#include <libavutil/mem.h>
#include <libavutil/timecode.h>
}

namespace vitrell::media {
namespace {

// What describes the old file and not its contents, and what the output's writer counts itself.
constexpr std::array<const char*, 12> kOfTheFile = {"encoder",
                                                    "major_brand",
                                                    "minor_version",
                                                    "compatible_brands",
                                                    "DURATION",
                                                    "BPS",
                                                    "NUMBER_OF_FRAMES",
                                                    "NUMBER_OF_BYTES",
                                                    "_STATISTICS_WRITING_APP",
                                                    "_STATISTICS_WRITING_DATE_UTC",
                                                    "_STATISTICS_TAGS",
                                                    "vendor_id"};

// "01:00:00:00" so many frames later; as it is where it is none.
std::string LaterTimecode(const char* text, AVRational rate, std::int64_t frames) {
  AVTimecode code{};
  if (av_timecode_init_from_string(&code, rate, text, nullptr) < 0) return text;
  std::array<char, AV_TIMECODE_STR_SIZE> later{};
  return av_timecode_make_string(&code, later.data(), static_cast<int>(frames));
}

bool IsTimecode(const AVStream& stream) {
  return stream.codecpar->codec_tag == MKTAG('t', 'm', 'c', 'd');
}

// The titles of a QuickTime file's chapters, which the reader has made chapters of.
bool IsChapterText(const AVStream& stream) {
  return stream.codecpar->codec_id == AV_CODEC_ID_BIN_DATA && stream.discard == AVDISCARD_ALL;
}

bool CanHold(const AVOutputFormat& container, const AVStream& stream) {
  const AVCodecParameters& codec = *stream.codecpar;
  if (codec.codec_type == AVMEDIA_TYPE_ATTACHMENT) {
    return std::string_view(container.name) == "matroska";
  }
  if (codec.codec_type == AVMEDIA_TYPE_DATA || codec.codec_type == AVMEDIA_TYPE_UNKNOWN) {
    return false;
  }
  // A picture of the whole work; elsewhere it would become a video of one frame.
  const bool cover = (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
  if (cover && std::string_view(container.name) != "mp4") return false;
  // One stream is all that it writes.
  if (std::string_view(container.name) == "yuv4mpegpipe") return false;
  return avformat_query_codec(&container, codec.codec_id, FF_COMPLIANCE_NORMAL) == 1;
}

// A tag of the input's container means something else in another one.
void FitTag(const AVOutputFormat& container, AVCodecParameters& codec) {
  unsigned other = 0;
  const bool fits = container.codec_tag == nullptr ||
                    av_codec_get_id(container.codec_tag, codec.codec_tag) == codec.codec_id ||
                    av_codec_get_tag2(container.codec_tag, codec.codec_id, &other) == 0;
  if (!fits) codec.codec_tag = 0;
}

// Pictures' geometry and light, and the like; not what an encoder tells of its buffers.
void CopySideData(const AVStream& from, AVStream& to) {
  for (int i = 0; i < from.nb_side_data; ++i) {
    const AVPacketSideData& data = from.side_data[i];
    if (data.type == AV_PKT_DATA_CPB_PROPERTIES) continue;
    uint8_t* copy = av_stream_new_side_data(&to, data.type, data.size);
    if (copy == nullptr) throw std::bad_alloc();
    std::memcpy(copy, data.data, data.size);
  }
}

std::string Described(const AVStream& stream) {
  const char* type = av_get_media_type_string(stream.codecpar->codec_type);
  return "stream " + std::to_string(stream.index) + " (" + (type == nullptr ? "unknown" : type) +
         ", " + avcodec_get_name(stream.codecpar->codec_id) + ")";
}

}  // namespace

CarriedStreams::CarriedStreams(const AVFormatContext& from, const AVStream& video,
                               AVFormatContext& to, const std::optional<CarriedSpan>& span)
    : from_(from), source_(video), span_(span), streams_(from.nb_streams) {
  for (unsigned i = 0; i < from.nb_streams; ++i) {
    const AVStream& stream = *from.streams[i];
    if (&stream == &video) {
      AddStream(stream, to);
      video_ = streams_[i];
    } else if (CanHold(*to.oformat, stream)) {
      AddStream(stream, to);
      if (avcodec_parameters_copy(streams_[i]->codecpar, stream.codecpar) < 0) {
        throw std::bad_alloc();
      }
      FitTag(*to.oformat, *streams_[i]->codecpar);
    } else if (!IsTimecode(stream) && !IsChapterText(stream)) {
      losses_.push_back(Described(stream) + " is left out: " + to.oformat->name +
                        " files cannot hold it.");
    }
  }
  CopyMetadata(from.metadata, &to.metadata);
  CopyChapters(to);
}

void CarriedStreams::CopyMetadata(const AVDictionary* from, AVDictionary** to) {
  av_dict_copy(to, from, 0);
  for (const char* key : kOfTheFile) av_dict_set(to, key, nullptr, 0);
  const AVDictionaryEntry* code = av_dict_get(from, "timecode", nullptr, 0);
  if (!span_ || code == nullptr) return;
  const AVRational rate =
      source_.avg_frame_rate.num > 0 ? source_.avg_frame_rate : source_.r_frame_rate;
  timecode_ = LaterTimecode(code->value, rate, span_->framesBefore);
  av_dict_set(to, code->key, timecode_.c_str(), 0);
}

// Moves the chapter and cuts it off; false where nothing of it is left.
bool CarriedStreams::FitToSpan(AVChapter& chapter) const {
  if (!span_) return true;
  const auto onItsClock = [&](std::int64_t time) {
    return av_rescale_q(time, source_.time_base, chapter.time_base);
  };
  const std::int64_t begin = onItsClock(span_->begin);
  chapter.start = std::max(chapter.start, begin) - begin;
  chapter.end = std::min(chapter.end, onItsClock(span_->end)) - begin;
  return chapter.start < chapter.end;
}

void CarriedStreams::AddStream(const AVStream& stream, AVFormatContext& to) {
  AVStream* added = avformat_new_stream(&to, nullptr);
  if (added == nullptr) throw std::bad_alloc();
  added->time_base = stream.time_base;
  added->avg_frame_rate = stream.avg_frame_rate;
  added->r_frame_rate = stream.r_frame_rate;
  added->disposition = stream.disposition;
  added->sample_aspect_ratio = stream.sample_aspect_ratio;
  CopyMetadata(stream.metadata, &added->metadata);
  CopySideData(stream, *added);
  streams_[static_cast<std::size_t>(stream.index)] = added;
}

void CarriedStreams::CopyChapters(AVFormatContext& to) {
  if (from_.nb_chapters == 0) return;
  to.chapters = static_cast<AVChapter**>(av_calloc(from_.nb_chapters, sizeof(AVChapter*)));
  if (to.chapters == nullptr) throw std::bad_alloc();
  for (unsigned i = 0; i < from_.nb_chapters; ++i) {
    const AVChapter& source = *from_.chapters[i];
    AVChapter fitted{};
    fitted.id = source.id;
    fitted.time_base = source.time_base;
    fitted.start = source.start;
    fitted.end = source.end;
    if (!FitToSpan(fitted)) continue;
    auto* chapter = static_cast<AVChapter*>(av_mallocz(sizeof(AVChapter)));
    if (chapter == nullptr) throw std::bad_alloc();
    *chapter = fitted;
    av_dict_copy(&chapter->metadata, source.metadata, 0);
    to.chapters[to.nb_chapters++] = chapter;
    ++chapters_;
  }
}

std::int64_t CarriedStreams::Start(const AVStream& stream) const {
  if (span_) return av_rescale_q(span_->begin, source_.time_base, stream.time_base);
  const bool anywhere = from_.iformat != nullptr && (from_.iformat->flags & AVFMT_TS_DISCONT) != 0;
  if (!anywhere || from_.start_time == AV_NOPTS_VALUE) return 0;
  return av_rescale_q(from_.start_time, {1, AV_TIME_BASE}, stream.time_base);
}

PacketHandle CarriedStreams::Carried(const AVPacket& packet) const {
  const auto index = static_cast<std::size_t>(packet.stream_index);
  // Streams may appear while a file is read.
  if (index >= streams_.size() || streams_[index] == nullptr) return nullptr;
  PacketHandle carried(av_packet_clone(&packet));
  if (carried == nullptr) throw std::bad_alloc();
  carried->stream_index = streams_[index]->index;
  carried->pos = -1;
  const std::int64_t start = Start(*from_.streams[index]);
  if (carried->pts != AV_NOPTS_VALUE) carried->pts -= start;
  if (carried->dts != AV_NOPTS_VALUE) carried->dts -= start;
  av_packet_rescale_ts(carried.get(), from_.streams[index]->time_base, streams_[index]->time_base);
  return carried;
}

}  // namespace vitrell::media
