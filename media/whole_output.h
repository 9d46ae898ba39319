// A writer that collects all rows and then encodes the picture as a whole.
#ifndef VITRELL_MEDIA_WHOLE_OUTPUT_H_
#define VITRELL_MEDIA_WHOLE_OUTPUT_H_

#include <OpenImageIO/imageio.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vitrell::media {

// Takes three or four channels of 8 bits, alpha straight, and writes to the proxy it is given.
class WholeOutput : public OIIO::ImageOutput {
 public:
  int supports(OIIO::string_view feature) const override;
  bool set_ioproxy(OIIO::Filesystem::IOProxy* proxy) override;
  bool open(const std::string& name, const OIIO::ImageSpec& spec, OpenMode mode) override;
  bool write_scanline(int y, int z, OIIO::TypeDesc format, const void* data,
                      OIIO::stride_t xstride) override;
  // Encodes and writes everything.
  bool close() override;

 protected:
  // "WebP", for messages.
  virtual const char* ShownName() const = 0;
  // Of a side, in pixels.
  virtual int MostPixels() const = 0;
  // Rows of m_spec without padding, as a file. Returns the cause of a failure, empty if all went
  // well.
  virtual std::string Encode(const std::vector<uint8_t>& pixels,
                             OIIO::Filesystem::IOProxy& proxy) = 0;

 private:
  OIIO::Filesystem::IOProxy* proxy_ = nullptr;
  std::vector<uint8_t> pixels_;
  bool open_ = false;
};

}  // namespace vitrell::media

#endif  // VITRELL_MEDIA_WHOLE_OUTPUT_H_
