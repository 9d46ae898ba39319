// Comparing two videos' headers.
#include "media/video_losses.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "media/video_messages.h"

extern "C" {
#include <libavutil/dict.h>
}

namespace vitrell::media {
namespace {

// What tells of the file or its writer, or is another form of what is compared by itself.
constexpr std::array<std::string_view, 17> kNotOfTheWork = {"encoder",
                                                            "major_brand",
                                                            "minor_version",
                                                            "compatible_brands",
                                                            "duration",
                                                            "bps",
                                                            "number_of_frames",
                                                            "number_of_bytes",
                                                            "_statistics_writing_app",
                                                            "_statistics_writing_date_utc",
                                                            "_statistics_tags",
                                                            "vendor_id",
                                                            "handler_name",
                                                            "alpha_mode",
                                                            "rotate",
                                                            "language",
                                                            "variant_bitrate"};

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(c & 0xff));
  return lower;
}

bool IsOfTheWork(const std::string& key) {
  return std::find(kNotOfTheWork.begin(), kNotOfTheWork.end(), key) == kNotOfTheWork.end();
}

// Whether any value of the file or the stream is this text: containers rename keys.
bool Holds(const AVFormatContext& file, const AVStream* stream, std::string_view value) {
  for (const AVDictionary* entries : {file.metadata, stream ? stream->metadata : nullptr}) {
    const AVDictionaryEntry* entry = nullptr;
    while ((entry = av_dict_get(entries, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr) {
      if (value == entry->value) return true;
    }
  }
  return false;
}

void CompareMetadata(const AVDictionary* from, const AVFormatContext& to, const AVStream* stream,
                     const std::string& timecode, std::vector<std::string>& losses) {
  std::string lost;
  const AVDictionaryEntry* entry = nullptr;
  while ((entry = av_dict_get(from, "", entry, AV_DICT_IGNORE_SUFFIX)) != nullptr) {
    const std::string key = LowerCase(entry->key);
    const bool isMoved = key == "timecode" && !timecode.empty();
    if (!IsOfTheWork(key) || Holds(to, stream, isMoved ? timecode : entry->value)) continue;
    lost += (lost.empty() ? "" : ", ") + std::string(entry->key);
  }
  if (!lost.empty()) {
    losses.push_back(std::string("the format does not hold the ") +
                     (stream == nullptr ? "file" : "video") + "'s metadata " + lost + ".");
  }
}

const AVStream* FirstVideo(const AVFormatContext& file) {
  for (unsigned i = 0; i < file.nb_streams; ++i) {
    const AVStream& stream = *file.streams[i];
    if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO &&
        (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) == 0) {
      return &stream;
    }
  }
  return nullptr;
}

bool IsSameAspect(AVRational a, AVRational b) {
  const auto plain = [](AVRational r) { return r.num == 0 || r.den == 0 ? AVRational{1, 1} : r; };
  return av_cmp_q(plain(a), plain(b)) == 0;
}

void CompareVideos(const AVStream& from, const AVStream& to, std::vector<std::string>& losses) {
  const AVPacketSideDataType matrix = AV_PKT_DATA_DISPLAYMATRIX;
  if (av_stream_get_side_data(&from, matrix, nullptr) != nullptr &&
      av_stream_get_side_data(&to, matrix, nullptr) == nullptr) {
    losses.emplace_back("the format does not hold the rotation for display.");
  }
  if (!IsSameAspect(from.codecpar->sample_aspect_ratio, to.codecpar->sample_aspect_ratio) &&
      !IsSameAspect(from.codecpar->sample_aspect_ratio, to.sample_aspect_ratio)) {
    losses.emplace_back("the format does not hold the shape of the pixels (sample aspect ratio).");
  }
  const AVCodecParameters& before = *from.codecpar;
  const AVCodecParameters& after = *to.codecpar;
  if (before.color_primaries != AVCOL_PRI_UNSPECIFIED &&
      before.color_primaries != after.color_primaries) {
    losses.emplace_back("the format does not hold the tag of the colour primaries.");
  }
  if (before.color_trc != AVCOL_TRC_UNSPECIFIED && before.color_trc != after.color_trc) {
    losses.emplace_back("the format does not hold the tag of the colours' transfer.");
  }
}

}  // namespace

std::vector<std::string> FindVideoLosses(const AVFormatContext& from, const AVStream& video,
                                         const std::filesystem::path& written,
                                         const VideoExpectation& expected) {
  AVFormatContext* opened = nullptr;
  int error = avformat_open_input(&opened, ("file:" + written.string()).c_str(), nullptr, nullptr);
  const DemuxerHandle to(opened);
  if (error >= 0) error = avformat_find_stream_info(opened, nullptr);
  const AVStream* stream = error < 0 ? nullptr : FirstVideo(*to);
  if (stream == nullptr) {
    return {"what was written cannot be read again (" + VideoErrorCause(error) + ")."};
  }
  std::vector<std::string> losses;
  CompareMetadata(from.metadata, *to, nullptr, expected.timecode, losses);
  CompareMetadata(video.metadata, *to, stream, expected.timecode, losses);
  if (expected.chapters != to->nb_chapters) {
    losses.push_back("the format does not hold the " + std::to_string(expected.chapters) +
                     " chapters.");
  }
  CompareVideos(video, *stream, losses);
  return losses;
}

}  // namespace vitrell::media
