// Writing AVIF and HEIC through libheif.
#include "media/heif_output.h"

#include <OpenImageIO/filesystem.h>

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "media/heif_records.h"

namespace vitrell::media {
namespace {

struct EncodingError {
  std::string message;
};

void Check(const heif_error& error) {
  if (error.code != heif_error_Ok) throw EncodingError{error.message};
}

// The bytes of an attribute; empty without it.
std::string_view BytesOf(const OIIO::ImageSpec& spec, const char* name) {
  const OIIO::ParamValue* value = spec.find_attribute(name);
  if (value == nullptr) return {};
  return {static_cast<const char*>(value->data()), value->type().size()};
}

HeifEncoder MakeEncoder(heif_context& context, const OIIO::ImageSpec& spec, bool lossless) {
  const auto [codec, quality] = spec.decode_compression_metadata("heic", kUsualHeifQuality);
  const bool avif = codec == "avif";
  heif_encoder* encoder = nullptr;
  Check(heif_context_get_encoder_for_format(
      &context, avif ? heif_compression_AV1 : heif_compression_HEVC, &encoder));
  HeifEncoder owned(encoder);
  Check(heif_encoder_set_lossy_quality(encoder, std::clamp(quality, 0, 100)));
  Check(heif_encoder_set_lossless(encoder, lossless ? 1 : 0));
  Check(heif_encoder_set_parameter_string(encoder, "chroma", avif || lossless ? "444" : "420"));
  return owned;
}

HeifImage MakeImage(const OIIO::ImageSpec& spec, const std::vector<uint8_t>& pixels) {
  heif_image* image = nullptr;
  const bool alpha = spec.nchannels == 4;
  Check(heif_image_create(spec.width, spec.height, heif_colorspace_RGB,
                          alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                          &image));
  HeifImage owned(image);
  Check(heif_image_add_plane(image, heif_channel_interleaved, spec.width, spec.height, 8));
  int stride = 0;
  uint8_t* plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
  const auto rowBytes = static_cast<std::size_t>(spec.scanline_bytes());
  for (int y = 0; y < spec.height; ++y) {
    std::copy_n(pixels.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes,
                plane + static_cast<std::ptrdiff_t>(y) * stride);
  }
  const std::string_view profile = BytesOf(spec, "ICCProfile");
  if (!profile.empty()) {
    Check(heif_image_set_raw_color_profile(image, "prof", profile.data(), profile.size()));
  }
  return owned;
}

// Stores red, green and blue unconverted, since every other matrix rounds.
HeifNclx MakeIdentityMatrix() {
  HeifNclx nclx(heif_nclx_color_profile_alloc());
  nclx->matrix_coefficients = heif_matrix_coefficients_RGB_GBR;
  nclx->full_range_flag = 1;
  return nclx;
}

heif_error KeepBytes(heif_context* /*context*/, const void* data, std::size_t size, void* file) {
  auto* proxy = static_cast<OIIO::Filesystem::IOProxy*>(file);
  if (proxy->write(data, size) == size) return {heif_error_Ok, heif_suberror_Unspecified, "ok"};
  return {heif_error_Encoding_error, heif_suberror_Cannot_write_output_data, "cannot write"};
}

void EncodeImage(const OIIO::ImageSpec& spec, const std::vector<uint8_t>& pixels,
                 OIIO::Filesystem::IOProxy& proxy) {
  const bool lossless = spec.get_int_attribute("heif:lossless", 0) != 0;
  const HeifContext context(heif_context_alloc());
  const HeifEncoder encoder = MakeEncoder(*context, spec, lossless);
  const HeifImage image = MakeImage(spec, pixels);
  const HeifOptions options(heif_encoding_options_alloc());
  options->save_two_colr_boxes_when_ICC_and_nclx_available = 1;
  if (lossless) {
    // The encoder takes the matrix from the picture, readers from the file.
    const HeifNclx identity = MakeIdentityMatrix();
    Check(heif_image_set_nclx_color_profile(image.get(), identity.get()));
    options->macOS_compatibility_workaround_no_nclx_profile = 0;
  }
  heif_image_handle* handle = nullptr;
  Check(
      heif_context_encode_image(context.get(), image.get(), encoder.get(), options.get(), &handle));
  const HeifHandle owned(handle);
  const std::string_view exif = BytesOf(spec, kHeifExif);
  if (!exif.empty()) {
    Check(heif_context_add_exif_metadata(context.get(), handle, exif.data(),
                                         static_cast<int>(exif.size())));
  }
  const std::string_view xmp = BytesOf(spec, kHeifXmp);
  if (!xmp.empty()) {
    Check(heif_context_add_XMP_metadata(context.get(), handle, xmp.data(),
                                        static_cast<int>(xmp.size())));
  }
  heif_writer writer{1, &KeepBytes};
  Check(heif_context_write(context.get(), &writer, &proxy));
}

}  // namespace

std::string HeifOutput::Encode(const std::vector<uint8_t>& pixels,
                               OIIO::Filesystem::IOProxy& proxy) {
  try {
    EncodeImage(m_spec, pixels, proxy);
  } catch (const EncodingError& error) {
    return error.message.empty() ? "no cause is told" : error.message;
  }
  return {};
}

}  // namespace vitrell::media
