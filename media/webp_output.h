// A writer of WebP files that stores colours and alpha as they are given.
#ifndef VITRELL_MEDIA_WEBP_OUTPUT_H_
#define VITRELL_MEDIA_WEBP_OUTPUT_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <string>
#include <vector>

#include "media/whole_output.h"

namespace vitrell::media {

// The quality where none is asked for, of 0 to 100.
inline constexpr int kUsualWebpQuality = 90;

// The picture library's own writer divides straight colours by alpha. This one writes them as they
// are, with the ICC profile. "compression" is "lossless" or "webp:75", a quality from 0 to 100.
class WebpOutput final : public WholeOutput {
 public:
  const char* format_name() const override { return "webp"; }

 protected:
  const char* ShownName() const override { return "WebP"; }
  int MostPixels() const override;
  std::string Encode(const std::vector<uint8_t>& pixels, OIIO::Filesystem::IOProxy& proxy) override;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_WEBP_OUTPUT_H_
