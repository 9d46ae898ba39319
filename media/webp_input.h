// A reader of WebP files that leaves colours and alpha as the file holds them.
#ifndef VITRELL_MEDIA_WEBP_INPUT_H_
#define VITRELL_MEDIA_WEBP_INPUT_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vitrell::media {

// The picture library's own reader premultiplies colours by alpha in 8 bits, which cannot be undone
// for transparent pixels. This one reads the first frame, straight, with its ICC
// profile. "webp:lossless" tells whether the frame was stored without loss.
class WebpInput : public OIIO::ImageInput {
 public:
  const char* format_name() const override { return "webp"; }
  bool open(const std::string& name, OIIO::ImageSpec& spec) override;
  bool open(const std::string& name, OIIO::ImageSpec& spec, const OIIO::ImageSpec& wishes) override;
  bool close() override;
  bool read_native_scanline(int subimage, int miplevel, int y, int z, void* data) override;
  // True for every frame there is, of which only the first can be read.
  bool seek_subimage(int subimage, int miplevel) override;

 private:
  bool Decode();

  std::vector<uint8_t> file_;
  std::vector<uint8_t> pixels_;
  int frames_ = 0;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_WEBP_INPUT_H_
