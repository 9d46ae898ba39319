// Metadata, sample type and place in the frame of the output.
#include "media/output_spec.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include "media/channel_names.h"
#include "media/fingerprint.h"
#include "media/metadata_fitting.h"

namespace vitrell::media {
namespace {

constexpr std::string_view kIcc = "ICCProfile";

// The colour space that an ICC profile is made for: "RGB ", "GRAY", "CMYK"; empty if there is none.
std::string ProfileSpace(const OIIO::ImageSpec& spec) {
  constexpr std::size_t kSpaceOffset = 16;
  constexpr std::size_t kSpaceSize = 4;
  const OIIO::ParamValue* profile = spec.find_attribute(std::string(kIcc));
  if (profile == nullptr || profile->type().size() < kSpaceOffset + kSpaceSize) return {};
  return {static_cast<const char*>(profile->data()) + kSpaceOffset, kSpaceSize};
}

void DropWrongProfile(bool grey, OIIO::ImageSpec& spec, std::vector<std::string>& notices) {
  const std::string space = ProfileSpace(spec);
  if (space.empty() || space == (grey ? "GRAY" : "RGB ")) return;
  if (grey && space == "RGB ") return;  // Common, and harmless.
  spec.erase_attribute(std::string(kIcc));
  notices.emplace_back("the ICC profile is left out; it does not fit the output's channels.");
}

// Whether what the effect left alone would come out changed.
bool LosesValues(const Format& format, std::string_view compression, const OIIO::ImageSpec& spec) {
  const auto is = [&](std::string_view name) { return compression.starts_with(name); };
  if (format.plugin == "tiff") return is("jpeg") || is("webp") || is("ccitt");
  if (format.plugin != "openexr") return false;
  // PXR24 truncates 32-bit floats and keeps everything else.
  const auto& types = spec.channelformats;
  const bool floats = spec.format == OIIO::TypeDesc::FLOAT ||
                      std::find(types.begin(), types.end(), OIIO::TypeDesc::FLOAT) != types.end();
  return is("b44") || is("dwa") || (is("pxr24") && floats);
}

// Compression names and bit counts mean something in their own format only, and lossy ones would
// damage the render.
void DropEncoding(const Picture& input, const Format& format, Depth depth, OIIO::ImageSpec& spec) {
  for (const char* name : {"oiio:UnassociatedAlpha", "oiio:dither", "oiio:ioproxy", "oiio:SHA-1",
                           "tiff:PhotometricInterpretation", "tiff:ColorSpace"}) {
    spec.erase_attribute(name);
  }
  const bool sameFormat = input.format->plugin == format.plugin;
  const std::string compression(spec.get_string_attribute("compression"));
  const bool lossy = LosesValues(format, compression, spec);
  if (!sameFormat || lossy) spec.erase_attribute("compression");
  if (!sameFormat) spec.erase_attribute("jpeg:subsampling");
  const int bits = spec.get_int_attribute("oiio:BitsPerSample", 0);
  if (!sameFormat || depth != Depth::kAuto || bits < 8) {
    spec.erase_attribute("oiio:BitsPerSample");
  }
}

// Without a date in the header, writers of formats that have one use the current time, and no two
// files would be equal. Use SOURCE_DATE_EPOCH, or else the modification time of the input file.
void SetDate(const Picture& input, OIIO::ImageSpec& spec) {
  if (spec.find_attribute("DateTime") != nullptr) return;
  std::int64_t seconds = 0;
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  const std::string_view text = epoch == nullptr ? "" : epoch;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    struct stat status {};
    if (::stat(input.file.c_str(), &status) == 0) seconds = status.st_mtime;
  }
  const std::time_t time = seconds;
  std::tm date{};
  std::array<char, 32> shown{};
  if (::gmtime_r(&time, &date) == nullptr) return;
  if (std::strftime(shown.data(), shown.size(), "%Y:%m:%d %H:%M:%S", &date) == 0) return;
  spec.attribute("DateTime", shown.data());
}

void ForgetFrame(int width, int height, OIIO::ImageSpec& spec) {
  spec.x = spec.y = spec.full_x = spec.full_y = 0;
  spec.width = spec.full_width = width;
  spec.height = spec.full_height = height;
}

void PlaceInFrame(const Picture& input, const OutputForm& form, const Format& format,
                  OIIO::ImageSpec& spec, std::vector<std::string>& notices) {
  if (form.wholeFrame) {
    const bool cut = input.Seen() != input.Data();
    ForgetFrame(input.Width(), input.Height(), spec);
    notices.push_back("the format stores no windows; the display window is written" +
                      std::string(cut ? ", without the pixels beyond it." : "."));
    return;
  }
  const bool framed = spec.x != 0 || spec.y != 0 || spec.full_x != 0 || spec.full_y != 0 ||
                      spec.full_width != spec.width || spec.full_height != spec.height;
  if (!framed || format.windows || format.plugin == "dpx") return;
  ForgetFrame(spec.width, spec.height, spec);
  notices.emplace_back("the format stores no frame around the picture; only the picture is kept.");
}

// The requested type; writers that do not support it choose one with fewer bits.
OIIO::TypeDesc ChooseType(const OIIO::TypeDesc& input, const Format& format, Depth depth) {
  const bool exr = format.plugin == "openexr";
  if (depth == Depth::k8) return OIIO::TypeDesc::UINT8;
  // EXR has no other 16 bits.
  if (depth == Depth::k16) return exr ? OIIO::TypeDesc::HALF : OIIO::TypeDesc::UINT16;
  // EXR's integers are for identifiers, not for brightness, and half floats have fewer bits.
  if (exr && input.size() > 1 && !input.is_floating_point()) return OIIO::TypeDesc::FLOAT;
  // Left to themselves, writers without such types would take 8 bits.
  const bool keepsAll = format.plugin == "tiff" || format.floats;
  return keepsAll || input.size() == 1 || input == OIIO::TypeDesc::UINT16
             ? input
             : OIIO::TypeDesc(OIIO::TypeDesc::UINT16);
}

bool SameBytes(const OIIO::ParamValue* a, const OIIO::ParamValue* b) {
  return b != nullptr && a->type().size() == b->type().size() &&
         std::memcmp(a->data(), b->data(), a->type().size()) == 0;
}

}  // namespace

