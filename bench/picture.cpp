// Image files for the measurements: straight RGBA, row-major.
#include "bench/picture.h"

#include <OpenImageIO/imageio.h>

#include <memory>
#include <stdexcept>

namespace vitrell::bench {
namespace {

template <typename Channel>
Picture<Channel> Read(const std::string& path, OIIO::TypeDesc type) {
  OIIO::ImageSpec wanted;
  wanted.attribute("oiio:UnassociatedAlpha", 1);
  const std::unique_ptr<OIIO::ImageInput> input = OIIO::ImageInput::open(path, &wanted);
  if (!input) throw std::runtime_error(path + ": " + OIIO::geterror());
  const OIIO::ImageSpec& form = input->spec();
  if (form.nchannels != 4) throw std::runtime_error(path + ": four channels are needed");
  Picture<Channel> picture{form.width, form.height, {}};
  picture.rgba.resize(picture.At(0, form.height));
  if (!input->read_image(0, 0, 0, form.nchannels, type, picture.rgba.data())) {
    throw std::runtime_error(path + ": " + input->geterror());
  }
  return picture;
}

}  // namespace

Picture<std::uint8_t> ReadPicture8(const std::string& path) {
  return Read<std::uint8_t>(path, OIIO::TypeDesc::UINT8);
}

Picture<std::uint16_t> ReadPicture16(const std::string& path) {
  return Read<std::uint16_t>(path, OIIO::TypeDesc::UINT16);
}

void WritePicture8(const std::string& path, const Picture<std::uint8_t>& picture) {
  OIIO::ImageSpec form(picture.width, picture.height, 4, OIIO::TypeDesc::UINT8);
  form.attribute("oiio:UnassociatedAlpha", 1);
  const std::unique_ptr<OIIO::ImageOutput> output = OIIO::ImageOutput::create(path);
  if (!output) throw std::runtime_error(path + ": " + OIIO::geterror());
  if (!output->open(path, form) ||
      !output->write_image(OIIO::TypeDesc::UINT8, picture.rgba.data()) || !output->close()) {
    throw std::runtime_error(path + ": " + output->geterror());
  }
}

}  // namespace vitrell::bench
