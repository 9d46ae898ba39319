// Collecting rows.
#include "media/whole_output.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vitrell::media {

int WholeOutput::supports(OIIO::string_view feature) const {
  return feature == "alpha" || feature == "ioproxy" ? 1 : 0;
}

bool WholeOutput::set_ioproxy(OIIO::Filesystem::IOProxy* proxy) {
  proxy_ = proxy;
  return true;
}

bool WholeOutput::open(const std::string& /*name*/, const OIIO::ImageSpec& spec, OpenMode mode) {
  if (mode != Create || proxy_ == nullptr || (spec.nchannels != 3 && spec.nchannels != 4)) {
    errorfmt("{} takes one picture of three or four channels", ShownName());
    return false;
  }
  if (spec.width > MostPixels() || spec.height > MostPixels()) {
    errorfmt("the largest {} picture is {} x {}", ShownName(), MostPixels(), MostPixels());
    return false;
  }
  m_spec = spec;
  m_spec.set_format(OIIO::TypeDesc::UINT8);
  pixels_.resize(m_spec.image_bytes());
  open_ = true;
  return true;
}

bool WholeOutput::write_scanline(int y, int z, OIIO::TypeDesc format, const void* data,
                                 OIIO::stride_t xstride) {
  std::vector<unsigned char> scratch;
  const auto* row =
      static_cast<const uint8_t*>(to_native_scanline(format, data, xstride, scratch, 0, y, z));
  const auto rowBytes = static_cast<std::size_t>(m_spec.scanline_bytes());
  std::copy_n(row, rowBytes, pixels_.data() + static_cast<std::size_t>(y) * rowBytes);
  return true;
}

bool WholeOutput::close() {
  if (!std::exchange(open_, false)) return true;
  const std::string cause = Encode(pixels_, *proxy_);
  pixels_ = std::vector<uint8_t>();
  if (!cause.empty()) errorfmt("the {} encoder failed: {}", ShownName(), cause);
  return cause.empty();
}

}  // namespace vitrell::media
