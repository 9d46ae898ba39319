// What stays true of the input's metadata, and what has a place in the output.
#include "media/metadata_fitting.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace vitrell::media {
namespace {

// Tags of a TIFF file's first directory that describe the storage of its samples, or hold blocks
// that are carried over separately.
constexpr std::array<std::string_view, 38> kOfThisFile = {
    "ImageWidth",
    "ImageLength",
    "BitsPerSample",
    "Compression",
    "FillOrder",
    "StripOffsets",
    "SamplesPerPixel",
    "PhotometricInterpretation",
    "RowsPerStrip",
    "StripByteCounts",
    "PlanarConfiguration",
    "GrayResponseUnit",
    "GrayResponseCurve",
    "T4Options",
    "T6Options",
    "Predictor",
    "ColorMap",
    "HalftoneHints",
    "TileWidth",
    "TileLength",
    "TileOffsets",
    "TileByteCounts",
    "SubIFDs",
    "InkSet",
    "NumberOfInks",
    "ExtraSamples",
    "SampleFormat",
    "SMinSampleValue",
    "SMaxSampleValue",
    "JPEGTables",
    "YCbCrSubSampling",
    "NewSubfileType",
    "SubfileType",
    "TransferFunction",
    "XMLPacket",
    "IPTCNAA",
    "ImageResources",
    "InterColorProfile",
};

bool DescribesTheFile(const Exiv2::Exifdatum& entry, const Format& format) {
  const std::string group = entry.groupName();
  const std::string tag = entry.tagName();
  if (group == "Thumbnail" || group.starts_with("SubImage") || group.starts_with("SubThumb") ||
      group == "Image2" || group == "Image3") {
    return true;
  }
  if (group != "Image") return false;
  if (tag == "YCbCrPositioning") return format.plugin != "jpeg";
  return std::find(kOfThisFile.begin(), kOfThisFile.end(), tag) != kOfThisFile.end();
}

template <typename Data, typename Predicate>
void EraseEntries(Data& data, const Predicate& predicate) {
  for (auto entry = data.begin(); entry != data.end();) {
    entry = predicate(*entry) ? data.erase(entry) : std::next(entry);
  }
}

bool Has(const Exiv2::ExifData& exif, const char* key) {
  return exif.findKey(Exiv2::ExifKey(key)) != exif.end();
}

void FitExif(const Format& format, const OIIO::ImageSpec& output, Exiv2::ExifData& exif) {
  EraseEntries(exif, [&](const auto& entry) { return DescribesTheFile(entry, format); });
  const int orientation = output.get_int_attribute("Orientation", 1);
  if (Has(exif, "Exif.Image.Orientation") || orientation != 1) {
    exif["Exif.Image.Orientation"] = static_cast<uint16_t>(orientation);
  }
  if (Has(exif, "Exif.Photo.PixelXDimension")) {
    exif["Exif.Photo.PixelXDimension"] = static_cast<uint32_t>(output.width);
  }
  if (Has(exif, "Exif.Photo.PixelYDimension")) {
    exif["Exif.Photo.PixelYDimension"] = static_cast<uint32_t>(output.height);
  }
}

// Thumbnails of the picture as it was.
bool IsIptcPreview(const Exiv2::Iptcdatum& entry) {
  return entry.groupName() == "Application2" && entry.tagName().starts_with("Preview");
}

struct XmpFact {
  const char* key;
  int value;  // below 0: no longer true, to be removed
};

// Returns whether something was changed.
bool FitXmp(const OIIO::ImageSpec& output, Exiv2::XmpData& xmp) {
  const std::array facts = {
      XmpFact{"Xmp.tiff.Orientation", output.get_int_attribute("Orientation", 1)},
      XmpFact{"Xmp.tiff.ImageWidth", output.width},
      XmpFact{"Xmp.tiff.ImageLength", output.height},
      XmpFact{"Xmp.exif.PixelXDimension", output.width},
      XmpFact{"Xmp.exif.PixelYDimension", output.height},
      XmpFact{"Xmp.tiff.BitsPerSample", -1},
      XmpFact{"Xmp.tiff.SamplesPerPixel", -1},
      XmpFact{"Xmp.tiff.Compression", -1},
      XmpFact{"Xmp.tiff.PhotometricInterpretation", -1},
      XmpFact{"Xmp.tiff.PlanarConfiguration", -1},
  };
  bool changed = false;
  for (const XmpFact& fact : facts) {
    const auto entry = xmp.findKey(Exiv2::XmpKey(fact.key));
    if (entry == xmp.end()) continue;
    const std::string value = std::to_string(fact.value);
    if (fact.value >= 0 && entry->toString() == value) continue;
    changed = true;
    if (fact.value < 0) {
      xmp.erase(entry);
    } else {
      entry->setValue(value);
    }
  }
  const auto before = xmp.count();
  EraseEntries(xmp, [](const Exiv2::Xmpdatum& entry) {
    return entry.key().starts_with("Xmp.xmp.Thumbnails");
  });
  return changed || xmp.count() != before;
}

// Attributes that control how the library writes the file, as opposed to carried metadata.
bool IsForTheWriter(std::string_view name) {
  constexpr std::array<std::string_view, 8> kNames = {
      "ICCProfile",  "compression",    "CompressionQuality", "XResolution",
      "YResolution", "ResolutionUnit", "PixelAspectRatio",   "Orientation"};
  constexpr std::array<std::string_view, 9> kPrefixes = {
      "oiio:", "tiff:", "jpeg:", "png:", "webp:", "heif:", "jpeg2000:", "bmp:", "targa:"};
  return std::find(kNames.begin(), kNames.end(), name) != kNames.end() ||
         std::any_of(kPrefixes.begin(), kPrefixes.end(),
                     [&](std::string_view prefix) { return name.starts_with(prefix); });
}

}  // namespace

