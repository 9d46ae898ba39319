// Reads metadata, and writes it as blocks.
#include "media/metadata.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <exiv2/error.hpp>
#include <exiv2/image.hpp>
#include <mutex>

#include "media/heif_blocks.h"
#include "media/mapped_file.h"
#include "media/tiff_pages.h"

namespace vitrell::media {
namespace {

constexpr const char* kProfile = "ICCProfile";

void StartLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::XmpParser::initialize();
  });
}

// False for formats that the library does not know or that hold no metadata.
bool HasReadableMetadata(const Format& format) { return format.exif || format.iptc || format.xmp; }

void AddProfile(const void* profile, std::size_t size, OIIO::ImageSpec& spec) {
  if (size == 0 || spec.find_attribute(kProfile) != nullptr) return;
  spec.attribute(kProfile, OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(size)), profile);
}

void ReadBlocks(const HeifBlocks& blocks, Metadata& metadata) {
  if (!blocks.exif.empty()) {
    metadata.byteOrder = Exiv2::ExifParser::decode(
        metadata.exif, reinterpret_cast<const Exiv2::byte*>(blocks.exif.data()),
        static_cast<uint32_t>(blocks.exif.size()));
  }
  metadata.xmpPacket = blocks.xmp;
  if (!blocks.xmp.empty()) Exiv2::XmpParser::decode(metadata.xmp, blocks.xmp);
}

void ReadImage(Exiv2::Image& image, Metadata& metadata) {
  image.readMetadata();
  metadata.byteOrder = image.byteOrder();
  metadata.exif = image.exifData();
  metadata.iptc = image.iptcData();
  metadata.xmp = image.xmpData();
  metadata.xmpPacket = image.xmpPacket();
  metadata.comment = image.comment();
}

}  // namespace

void AddOverlookedProfile(const std::filesystem::path& file, const Format& format,
                          OIIO::ImageSpec& spec) {
  if (!format.profile || spec.find_attribute(kProfile) != nullptr) return;
  std::vector<std::string> notices;
  ReadMetadata(file, 0, format, spec, notices);
}

std::shared_ptr<const Metadata> ReadMetadata(const std::filesystem::path& file, int part,
                                             const Format& format, OIIO::ImageSpec& spec,
                                             std::vector<std::string>& notices) {
  if (!HasReadableMetadata(format)) return nullptr;
  StartLibrary();
  auto metadata = std::make_shared<Metadata>();
  try {
    if (format.plugin == "heif") {
      const HeifBlocks blocks = ReadHeifBlocks(file);
      AddProfile(blocks.profile.data(), blocks.profile.size(), spec);
      ReadBlocks(blocks, *metadata);
    } else {
      const bool page = part > 0 && format.plugin == "tiff";
      MappedFile pages(page ? file : std::filesystem::path());
      if (page && !BeginWithPage(pages.Bytes(), part)) return nullptr;
      const auto image = page ? Exiv2::ImageFactory::open(
                                    reinterpret_cast<const Exiv2::byte*>(pages.Text().data()),
                                    static_cast<long>(pages.Text().size()))
                              : Exiv2::ImageFactory::open(file.string(), false);
      ReadImage(*image, *metadata);
      const Exiv2::DataBuf& profile = *image->iccProfile();
      AddProfile(profile.pData_, static_cast<std::size_t>(profile.size_), spec);
    }
    if (metadata->byteOrder != Exiv2::bigEndian) metadata->byteOrder = Exiv2::littleEndian;
  } catch (const std::exception& error) {
    notices.push_back(file.string() + ": its metadata cannot be read (" + error.what() +
                      ") and are left out.");
    return nullptr;
  }
  if (metadata->IsEmpty()) return nullptr;
  return metadata;
}

std::string ExifBlock(const Metadata& metadata) {
  if (metadata.exif.empty()) return {};
  Exiv2::Blob blob;
  Exiv2::ExifParser::encode(blob, metadata.byteOrder, metadata.exif);
  return {blob.begin(), blob.end()};
}

std::string XmpBlock(const Metadata& metadata) {
  if (!metadata.xmpPacket.empty() || metadata.xmp.empty()) return metadata.xmpPacket;
  std::string packet;
  Exiv2::XmpParser::encode(packet, metadata.xmp);
  return packet;
}

}  // namespace vitrell::media
