// AVIF and HEIC, written through their own library. The picture library halves the colours'
// resolution, gives them a fixed quality, and writes neither profiles nor metadata as they are.
#ifndef VITRELL_MEDIA_HEIF_OUTPUT_H_
#define VITRELL_MEDIA_HEIF_OUTPUT_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vitrell::media {

// Attributes of the header that hold metadata blocks for this writer, as bytes.
inline constexpr const char* kHeifExif = "heif:exif";
inline constexpr const char* kHeifXmp = "heif:xmp";

// The quality where none is asked for, of 0 to 100.
inline constexpr int kUsualHeifQuality = 90;

// Takes three or four channels of 8 bits. The header's "compression" is "avif" or "heic", its
// "CompressionQuality" 0 to 100, "heif:lossless" an integer. AVIF keeps the colours at full
// resolution; HEIC without loss, too, but otherwise halves it, because few programs read more.
class HeifOutput final : public OIIO::ImageOutput {
 public:
  const char* format_name() const override { return "heif"; }
  int supports(OIIO::string_view feature) const override;
  bool set_ioproxy(OIIO::Filesystem::IOProxy* proxy) override;
  bool open(const std::string& name, const OIIO::ImageSpec& spec, OpenMode mode) override;
  bool write_scanline(int y, int z, OIIO::TypeDesc format, const void* data,
                      OIIO::stride_t xstride) override;
  bool close() override;

 private:
  OIIO::Filesystem::IOProxy* proxy_ = nullptr;
  std::vector<uint8_t> pixels_;
  bool open_ = false;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_HEIF_OUTPUT_H_
