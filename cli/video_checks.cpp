// Looking at names and first bytes.
#include "cli/video_checks.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/failure.h"
#include "cli/sequence_plan.h"
#include "cli/video_range.h"
#include "media/formats.h"
#include "media/standard_streams.h"
#include "media/video_containers.h"
#include "media/video_form.h"

namespace vitrell::cli {
namespace {

// The literals below. NOLINTNEXTLINE(misc-unused-using-decls)
using std::string_view_literals::operator""sv;

struct Mark {
  std::size_t offset;
  std::string_view bytes;
};

// Containers that cannot be taken for a picture.
constexpr std::array kMarks = {
    Mark{0, "YUV4MPEG2"sv},
    Mark{0, "nut/multimedia"sv},
    Mark{0, "\x1a\x45\xdf\xa3"sv},
    Mark{8, "AVI "sv},
    Mark{0, "FLV\x01"sv},
    Mark{0, "\x06\x0e\x2b\x34"sv},
    Mark{0, "\x30\x26\xb2\x75"sv},
    Mark{0, "OggS"sv},
    Mark{0, "\0\0\x01\xba"sv},
    Mark{4, "moov"sv},
    Mark{4, "mdat"sv},
    Mark{4, "wide"sv},
};

// The file types of pictures; every other one of the same container is sound or video.
constexpr std::array kPictureBrands = {"mif1"sv, "msf1"sv, "heic"sv, "heix"sv, "heim"sv, "heis"sv,
                                       "hevc"sv, "hevx"sv, "avif"sv, "avis"sv, "miaf"sv, "crx "sv};

bool HasMark(std::string_view head, const Mark& mark) {
  return head.size() >= mark.offset + mark.bytes.size() &&
         head.substr(mark.offset, mark.bytes.size()) == mark.bytes;
}

bool IsVideoHead(std::string_view head) {
  const bool isMarked = std::any_of(kMarks.begin(), kMarks.end(),
                                    [&](const Mark& mark) { return HasMark(head, mark); });
  if (isMarked) return true;
  return HasMark(head, {4, "ftyp"sv}) &&
         std::none_of(kPictureBrands.begin(), kPictureBrands.end(), [&](std::string_view brand) {
           return HasMark(head, {8, brand});
         });
}

std::string HeadOf(const std::string& input) {
  if (media::IsStandardStream(input)) return std::string(media::HeadOfStandardInput());
  // What is read of a pipe is gone.
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(input, ignored)) return {};
  std::string head(16, '\0');
  std::ifstream file(input, std::ios::binary);
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  return head;
}

bool IsPicture(const std::string& input) {
  std::error_code ignored;
  return std::filesystem::is_regular_file(input, ignored) && media::FormatOfFile(input) != nullptr;
}

void Refuse(bool given, const std::string& option) {
  if (given) {
    throw Failure(kWrongUsage, option + " is for pictures, and INPUT is a video. Leave it out.");
  }
}

}  // namespace

bool IsVideoFile(const std::string& name) {
  if (IsVideoHead(HeadOf(name))) return true;
  // Not every container can be told by its first bytes.
  std::error_code ignored;
  return std::filesystem::is_regular_file(name, ignored) && !IsPicture(name) &&
         media::FormatToWrite(name) == nullptr;
}

bool IsVideoToSequence(const RenderArguments& arguments) {
  return IsSequenceName(arguments.output) && !media::IsVideoName(arguments.output) &&
         !IsSequenceName(arguments.input) && IsVideoFile(arguments.input);
}

bool IsVideoJob(const RenderArguments& arguments) {
  const bool toStandard = media::IsStandardStream(arguments.output);
  const bool toVideo = media::IsVideoName(arguments.output);
  const bool fromVideo = IsVideoHead(HeadOf(arguments.input));
  if (toVideo) return fromVideo || !IsPicture(arguments.input);
  if (!fromVideo) return false;
  if (toStandard) return true;
  throw Failure(kWrongUsage,
                media::ShownSource(arguments.input) +
                    ": is a video. Give OUTPUT the extension of one: " + media::VideoExtensions() +
                    "; or write look.####.png for a picture of each frame.");
}

media::VideoEncoding VideoEncodingOf(const RenderArguments& arguments) {
  media::VideoEncoding encoding;
  encoding.container = arguments.videoFormat;
  if (encoding.container.empty() && media::IsStandardStream(arguments.output)) {
    encoding.container = HasMark(HeadOf(arguments.input), kMarks[0]) ? "y4m" : "nut";
  }
  encoding.codec = arguments.videoCodec;
  encoding.pixelFormat = arguments.pixelFormat;
  encoding.quality = arguments.encoding.quality;
  encoding.lossless = arguments.encoding.lossless;
  return encoding;
}

void CheckVideoInput(const RenderArguments& arguments) {
  Refuse(!arguments.channels.empty(), "--channels");
  Refuse(!arguments.part.empty(), "--part");
  Refuse(!arguments.pages.empty(), "--pages");
  const bool piped =
      media::IsStandardStream(arguments.input) || media::IsStandardStream(arguments.output);
  if (piped && !arguments.frames.existing.empty()) {
    throw Failure(kWrongUsage, "--existing: needs files; - is none. Leave the option out.");
  }
}

void CheckVideoOptions(const RenderArguments& arguments) {
  CheckVideoInput(arguments);
  Refuse(!arguments.encoding.compression.empty(), "--compression");
  ParseVideoRange(arguments.frames.frames);
  media::CheckVideoEncoding(arguments.output, VideoEncodingOf(arguments));
}

}  // namespace vitrell::cli
