// EXIF, IPTC, XMP and comments on their way from one file to another.
#ifndef VITRELL_MEDIA_METADATA_H_
#define VITRELL_MEDIA_METADATA_H_

#include <OpenImageIO/imageio.h>

#include <exiv2/exif.hpp>
#include <exiv2/iptc.hpp>
#include <exiv2/types.hpp>
#include <exiv2/xmp_exiv2.hpp>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "media/formats.h"

namespace vitrell::media {

// What a file says about its picture, entry by entry, as it stands there.
struct Metadata {
  Exiv2::ByteOrder byteOrder = Exiv2::littleEndian;
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;
  std::string xmpPacket;  // the text that xmp was read from; empty once xmp was changed
  std::string comment;
  std::string profile;  // where it has to be put in with the others; otherwise the header holds it

  bool IsEmpty() const {
    return exif.empty() && iptc.empty() && XmpIsEmpty() && comment.empty() && profile.empty();
  }
  bool XmpIsEmpty() const { return xmp.empty() && xmpPacket.empty(); }
};

// Null if the file holds none. Adds an ICC profile that the picture library overlooks to the
// header. Metadata that cannot be read are told in `notices`; the picture is not at fault.
// Pages of a TIFF, counted from 0 by `part`, have metadata of their own; other formats have one
// set.
std::shared_ptr<const Metadata> ReadMetadata(const std::filesystem::path& file, int part,
                                             const Format& format, OIIO::ImageSpec& spec,
                                             std::vector<std::string>& notices);

// Gives a header without one the ICC profile of its file, if the picture library overlooked it.
void AddOverlookedProfile(const std::filesystem::path& file, const Format& format,
                          OIIO::ImageSpec& spec);

// As one block each, for formats that take blocks. Empty if there is nothing of that kind.
std::string ExifBlock(const Metadata& metadata);
std::string XmpBlock(const Metadata& metadata);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_METADATA_H_
