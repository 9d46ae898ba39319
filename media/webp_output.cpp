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
  // Keep the colours of fully transparent pixels.
  config.exact = 1;
  constexpr int kUsualEffort = 6;
  return method != "lossless" || WebPConfigLosslessPreset(&config, kUsualEffort) != 0;
}

bool EncodeImage(const OIIO::ImageSpec& spec, const std::vector<uint8_t>& pixels,
                 std::vector<uint8_t>& file) {
  WebPConfig config;
  WebPPicture picture;
  if (!Configure(spec, config) || WebPPictureInit(&picture) == 0) return false;
  picture.width = spec.width;
  picture.height = spec.height;
  picture.use_argb = config.lossless;
  picture.writer = &KeepBytes;
  picture.custom_ptr = &file;
  const auto import = spec.nchannels == 4 ? &WebPPictureImportRGBA : &WebPPictureImportRGB;
  const bool done = import(&picture, pixels.data(), static_cast<int>(spec.scanline_bytes())) != 0 &&
                    WebPEncode(&config, &picture) != 0;
  WebPPictureFree(&picture);
  return done;
}

bool AddProfile(const OIIO::ImageSpec& spec, std::vector<uint8_t>& file) {
  const OIIO::ParamValue* profile = spec.find_attribute("ICCProfile");
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

}  // namespace

int WebpOutput::MostPixels() const { return WEBP_MAX_DIMENSION; }

std::string WebpOutput::Encode(const std::vector<uint8_t>& pixels,
                               OIIO::Filesystem::IOProxy& proxy) {
  std::vector<uint8_t> file;
  if (!EncodeImage(m_spec, pixels, file)) return "it does not take this picture";
  if (!AddProfile(m_spec, file)) return "it does not take the ICC profile";
  return proxy.write(file.data(), file.size()) == file.size() ? "" : "the file cannot be written";
}

}  // namespace vitrell::media