Metadata FitMetadata(const Metadata& metadata, const Format& format,
                     const OIIO::ImageSpec& output) {
  Metadata fitted = metadata;
  FitExif(format, output, fitted.exif);
  EraseEntries(fitted.iptc, IsIptcPreview);
  if (FitXmp(output, fitted.xmp)) fitted.xmpPacket.clear();
  return fitted;
}

void DropCarried(const Metadata& metadata, bool samePlugin, OIIO::ImageSpec& spec) {
  const auto isOwnText = [&](const OIIO::ParamValue& attribute) {
    const std::string name = attribute.name().string();
    return samePlugin && name.find(':') == std::string::npos &&
           attribute.type() == OIIO::TypeDesc::STRING &&
           std::none_of(metadata.exif.begin(), metadata.exif.end(), [&](const auto& entry) {
             return entry.groupName() == "Image" && entry.tagName() == name;
           });
  };
  std::vector<std::string> dropped;
  for (const OIIO::ParamValue& attribute : spec.extra_attribs) {
    if (!IsForTheWriter(attribute.name().string()) && !isOwnText(attribute)) {
      dropped.push_back(attribute.name().string());
    }
  }
  for (const std::string& name : dropped) spec.erase_attribute(name);
}

void SetResolution(const Metadata& metadata, OIIO::ImageSpec& spec) {
  const auto find = [&](const char* name) {
    return metadata.exif.findKey(Exiv2::ExifKey(std::string("Exif.Image.") + name));
  };
  for (const char* name : {"XResolution", "YResolution"}) {
    const auto entry = find(name);
    if (entry != metadata.exif.end()) spec.attribute(name, entry->toFloat());
  }
  const auto unit = find("ResolutionUnit");
  if (unit == metadata.exif.end()) return;
  constexpr std::array<const char*, 4> kUnits = {"none", "none", "in", "cm"};
  const long code = unit->toLong();
  if (code > 0 && code < 4) {
    spec.attribute("ResolutionUnit", kUnits.at(static_cast<std::size_t>(code)));
  }
}

std::vector<std::string> KindsWithoutPlace(const Metadata& metadata, const Format& format) {
  std::vector<std::string> kinds;
  const bool comment = format.plugin == "jpeg" || format.plugin == "png";
  // Losing the orientation tag of an upright picture is no loss.
  const bool exif =
      std::any_of(metadata.exif.begin(), metadata.exif.end(), [](const Exiv2::Exifdatum& entry) {
        return entry.key() != "Exif.Image.Orientation" || entry.toLong() != 1;
      });
  if (exif && !format.exif) kinds.emplace_back("EXIF data");
  if (!metadata.iptc.empty() && !format.iptc) kinds.emplace_back("IPTC data");
  if (!metadata.XmpIsEmpty() && !format.xmp) kinds.emplace_back("XMP data");
  if (!metadata.comment.empty() && !comment) kinds.emplace_back("comment");
  return kinds;
}

}  // namespace vitrell::media
