// The table of formats, and telling them apart.
#include "media/formats.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>

namespace vitrell::media {
namespace {

// The literals of kMarks. NOLINTNEXTLINE(misc-unused-using-decls)
using std::string_view_literals::operator""sv;

// In the order of the listing. Depths are those that survive writing and reading back.
constexpr std::array kFormats = {
    Format{.name = "PNG",
           .plugin = "png",
           .extensions = "png",
           .greyAlpha = true,
           .alpha = true,
           .profile = true,
           .lossless = true,
           .compressions = "none fast best",
           .exif = true,
           .iptc = true,
           .xmp = true,
           .depths = "8, 16",
           .metadata = "EXIF, IPTC, XMP, resolution"},
    Format{.name = "JPEG",
           .plugin = "jpeg",
           .extensions = "jpg jpeg jpe jfif",
           .profile = true,
           .quality = true,
           .exif = true,
           .iptc = true,
           .xmp = true,
           .depths = "8",
           .metadata = "EXIF, IPTC, XMP, resolution"},
    Format{.name = "TIFF",
           .plugin = "tiff",
           .extensions = "tif tiff",
           .greyAlpha = true,
           .alpha = true,
           .straight = false,
           .anyChannels = true,
           .floats = true,
           .profile = true,
           .lossless = true,
           .pages = true,
           .compressions = "none lzw zip packbits",
           .exif = true,
           .iptc = true,
           .xmp = true,
           .depths = "8, 16, half, float",
           .metadata = "EXIF, IPTC, XMP, resolution"},
    Format{.name = "EXR",
           .plugin = "openexr",
           .extensions = "exr",
           .greyAlpha = true,
           .alpha = true,
           .straight = false,
           .anyChannels = true,
           .windows = true,
           .floats = true,
           .lossless = true,
           .compressions = "none rle zips zip piz pxr24 b44 b44a dwaa dwab",
           .depths = "half, float",
           .metadata = "all attributes"},
    Format{.name = "DPX",
           .plugin = "dpx",
           .extensions = "dpx",
           .alpha = true,
           .straight = false,
           .floats = true,
           .lossless = true,
           .fragile = true,
           .depths = "8, 10, 12, 16, float",
           .metadata = "its own header"},
    Format{.name = "WebP",
           .plugin = "webp",
           .extensions = "webp",
           .grey = false,
           .alpha = true,
           .profile = true,
           .quality = true,
           .lossless = true,
           .exif = true,
           .xmp = true,
           .depths = "8",
           .metadata = "EXIF, XMP"},
    Format{.name = "AVIF",
           .plugin = "heif",
           .extensions = "avif",
           .grey = false,
           .alpha = true,
           .profile = true,
           .quality = true,
           .lossless = true,
           .exif = true,
           .xmp = true,
           .depths = "8",
           .metadata = "EXIF, XMP"},
    Format{.name = "HEIC",
           .plugin = "heif",
           .extensions = "heic heif",
           .grey = false,
           .alpha = true,
           .profile = true,
           .quality = true,
           .lossless = true,
           .exif = true,
           .xmp = true,
           .depths = "8",
           .metadata = "EXIF, XMP"},
    Format{.name = "JPEG 2000",
           .plugin = "jpeg2000",
           .extensions = "jp2 j2k j2c",
           .alpha = true,
           .profile = true,
           .lossless = true,
           .exif = true,
           .iptc = true,
           .xmp = true,
           .depths = "8, 16",
           .metadata = "EXIF, IPTC, XMP"},
    Format{.name = "TGA",
           .plugin = "targa",
           .extensions = "tga tpic",
           .alpha = true,
           .lossless = true,
           .compressions = "none rle",
           .depths = "8",
           .metadata = ""},
    Format{.name = "BMP",
           .plugin = "bmp",
           .extensions = "bmp dib",
           .alpha = true,
           .lossless = true,
           .depths = "8",
           .metadata = "resolution"},
    Format{.name = "PNM",
           .plugin = "pnm",
           .extensions = "ppm pgm pnm",
           .lossless = true,
           .depths = "8",
           .metadata = ""},
    Format{.name = "Radiance HDR",
           .plugin = "hdr",
           .extensions = "hdr rgbe",
           .grey = false,
           .floats = true,
           .depths = "8 with a common exponent",
           .metadata = ""},
    Format{.name = "GIF",
           .plugin = "gif",
           .extensions = "gif",
           .grey = false,
           .pages = true,
           .depths = "256 colours",
           .metadata = ""},
    Format{.name = "PSD",
           .plugin = "psd",
           .extensions = "psd psb",
           .writes = false,
           .greyAlpha = true,
           .alpha = true,
           .anyChannels = true,
           .floats = true,
           .profile = true,
           .exif = true,
           .iptc = true,
           .xmp = true,
           .depths = "8, 16, float",
           .metadata = "EXIF, IPTC, XMP, resolution"},
};

struct Mark {
  std::size_t offset;
  std::string_view bytes;
  std::string_view format;
};

constexpr std::array kMarks = {
    Mark{0, "\x89PNG\r\n\x1a\n"sv, "PNG"},
    Mark{0, "\xff\xd8\xff"sv, "JPEG"},
    Mark{0, "II*\0"sv, "TIFF"},
    Mark{0, "MM\0*"sv, "TIFF"},
    Mark{0, "II+\0"sv, "TIFF"},
    Mark{0, "MM\0+"sv, "TIFF"},
    Mark{0, "\x76\x2f\x31\x01"sv, "EXR"},
    Mark{0, "SDPX"sv, "DPX"},
    Mark{0, "XPDS"sv, "DPX"},
    Mark{8, "WEBP"sv, "WebP"},
    Mark{4, "ftypavif"sv, "AVIF"},
    Mark{4, "ftypavis"sv, "AVIF"},
    // mif1 and msf1 hold whatever their further brands say; both are read alike.
    Mark{4, "ftyp"sv, "HEIC"},
    Mark{0, "\0\0\0\x0cjP  "sv, "JPEG 2000"},
    Mark{0, "\xff\x4f\xff\x51"sv, "JPEG 2000"},
    Mark{0, "BM"sv, "BMP"},
    Mark{0, "P1"sv, "PNM"},
    Mark{0, "P2"sv, "PNM"},
    Mark{0, "P3"sv, "PNM"},
    Mark{0, "P4"sv, "PNM"},
    Mark{0, "P5"sv, "PNM"},
    Mark{0, "P6"sv, "PNM"},
    Mark{0, "#?R"sv, "Radiance HDR"},
    Mark{0, "GIF8"sv, "GIF"},
    Mark{0, "8BPS"sv, "PSD"},
};

constexpr std::size_t kSignatureBytes = 16;

const Format* FormatNamed(std::string_view name) {
  const auto* found = std::find_if(kFormats.begin(), kFormats.end(),
                                   [&](const Format& format) { return format.name == name; });
  return found == kFormats.end() ? nullptr : &*found;
}

// In lower case and without the dot.
std::string ExtensionOf(const std::filesystem::path& file) {
  std::string extension = file.extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char c) { return static_cast<char>(std::tolower(c & 0xff)); });
  return extension;
}

