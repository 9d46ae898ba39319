// Test pictures.
#include "media/picture_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <utility>

namespace vitrell::media {
namespace {

bool IsFloat(OIIO::TypeDesc type) { return type.is_floating_point(); }

std::vector<uint8_t> Bytes(const std::vector<uint16_t>& samples) {
  std::vector<uint8_t> bytes;
  for (const uint16_t sample : samples) bytes.push_back(static_cast<uint8_t>(sample));
  return bytes;
}

}  // namespace

FilePicture NoisePicture(int width, int height, int channels, OIIO::TypeDesc type, uint32_t seed,
                         bool associated) {
  FilePicture picture;
  picture.spec = OIIO::ImageSpec(width, height, channels, type);
  const bool alpha = channels == 2 || channels == 4;
  picture.spec.alpha_channel = alpha ? channels - 1 : -1;
  if (channels == 2) picture.spec.channelnames = {"Y", "A"};
  if (alpha && !associated) picture.spec.attribute("oiio:UnassociatedAlpha", 1);
  std::mt19937 random(seed);
  const uint32_t values = type == OIIO::TypeDesc::UINT8 ? 256 : 65536;
  const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  for (std::size_t pixel = 0; pixel < pixels; ++pixel) {
    std::vector<uint32_t> sample(static_cast<std::size_t>(channels));
    for (uint32_t& value : sample) value = static_cast<uint32_t>(random()) % values;
    if (alpha && associated) {
      for (uint32_t& value : sample) value = std::min(value, sample.back());
    }
    for (const uint32_t value : sample) {
      picture.samples.push_back(static_cast<uint16_t>(value));
      if (IsFloat(type)) picture.floats.push_back(static_cast<float>(value) / 65535.0F);
    }
  }
  return picture;
}

void WritePictureFile(const std::filesystem::path& file, const FilePicture& picture) {
  const auto output = OIIO::ImageOutput::create(file.string());
  ASSERT_TRUE(output != nullptr && output->open(file.string(), picture.spec)) << file;
  if (IsFloat(picture.spec.format)) {
    EXPECT_TRUE(output->write_image(OIIO::TypeDesc::FLOAT, picture.floats.data()));
  } else if (picture.spec.format == OIIO::TypeDesc::UINT8) {
    EXPECT_TRUE(output->write_image(OIIO::TypeDesc::UINT8, Bytes(picture.samples).data()));
  } else {
    EXPECT_TRUE(output->write_image(OIIO::TypeDesc::UINT16, picture.samples.data()));
  }
  EXPECT_TRUE(output->close());
}

FilePicture ReadPictureFile(const std::filesystem::path& file) {
  FilePicture picture;
  OIIO::ImageSpec wishes;
  wishes.attribute("oiio:UnassociatedAlpha", 1);
  const auto input = OIIO::ImageInput::open(file.string(), &wishes);
  EXPECT_NE(input, nullptr) << file << OIIO::geterror();
  if (input == nullptr) return picture;
  picture.spec = input->spec();
  const std::size_t size = static_cast<std::size_t>(picture.spec.image_pixels()) *
                           static_cast<std::size_t>(picture.spec.nchannels);
  const int channels = picture.spec.nchannels;
  if (IsFloat(picture.spec.format)) {
    picture.floats.resize(size);
    EXPECT_TRUE(input->read_image(0, 0, 0, channels, OIIO::TypeDesc::FLOAT, picture.floats.data()));
  } else if (picture.spec.format == OIIO::TypeDesc::UINT8) {
    std::vector<uint8_t> bytes(size);
    EXPECT_TRUE(input->read_image(0, 0, 0, channels, OIIO::TypeDesc::UINT8, bytes.data()));
    picture.samples.assign(bytes.begin(), bytes.end());
  } else {
    picture.samples.resize(size);
    EXPECT_TRUE(
        input->read_image(0, 0, 0, channels, OIIO::TypeDesc::UINT16, picture.samples.data()));
  }
  return picture;
}

std::vector<FilePicture> ReadPages(const std::filesystem::path& file) {
  std::vector<FilePicture> pages;
  OIIO::ImageSpec wishes;
  wishes.attribute("oiio:UnassociatedAlpha", 1);
  const auto input = OIIO::ImageInput::open(file.string(), &wishes);
  EXPECT_NE(input, nullptr) << OIIO::geterror();
  for (int page = 0; input != nullptr && input->seek_subimage(page, 0); ++page) {
    FilePicture picture;
    picture.spec = input->spec();
    picture.samples.resize(static_cast<std::size_t>(picture.spec.image_pixels()) *
                           static_cast<std::size_t>(picture.spec.nchannels));
    EXPECT_TRUE(input->read_image(page, 0, 0, picture.spec.nchannels, OIIO::TypeDesc::UINT16,
                                  picture.samples.data()));
    pages.push_back(picture);
  }
  return pages;
}

FilePicture Viewed(const FilePicture& stored, int orientation) {
  enum Side { kTop, kRight, kBottom, kLeft };
  struct Sides {
    Side row;
    Side column;
  };
  constexpr std::array<Sides, 9> kSides = {{{kTop, kLeft},
                                            {kTop, kLeft},
                                            {kTop, kRight},
                                            {kBottom, kRight},
                                            {kBottom, kLeft},
                                            {kLeft, kTop},
                                            {kRight, kTop},
                                            {kRight, kBottom},
                                            {kLeft, kBottom}}};
  const Sides& sides = kSides.at(static_cast<std::size_t>(orientation));
  FilePicture viewed = stored;
  if (sides.row == kLeft || sides.row == kRight) {
    std::swap(viewed.spec.width, viewed.spec.height);
    std::swap(viewed.spec.full_width, viewed.spec.full_height);
  }
  viewed.spec.erase_attribute("Orientation");
  for (int row = 0; row < stored.spec.height; ++row) {
    for (int column = 0; column < stored.spec.width; ++column) {
      int x = 0;
      int y = 0;
      for (const auto& [side, distance] : {std::pair{sides.row, row}, {sides.column, column}}) {
        if (side == kLeft) x = distance;
        if (side == kRight) x = viewed.spec.width - 1 - distance;
        if (side == kTop) y = distance;
        if (side == kBottom) y = viewed.spec.height - 1 - distance;
      }
      for (int channel = 0; channel < stored.spec.nchannels; ++channel) {
        const auto from = static_cast<std::size_t>(
            (row * stored.spec.width + column) * stored.spec.nchannels + channel);
        const auto to =
            static_cast<std::size_t>((y * viewed.spec.width + x) * stored.spec.nchannels + channel);
        if (!stored.samples.empty()) viewed.samples[to] = stored.samples[from];
        if (!stored.floats.empty()) viewed.floats[to] = stored.floats[from];
      }
    }
  }
  return viewed;
}

}  // namespace vitrell::media
