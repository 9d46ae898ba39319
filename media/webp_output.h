// A writer of WebP files that stores colours and alpha as they are given.
#ifndef VITRELL_MEDIA_WEBP_OUTPUT_H_
#define VITRELL_MEDIA_WEBP_OUTPUT_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vitrell::media {

// The quality where none is asked for, of 0 to 100.
inline constexpr int kUsualWebpQuality = 90;

// The picture library's own writer divides straight colours by alpha. This one takes 8-bit RGB, or
// straight RGBA, and writes to the proxy it is given, with the ICC profile. "compression" is
// "lossless" or "webp:75", a quality from 0 to 100.
class WebpOutput : public OIIO::ImageOutput {
 public:
  const char* format_name() const override { return "webp"; }
  int supports(OIIO::string_view feature) const override;
  bool set_ioproxy(OIIO::Filesystem::IOProxy* proxy) override;
  bool open(const std::string& name, const OIIO::ImageSpec& spec, OpenMode mode) override;
  bool write_scanline(int y, int z, OIIO::TypeDesc format, const void* data,
                      OIIO::stride_t xstride) override;
  // Encodes and writes everything.
  bool close() override;

 private:
  bool Encode(std::vector<uint8_t>& file);
  bool AddProfile(std::vector<uint8_t>& file);

  OIIO::Filesystem::IOProxy* proxy_ = nullptr;
  bool open_ = false;
  std::vector<uint8_t> pixels_;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_WEBP_OUTPUT_H_