bool HasExtension(const Format& format, const std::string& extension) {
  return !extension.empty() && extension.find(' ') == std::string::npos &&
         (" " + std::string(format.extensions) + " ").find(" " + extension + " ") !=
             std::string::npos;
}

std::string HeadOf(const std::filesystem::path& file) {
  std::string head(kSignatureBytes, '\0');
  std::ifstream stream(file, std::ios::binary);
  stream.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(stream.gcount()));
  return head;
}

}  // namespace

std::span<const Format> AllFormats() { return kFormats; }

const Format* FormatOfFile(const std::filesystem::path& file) {
  const std::string head = HeadOf(file);
  for (const Mark& mark : kMarks) {
    if (head.size() >= mark.offset + mark.bytes.size() &&
        head.compare(mark.offset, mark.bytes.size(), mark.bytes) == 0) {
      return FormatNamed(mark.format);
    }
  }
  const Format* targa = FormatNamed("TGA");
  return HasExtension(*targa, ExtensionOf(file)) ? targa : nullptr;
}

const Format* FormatToWrite(const std::filesystem::path& file) {
  const std::string extension = ExtensionOf(file);
  for (const Format& format : kFormats) {
    if (format.writes && HasExtension(format, extension)) return &format;
  }
  return nullptr;
}

std::string FormatNames(bool written) {
  std::string names;
  for (const Format& format : kFormats) {
    if (written && !format.writes) continue;
    if (!names.empty()) names += ", ";
    names += format.name;
  }
  return names;
}

}  // namespace vitrell::media
