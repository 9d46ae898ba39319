// What AVIF and HEIC files hold beside their pixels.
#ifndef VITRELL_MEDIA_HEIF_BLOCKS_H_
#define VITRELL_MEDIA_HEIF_BLOCKS_H_

#include <filesystem>
#include <string>

namespace vitrell::media {

// Bytes as they are in the file; empty where there are none.
struct HeifBlocks {
  std::string exif;  // begins with the TIFF header
  std::string xmp;
  std::string profile;
};

// Of the file's main picture. Empty blocks where the file cannot be read.
HeifBlocks ReadHeifBlocks(const std::filesystem::path& file);

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_HEIF_BLOCKS_H_
