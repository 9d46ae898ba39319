// Moving pixels to where the orientation tag says they belong.
#include "media/orientation.h"

#include <algorithm>
#include <exception>
#include <exiv2/exiv2.hpp>
#include <string>
#include <utility>
#include <vector>

namespace vitrell::media {
namespace {

constexpr const char* kTag = "Orientation";

// How stored rows and columns map to the upright picture.
struct Turn {
  bool swapsAxes;  // stored rows are upright columns
  bool mirrorsX;   // stored columns (after the swap: rows) run from the far side
  bool mirrorsY;
};

// The comments give the sides of the upright picture at which the stored first row and first column
// lie.
constexpr Turn TurnOf(int orientation) {
  switch (orientation) {
    case 2:  // top, right
      return {false, true, false};
    case 3:  // bottom, right
      return {false, true, true};
    case 4:  // bottom, left
      return {false, false, true};
    case 5:  // left, top
      return {true, false, false};
    case 6:  // right, top
      return {true, false, true};
    case 7:  // right, bottom
      return {true, true, true};
    case 8:  // left, bottom
      return {true, true, false};
    default:  // top, left
      return {false, false, false};
  }
}

struct Size {
  std::size_t width;
  std::size_t height;
};

// Where an upright pixel is stored.
std::size_t StoredPixel(const Turn& turn, const Size& stored, std::size_t x, std::size_t y) {
  if (turn.swapsAxes) std::swap(x, y);
  if (turn.mirrorsX) x = stored.width - 1 - x;
  if (turn.mirrorsY) y = stored.height - 1 - y;
  return y * stored.width + x;
}

// Works in tiles that fit the cache, because the pixels of a turned row come from as many stored
// rows.
template <typename Sample>
std::vector<Sample> Turned(const std::vector<Sample>& samples, const Turn& turn, const Size& stored,
                           std::size_t channels) {
  constexpr std::size_t kSquare = 32;
  const Size upright = turn.swapsAxes ? Size{stored.height, stored.width} : stored;
  std::vector<Sample> turned(samples.size());
  for (std::size_t top = 0; top < upright.height; top += kSquare) {
    for (std::size_t left = 0; left < upright.width; left += kSquare) {
      for (std::size_t y = top; y < std::min(top + kSquare, upright.height); ++y) {
        for (std::size_t x = left; x < std::min(left + kSquare, upright.width); ++x) {
          const Sample* from = samples.data() + StoredPixel(turn, stored, x, y) * channels;
          std::copy_n(from, channels, turned.data() + (y * upright.width + x) * channels);
        }
      }
    }
  }
  return turned;
}

void SwapAttributes(OIIO::ImageSpec& spec, const std::string& a, const std::string& b) {
  OIIO::ParamValue* const first = spec.find_attribute(a);
  OIIO::ParamValue* const second = spec.find_attribute(b);
  if (first == nullptr || second == nullptr) return;
  const OIIO::ParamValue valueOfFirst = *first;
  const OIIO::ParamValue valueOfSecond = *second;
  spec.attribute(a, valueOfSecond.type(), valueOfSecond.data());
  spec.attribute(b, valueOfFirst.type(), valueOfFirst.data());
}

void TurnSpec(const Turn& turn, OIIO::ImageSpec& spec) {
  // Distances from the frame's sides to the pixels.
  int left = spec.x - spec.full_x;
  int top = spec.y - spec.full_y;
  if (turn.mirrorsX) left = spec.full_width - spec.width - left;
  if (turn.mirrorsY) top = spec.full_height - spec.height - top;
  if (turn.swapsAxes) {
    std::swap(left, top);
    std::swap(spec.width, spec.height);
    std::swap(spec.full_width, spec.full_height);
    SwapAttributes(spec, "XResolution", "YResolution");
    SwapAttributes(spec, "Exif:PixelXDimension", "Exif:PixelYDimension");
    const float aspect = spec.get_float_attribute("PixelAspectRatio", 0.0F);
    if (aspect > 0.0F) spec.attribute("PixelAspectRatio", 1.0F / aspect);
  }
  spec.x = spec.full_x + left;
  spec.y = spec.full_y + top;
  spec.attribute(kTag, 1);
}

}  // namespace

int OrientationOf(const OIIO::ImageSpec& spec, const Format& format) {
  const int orientation = spec.get_int_attribute(kTag, 1);
  constexpr int kTags = 8;
  return format.plugin == "openexr" || orientation < 1 || orientation > kTags ? 1 : orientation;
}

void FindOrientation(const std::filesystem::path& file, const Format& format,
                     OIIO::ImageSpec& spec) {
  if (format.plugin != "png" && format.plugin != "webp") return;
  if (spec.find_attribute(kTag) != nullptr) return;
  try {
    const auto image = Exiv2::ImageFactory::open(file.string());
    image->readMetadata();
    const Exiv2::ExifData& exif = image->exifData();
    const auto tag = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (tag != exif.end()) spec.attribute(kTag, static_cast<int>(tag->toLong()));
  } catch (const std::exception&) {
    // Damaged metadata counts as none; the pixels may be intact.
  }
}

void MakeUpright(Picture& picture) {
  const int orientation = OrientationOf(picture.spec, *picture.format);
  if (orientation == 1) return;
  const Turn turn = TurnOf(orientation);
  const Size stored{static_cast<std::size_t>(picture.spec.width),
                    static_cast<std::size_t>(picture.spec.height)};
  std::visit([&](auto& samples) { samples = Turned(samples, turn, stored, picture.Channels()); },
             picture.samples);
  TurnSpec(turn, picture.spec);
}

}  // namespace vitrell::media
