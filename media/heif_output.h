// AVIF and HEIC, written through their own library. The picture library halves the colours'
// resolution, gives them a fixed quality, and writes neither profiles nor metadata as they are.
#ifndef VITRELL_MEDIA_HEIF_OUTPUT_H_
#define VITRELL_MEDIA_HEIF_OUTPUT_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <string>
#include <vector>

#include "media/whole_output.h"

namespace vitrell::media {

// Attributes of the header that hold metadata blocks for this writer, as bytes.
inline constexpr const char* kHeifExif = "heif:exif";
inline constexpr const char* kHeifXmp = "heif:xmp";

// The quality where none is asked for, of 0 to 100.
inline constexpr int kUsualHeifQuality = 90;

// The header's "compression" is "avif" or "heic", its
// "CompressionQuality" 0 to 100, "heif:lossless" an integer. AVIF keeps the colours at full
// resolution; HEIC without loss, too, but otherwise halves it, because few programs read more.
class HeifOutput final : public WholeOutput {
 public:
  const char* format_name() const override { return "heif"; }

 protected:
  const char* ShownName() const override { return "AVIF or HEIC"; }
  // The largest side that HEVC and AV1 share.
  int MostPixels() const override { return 65535; }
  std::string Encode(const std::vector<uint8_t>& pixels, OIIO::Filesystem::IOProxy& proxy) override;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_HEIF_OUTPUT_H_
