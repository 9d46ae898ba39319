// Channels in another order.
#include "media/video_picture.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "media/pixel_formats.h"

namespace vitrell::media {
namespace {

constexpr Format kVideoFrame{.name = "video",
                             .plugin = "video",
                             .extensions = {},
                             .writes = false,
                             .depths = {},
                             .metadata = {}};

// Where red, green, blue and alpha stand in a pixel of kRgb8 and of kRgb16.
constexpr std::array<std::size_t, 4> kPlaces8 = {1, 2, 3, 0};
constexpr std::array<std::size_t, 4> kPlaces16 = {0, 1, 2, 3};

template <typename Sample>
std::vector<Sample> SamplesOf(const AVFrame& rgb, std::size_t channels,
                              const std::array<std::size_t, 4>& places) {
  const auto width = static_cast<std::size_t>(rgb.width);
  std::vector<Sample> samples(width * static_cast<std::size_t>(rgb.height) * channels);
  Sample* out = samples.data();
  for (int y = 0; y < rgb.height; ++y) {
    const auto* in =
        reinterpret_cast<const Sample*>(rgb.data[0] + std::ptrdiff_t{y} * rgb.linesize[0]);
    for (std::size_t x = 0; x < width; ++x, in += 4) {
      for (std::size_t i = 0; i < channels; ++i) *out++ = in[places[i]];
    }
  }
  return samples;
}

}  // namespace

AVFrame& FramePictures::Rgb(const AVFrame& decoded, bool deep) {
  const AVPixelFormat format = deep ? kRgb16 : kRgb8;
  if (rgb_ == nullptr || rgb_->format != format || rgb_->width != decoded.width ||
      rgb_->height != decoded.height) {
    rgb_ = MakeFrame(decoded.width, decoded.height, format);
  }
  return *rgb_;
}

Picture FramePictures::Make(const AVFrame& decoded, bool deep, AlphaMeaning alpha) {
  AVFrame& rgb = Rgb(decoded, deep);
  converter_.Convert(decoded, rgb, video_);
  const bool hasAlpha = HasAlpha(static_cast<AVPixelFormat>(decoded.format));
  const std::size_t channels = hasAlpha ? 4 : 3;
  Picture picture;
  picture.file = video_;
  picture.format = &kVideoFrame;
  picture.spec = OIIO::ImageSpec(decoded.width, decoded.height, static_cast<int>(channels),
                                 deep ? OIIO::TypeDesc::UINT16 : OIIO::TypeDesc::UINT8);
  const AVRational aspect = decoded.sample_aspect_ratio;
  if (aspect.num > 0 && aspect.den > 0 && aspect.num != aspect.den) {
    picture.spec.attribute("PixelAspectRatio", static_cast<float>(av_q2d(aspect)));
  }
  picture.layout = {0, 1, 2, hasAlpha && alpha != AlphaMeaning::kIgnored ? 3 : -1};
  picture.straight = alpha != AlphaMeaning::kPremultiplied || picture.layout.alpha < 0;
  if (deep) {
    picture.samples = SamplesOf<std::uint16_t>(rgb, channels, kPlaces16);
  } else {
    picture.samples = SamplesOf<std::uint8_t>(rgb, channels, kPlaces8);
  }
  return picture;
}

}  // namespace vitrell::media
