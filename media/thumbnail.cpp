// Making thumbnails.
#include "media/thumbnail.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace vitrell::media {
namespace {

// As the EXIF standard recommends.
constexpr int kMostWidth = 160;
constexpr int kMostHeight = 120;

struct SmallPicture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> samples;  // red, green, blue
};

template <typename Pixel>
std::array<std::int64_t, 3> SumOf(const headless::WorldBuffer& world, int left, int top, int right,
                                  int bottom) {
  std::array<std::int64_t, 3> sum{};
  for (int y = top; y < bottom; ++y) {
    const auto* const row = reinterpret_cast<const Pixel*>(world.Row(y));
    for (int x = left; x < right; ++x) {
      sum[0] += row[x].red;
      sum[1] += row[x].green;
      sum[2] += row[x].blue;
    }
  }
  return sum;
}

// A box filter: each pixel is the mean of its rectangle.
SmallPicture Shrunk(const headless::WorldBuffer& world) {
  const int width = world.Width();
  const int height = world.Height();
  const double scale = std::min(
      {1.0, static_cast<double>(kMostWidth) / width, static_cast<double>(kMostHeight) / height});
  SmallPicture small;
  small.width = std::max(1, static_cast<int>(width * scale));
  small.height = std::max(1, static_cast<int>(height * scale));
  const std::int64_t white = world.Deep() ? 32768 : 255;
  for (int y = 0; y < small.height; ++y) {
    const int top = y * height / small.height;
    const int bottom = (y + 1) * height / small.height;
    for (int x = 0; x < small.width; ++x) {
      const int left = x * width / small.width;
      const int right = (x + 1) * width / small.width;
      const std::int64_t most = white * (right - left) * (bottom - top);
      for (const std::int64_t sum : world.Deep()
                                        ? SumOf<PF_Pixel16>(world, left, top, right, bottom)
                                        : SumOf<PF_Pixel>(world, left, top, right, bottom)) {
        small.samples.push_back(
            static_cast<std::uint8_t>(std::min<std::int64_t>(255, (sum * 255 + most / 2) / most)));
      }
    }
  }
  return small;
}

// Empty if it cannot be encoded.
std::vector<unsigned char> AsJpeg(const SmallPicture& picture) {
  OIIO::Filesystem::IOVecOutput bytes;
  const auto writer = OIIO::ImageOutput::create("jpeg");
  OIIO::ImageSpec spec(picture.width, picture.height, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("compression", "jpeg:85");
  if (writer == nullptr || !writer->set_ioproxy(&bytes) || !writer->open("thumbnail", spec) ||
      !writer->write_image(OIIO::TypeDesc::UINT8, picture.samples.data()) || !writer->close()) {
    return {};
  }
  return bytes.buffer();
}

}  // namespace

bool HasThumbnail(const Exiv2::ExifData& exif, const Format& format) {
  return format.plugin != "tiff" &&
         exif.findKey(Exiv2::ExifKey("Exif.Thumbnail.JPEGInterchangeFormat")) != exif.end();
}

void AddThumbnail(const headless::WorldBuffer& result, Exiv2::ExifData& exif) {
  const std::vector<unsigned char> jpeg = AsJpeg(Shrunk(result));
  if (jpeg.empty()) return;
  Exiv2::ExifThumb(exif).setJpegThumbnail(jpeg.data(), static_cast<long>(jpeg.size()));
}

}  // namespace vitrell::media
