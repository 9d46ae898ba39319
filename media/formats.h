// The supported picture formats and what each of them can hold.
#ifndef VITRELL_MEDIA_FORMATS_H_
#define VITRELL_MEDIA_FORMATS_H_

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace vitrell::media {

// What this program supports of a format; the format itself may offer more.
struct Format {
  std::string_view name;        // "JPEG 2000"
  std::string_view plugin;      // the picture library's reader and writer: "jpeg2000"
  std::string_view extensions;  // lower case, separated by blanks: "jp2 j2k"; the first is usual
  bool writes = true;
  bool grey = true;          // one channel
  bool greyAlpha = false;    // grey and alpha
  bool alpha = false;        // red, green, blue and alpha
  bool straight = true;      // alpha is stored beside the colours, not multiplied into them
  bool anyChannels = false;  // further channels, too
  bool windows = false;      // a display window and a data window, as EXR has them
  bool floats = false;       // also values below black and above white
  bool profile = false;      // ICC profile
  bool quality = false;      // takes a quality from 1 to 100
  bool lossless = false;     // can be written without loss
  bool pages = false;        // several pictures, which are read and written
  std::string_view compressions = {};  // choices, separated by blanks; may be empty
  bool exif = false;
  bool iptc = false;
  bool xmp = false;
  bool fragile = false;       // damaged files can crash the library's reader
  std::string_view depths;    // "8, 16"
  std::string_view metadata;  // "EXIF, IPTC, XMP, resolution"
};

std::span<const Format> AllFormats();

// The format of a file, found by its first bytes, or by its extension for Targa, which has no
// signature. Null for any other format.
const Format* FormatOfFile(const std::filesystem::path& file);

// The format that can be written and has this file's extension. Null if there is none.
const Format* FormatToWrite(const std::filesystem::path& file);

// "PNG, JPEG, TIFF": the names of all formats, or of those that can be written.
std::string FormatNames(bool written);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_FORMATS_H_
