// Writing WebP through its own library.
#include "media/webp_output.h"

#include <OpenImageIO/filesystem.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <algorithm>
#include <memory>

namespace vitrell::media {
namespace {

using Mux = std::unique_ptr<WebPMux, decltype(&WebPMuxDelete)>;

int KeepBytes(const uint8_t* data, std::size_t size, const WebPPicture* picture) {
  auto* file = static_cast<std::vector<uint8_t>*>(picture->custom_ptr);
  file->insert(file->end(), data, data + size);
  return 1;
}

bool Configure(const OIIO::ImageSpec& spec, WebPConfig& config) {
  const auto [method, quality] = spec.decode_compression_metadata("webp", kUsualWebpQuality);
  if (WebPConfigInit(&config) == 0) return false;
  config.quality = static_cast<float>(std::clamp(quality, 0, 100));
  // Colours under full transparency count, too.
  config.exact = 1;
  constexpr int kUsualEffort = 6;
  return method != "lossless" || WebPConfigLosslessPreset(&config, kUsualEffort) != 0;
}

}  // namespace

int WebpOutput::supports(OIIO::string_view feature) const {
  return feature == "alpha" || feature == "ioproxy" ? 1 : 0;
}

bool WebpOutput::set_ioproxy(OIIO::Filesystem::IOProxy* proxy) {
  proxy_ = proxy;
  return true;
}

bool WebpOutput::open(const std::string& /*name*/, const OIIO::ImageSpec& spec, OpenMode mode) {
  if (mode != Create || proxy_ == nullptr || (spec.nchannels != 3 && spec.nchannels != 4)) {
    errorfmt("WebP takes one picture of three or four channels");
    return false;
  }
  if (spec.width > WEBP_MAX_DIMENSION || spec.height > WEBP_MAX_DIMENSION) {
    errorfmt("the largest WebP picture is {} x {}", WEBP_MAX_DIMENSION, WEBP_MAX_DIMENSION);
    return false;
  }
  m_spec = spec;
  m_spec.set_format(OIIO::TypeDesc::UINT8);
  pixels_.resize(m_spec.image_bytes());
  open_ = true;
  return true;
}

bool WebpOutput::write_scanline(int y, int z, OIIO::TypeDesc format, const void* data,
                                OIIO::stride_t xstride) {
  std::vector<unsigned char> scratch;
  const auto* row =
      static_cast<const uint8_t*>(to_native_scanline(format, data, xstride, scratch, 0, y, z));
  const std::size_t rowBytes = m_spec.scanline_bytes();
  std::copy_n(row, rowBytes, pixels_.data() + static_cast<std::size_t>(y) * rowBytes);
  return true;
}

bool WebpOutput::Encode(std::vector<uint8_t>& file) {
  WebPConfig config;
  WebPPicture picture;
  if (!Configure(m_spec, config) || WebPPictureInit(&picture) == 0) return false;
  picture.width = m_spec.width;
  picture.height = m_spec.height;
  picture.use_argb = config.lossless;
  picture.writer = &KeepBytes;
  picture.custom_ptr = &file;
  const auto import = m_spec.nchannels == 4 ? &WebPPictureImportRGBA : &WebPPictureImportRGB;
  const bool done =
      import(&picture, pixels_.data(), static_cast<int>(m_spec.scanline_bytes())) != 0 &&
      WebPEncode(&config, &picture) != 0;
  WebPPictureFree(&picture);
  return done;
}

bool WebpOutput::AddProfile(std::vector<uint8_t>& file) {
  const OIIO::ParamValue* profile = m_spec.find_attribute("ICCProfile");
  if (profile == nullptr) return true;
  const Mux mux(WebPMuxNew(), &WebPMuxDelete);
  const WebPData image{file.data(), file.size()};
  const WebPData chunk{static_cast<const uint8_t*>(profile->data()), profile->type().size()};
  WebPData whole{};
  if (mux == nullptr || WebPMuxSetImage(mux.get(), &image, 0) != WEBP_MUX_OK ||
      WebPMuxSetChunk(mux.get(), "ICCP", &chunk, 0) != WEBP_MUX_OK ||
      WebPMuxAssemble(mux.get(), &whole) != WEBP_MUX_OK) {
    return false;
  }
  const std::vector<uint8_t> assembled(whole.bytes, whole.bytes + whole.size);
  WebPDataClear(&whole);
  file = assembled;
  return true;
}

bool WebpOutput::close() {
  if (!open_) return true;
  open_ = false;
  std::vector<uint8_t> file;
  const bool encoded = Encode(file) && AddProfile(file);
  pixels_.clear();
  if (!encoded) {
    errorfmt("the WebP encoder failed");
    return false;
  }
  return proxy_->write(file.data(), file.size()) == file.size();
}

}  // namespace vitrell::media