// Colour space and history do not count, because the library makes them up.
bool HasExif(const OIIO::ImageSpec& spec) {
  return std::any_of(spec.extra_attribs.begin(), spec.extra_attribs.end(),
                     [](const OIIO::ParamValue& attribute) {
                       const std::string_view name = attribute.name().c_str();
                       return name == "FNumber" || name == "ExposureTime" ||
                              (name.starts_with("Exif:") && name != "Exif:ColorSpace" &&
                               name != "Exif:ImageHistory");
                     });
}

OIIO::ImageSpec MakeOutputSpec(const Picture& input, const OutputForm& form, const Format& format,
                               const WriteOrder& order, std::vector<std::string>& notices) {
  const Depth depth = order.depth;
  OIIO::ImageSpec spec = input.spec;
  spec.tile_width = spec.tile_height = spec.tile_depth = 0;
  PlaceInFrame(input, form, format, spec, notices);
  if (input.hasOtherParts && input.format->windows && !format.windows) {
    notices.emplace_back("the other parts of the file are left out.");
  }
  const bool sameFormat = input.format->plugin == format.plugin;
  if (input.metadata != nullptr && (format.exif || format.iptc || format.xmp)) {
    DropCarried(*input.metadata, sameFormat, spec);
    // What a TIFF file tells of it stands among the EXIF data of others.
    if (format.plugin == "tiff") SetResolution(*input.metadata, spec);
  }
  DropEncoding(input, format, depth, spec);
  if (format.plugin == "tiff" || format.plugin == "openexr") SetDate(input, spec);
  DropWrongProfile(form.channels.size() < 2 || form.channels[1].role != Role::kGreen, spec,
                   notices);
  NameChannels(input, form, format, format.plugin == "openexr" && depth == Depth::kAuto, spec);
  spec.format = ChooseType(input.spec.format, format, depth);
  // Without this the TIFF writer stores a list of EXIF data that it then finds empty.
  if (format.plugin == "tiff" && !HasExif(spec)) spec.attribute("tiff:write_exif", 0);
  if (form.straight && spec.alpha_channel >= 0) spec.attribute("oiio:UnassociatedAlpha", 1);
  SetEncoding(order.encoding, format, spec);
  // The input may be a rendered frame with a fingerprint of its own.
  spec.erase_attribute(kFingerprintAttribute);
  if (!order.fingerprint.empty() && HoldsFingerprint(order.target)) {
    spec.attribute(kFingerprintAttribute, order.fingerprint);
  }
  return spec;
}

std::set<std::string> LostMetadata(const OIIO::ImageSpec& input, const OIIO::ImageSpec& written) {
  std::set<std::string> lost;
  const OIIO::ParamValue* profile = input.find_attribute(std::string(kIcc));
  if (profile != nullptr && !SameBytes(profile, written.find_attribute(std::string(kIcc)))) {
    lost.insert("ICC profile");
  }
  if (HasExif(input) && !HasExif(written)) lost.insert("EXIF data");
  const int orientation = input.get_int_attribute("Orientation", 1);
  if (orientation != 1 && orientation != written.get_int_attribute("Orientation", 1)) {
    lost.insert("orientation");
  }
  const char* const kResolution = "XResolution";
  if (input.find_attribute(kResolution) != nullptr &&
      written.find_attribute(kResolution) == nullptr) {
    lost.insert("resolution");
  }
  return lost;
}

}  // namespace vitrell::media
