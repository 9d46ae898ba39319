// Metadata into files.
#include "media/metadata_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <exiv2/image.hpp>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "media/mapped_file.h"
#include "media/metadata_fitting.h"

namespace vitrell::media {
namespace {

std::unique_ptr<Exiv2::Image> OpenImage(const MappedFile& file) {
  auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(file.Text().data()),
                                         static_cast<long>(file.Text().size()));
  image->readMetadata();
  return image;
}

struct Kinds {
  bool exif = false;
  bool iptc = false;
  bool xmp = false;
  bool comment = false;
};

bool Takes(const Exiv2::Image& image, Exiv2::MetadataId kind) {
  const Exiv2::AccessMode mode = image.checkMode(kind);
  return mode == Exiv2::amWrite || mode == Exiv2::amReadWrite;
}

// Null if the library refuses them.
std::unique_ptr<Exiv2::Image> Put(const Metadata& metadata, const Kinds& kinds,
                                  const Format& format, const MappedFile& file) {
  try {
    std::unique_ptr<Exiv2::Image> image = OpenImage(file);
    image->setByteOrder(metadata.byteOrder);
    // Remove what the pixel writer made up. In TIFF files the same block holds the file's layout.
    if (format.plugin != "tiff") image->clearExifData();
    if (kinds.exif && Takes(*image, Exiv2::mdExif)) image->setExifData(metadata.exif);
    if (kinds.iptc && Takes(*image, Exiv2::mdIptc)) image->setIptcData(metadata.iptc);
    if (kinds.comment && Takes(*image, Exiv2::mdComment)) image->setComment(metadata.comment);
    if (!metadata.profile.empty()) {
      Exiv2::DataBuf profile(reinterpret_cast<const Exiv2::byte*>(metadata.profile.data()),
                             static_cast<long>(metadata.profile.size()));
      image->setIccProfile(profile);
    }
    if (kinds.xmp && Takes(*image, Exiv2::mdXmp)) {
      image->setXmpData(metadata.xmp);
      // Not setXmpPacket(), which refuses what the library cannot read itself.
      image->xmpPacket() = metadata.xmpPacket;
      image->writeXmpFromPacket(!metadata.xmpPacket.empty());
    }
    image->writeMetadata();
    return image;
  } catch (const std::exception&) {
    return nullptr;
  }
}

// If one kind is too large for the format, or damaged, the others are written without it.
std::unique_ptr<Exiv2::Image> PutWhatFits(const Metadata& metadata, const Format& format,
                                          const MappedFile& file) {
  Kinds kinds{!metadata.exif.empty(), !metadata.iptc.empty(), !metadata.XmpIsEmpty(),
              !metadata.comment.empty()};
  std::unique_ptr<Exiv2::Image> image = Put(metadata, kinds, format, file);
  if (image != nullptr) return image;
  for (bool Kinds::*const kind : {&Kinds::exif, &Kinds::iptc, &Kinds::xmp, &Kinds::comment}) {
    Kinds alone;
    alone.*kind = kinds.*kind;
    if (Put(metadata, alone, format, file) == nullptr) kinds.*kind = false;
  }
  return Put(metadata, kinds, format, file);
}

// Where something lies in the file; the maker's block, whose entries stand for themselves; and the
// resolution, which the writer of the pixels may have stored in other fractions.
bool IsSeenElsewhere(std::string_view tag) {
  constexpr std::array<std::string_view, 10> kNames = {"JPEGInterchangeFormat",
                                                       "ExifTag",
                                                       "GPSTag",
                                                       "InteroperabilityTag",
                                                       "MakerNote",
                                                       "Offset",
                                                       "ByteOrder",
                                                       "XResolution",
                                                       "YResolution",
                                                       "ResolutionUnit"};
  return std::find(kNames.begin(), kNames.end(), tag) != kNames.end();
}

template <typename Data>
auto ListEntries(const Data& data) {
  std::multiset<std::pair<std::string, std::string>> entries;
  for (const auto& entry : data) {
    if (!IsSeenElsewhere(entry.tagName())) entries.insert({entry.key(), entry.toString()});
  }
  return entries;
}

template <typename Data>
void TellMissing(const char* kind, const Data& wanted, const Data& written,
                 std::vector<std::string>& lost) {
  const auto all = ListEntries(wanted);
  auto missing = all;
  for (const auto& entry : ListEntries(written)) {
    const auto found = missing.find(entry);
    if (found != missing.end()) missing.erase(found);
  }
  if (missing.empty()) return;
  std::string text = kind;
  if (missing.size() < all.size()) {
    text +=
        " (" + std::to_string(missing.size()) + " of " + std::to_string(all.size()) + " entries)";
  }
  lost.push_back(text);
}

}  // namespace

std::vector<std::string> PutMetadata(const Metadata& metadata, const Format& format,
                                     const std::filesystem::path& file, FileSink& sink) {
  std::vector<std::string> lost = KindsWithoutPlace(metadata, format);
  const MappedFile mapped(file);
  const std::unique_ptr<Exiv2::Image> image =
      mapped.IsOpen() ? PutWhatFits(metadata, format, mapped) : nullptr;
  if (image == nullptr) return {"metadata"};
  image->readMetadata();
  if (format.exif) TellMissing("EXIF data", metadata.exif, image->exifData(), lost);
  if (format.iptc) TellMissing("IPTC data", metadata.iptc, image->iptcData(), lost);
  if (format.xmp) TellMissing("XMP data", metadata.xmp, image->xmpData(), lost);
  // Of what cannot be read there are no entries to compare.
  const bool unread = metadata.xmp.empty() && !metadata.xmpPacket.empty();
  if (format.xmp && unread && image->xmpPacket().empty()) lost.emplace_back("XMP data");
  Exiv2::BasicIo& bytes = image->io();
  const auto size = static_cast<std::size_t>(bytes.size());
  sink.Replace(bytes.mmap(), size);
  return lost;
}

}  // namespace vitrell::media
