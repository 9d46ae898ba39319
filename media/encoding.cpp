// Qualities and compressions.
#include "media/encoding.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "media/failure.h"
#include "media/heif_output.h"
#include "media/webp_output.h"

namespace vitrell::media {
namespace {

// The picture library's own.
constexpr int kUsualJpegQuality = 98;

// Of those that formats with a choice have.
constexpr std::array<std::string_view, 5> kLossyCompressions = {"pxr24", "b44", "b44a", "dwaa",
                                                                "dwab"};

bool IsLossy(std::string_view compression) {
  // "dwaa:45"
  const std::string_view name = compression.substr(0, compression.find(':'));
  return std::find(kLossyCompressions.begin(), kLossyCompressions.end(), name) !=
         kLossyCompressions.end();
}

bool IsListed(std::string_view name, std::string_view list) {
  const std::string padded = " " + std::string(list) + " ";
  return name.find(' ') == std::string_view::npos &&
         padded.find(" " + std::string(name) + " ") != std::string::npos;
}

std::string Listed(std::string_view list) {
  std::string text(list);
  for (std::size_t at = text.find(' '); at != std::string::npos; at = text.find(' ', at + 2)) {
    text.replace(at, 1, ", ");
  }
  return text;
}

// "--quality 1 to 100 and --lossless"
std::string Choices(const Format& format) {
  std::string text;
  const auto add = [&](const std::string& choice) { text += (text.empty() ? "" : "; ") + choice; };
  if (format.quality) add("--quality 1 to 100");
  if (!format.compressions.empty()) add("--compression " + Listed(format.compressions));
  if (format.lossless) add("--lossless");
  return text.empty() ? "nothing of the kind" : text;
}

[[noreturn]] void Refuse(const std::string& option, const Format& format) {
  throw Failure(kWrongUsage, option + " does not suit " + std::string(format.name) +
                                 ", which takes " + Choices(format) + ".");
}

void SetPngLevel(std::string_view compression, OIIO::ImageSpec& spec) {
  const int level = compression == "none" ? 0 : compression == "fast" ? 1 : 9;
  spec.attribute("png:compressionLevel", level);
}

void SetHeif(const Encoding& encoding, const Format& format, OIIO::ImageSpec& spec) {
  spec.attribute("compression", format.name == "AVIF" ? "avif" : "heic");
  spec.attribute("CompressionQuality", encoding.quality.value_or(kUsualHeifQuality));
  spec.attribute("heif:lossless", encoding.lossless ? 1 : 0);
}

// A lossless input stays lossless unless something else was asked for.
void SetWebp(const Encoding& encoding, OIIO::ImageSpec& spec) {
  const bool was = spec.get_int_attribute("webp:lossless", 0) != 0 && !encoding.quality;
  spec.attribute("compression", encoding.lossless || was ? "lossless" : "webp");
  if (encoding.quality) spec.attribute("CompressionQuality", *encoding.quality);
}

}  // namespace

void CheckEncoding(const Encoding& encoding, const Format& format) {
  if (encoding.quality && !format.quality) Refuse("--quality", format);
  if (encoding.lossless && !format.lossless) Refuse("--lossless", format);
  if (!encoding.compression.empty() && !IsListed(encoding.compression, format.compressions)) {
    Refuse("--compression " + encoding.compression, format);
  }
  if (encoding.lossless && encoding.quality) {
    throw Failure(kWrongUsage, "--lossless and --quality exclude each other. Leave one out.");
  }
  if (encoding.lossless && IsLossy(encoding.compression)) {
    throw Failure(kWrongUsage, "--compression " + encoding.compression +
                                   " has loss and excludes --lossless. Leave one out.");
  }
}

int UsualQuality(const Format& format) {
  if (!format.quality) return 0;
  if (format.plugin == "jpeg") return kUsualJpegQuality;
  return format.plugin == "webp" ? kUsualWebpQuality : kUsualHeifQuality;
}

void SetEncoding(const Encoding& encoding, const Format& format, OIIO::ImageSpec& spec) {
  if (format.plugin == "webp") return SetWebp(encoding, spec);
  if (format.plugin == "heif") return SetHeif(encoding, format, spec);
  if (encoding.quality) {
    spec.attribute("compression", "jpeg:" + std::to_string(*encoding.quality));
  }
  if (encoding.lossless && IsLossy(std::string(spec.get_string_attribute("compression")))) {
    spec.attribute("compression", "zip");
  }
  if (encoding.compression.empty()) return;
  if (format.plugin == "png") return SetPngLevel(encoding.compression, spec);
  spec.attribute("compression", encoding.compression);
}

}  // namespace vitrell::media
