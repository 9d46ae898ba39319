// The sections of a PSD file: header, resources, layers, the flattened picture. All numbers are
// big-endian.
#include "media/psd_file.h"

#include <cstdint>
#include <fstream>

namespace vitrell::media {
namespace {

constexpr uint32_t kUncompressed = 0;
constexpr uint32_t kTransparency = 0xffff;  // channel -1 of a layer

void Put(std::string& bytes, uint32_t number, int size) {
  for (int i = size - 1; i >= 0; --i) bytes += static_cast<char>(number >> (8 * i) & 0xffU);
}

void PutSized(std::string& bytes, const std::string& block) {
  Put(bytes, static_cast<uint32_t>(block.size()), 4);
  bytes += block;
}

// One channel after the other.
std::string Plane(const FilePicture& picture, int channel) {
  std::string plane;
  const auto channels = static_cast<std::size_t>(picture.spec.nchannels);
  for (std::size_t i = static_cast<std::size_t>(channel); i < picture.samples.size();
       i += channels) {
    plane += static_cast<char>(picture.samples[i]);
  }
  return plane;
}

std::string Header(const OIIO::ImageSpec& canvas) {
  constexpr uint32_t kRgb = 3;
  std::string bytes = "8BPS";
  Put(bytes, 1, 2);
  bytes += std::string(6, '\0');
  Put(bytes, static_cast<uint32_t>(canvas.nchannels), 2);
  Put(bytes, static_cast<uint32_t>(canvas.height), 4);
  Put(bytes, static_cast<uint32_t>(canvas.width), 4);
  Put(bytes, 8, 2);
  Put(bytes, kRgb, 2);
  return bytes;
}

// EXIF data with a single tag, as the resource that programs keep them in.
std::string ExifResource(int orientation) {
  constexpr uint32_t kExif = 1058;
  constexpr uint32_t kOrientation = 0x0112;
  constexpr uint32_t kShort = 3;
  std::string tiff("MM\0\x2a", 4);
  Put(tiff, 8, 4);
  Put(tiff, 1, 2);
  Put(tiff, kOrientation, 2);
  Put(tiff, kShort, 2);
  Put(tiff, 1, 4);
  Put(tiff, static_cast<uint32_t>(orientation), 2);
  Put(tiff, 0, 2);
  Put(tiff, 0, 4);
  std::string resource = "8BIM";
  Put(resource, kExif, 2);
  Put(resource, 0, 2);  // no name
  PutSized(resource, tiff);
  return resource;
}

uint32_t ChannelId(const FilePicture& picture, int channel) {
  constexpr int kAlpha = 3;
  return picture.spec.nchannels > kAlpha && channel == kAlpha ? kTransparency
                                                              : static_cast<uint32_t>(channel);
}

std::string LayerRecord(const PsdLayer& layer) {
  const OIIO::ImageSpec& spec = layer.picture.spec;
  std::string bytes;
  for (const int side : {layer.y, layer.x, layer.y + spec.height, layer.x + spec.width}) {
    Put(bytes, static_cast<uint32_t>(side), 4);
  }
  Put(bytes, static_cast<uint32_t>(spec.nchannels), 2);
  for (int channel = 0; channel < spec.nchannels; ++channel) {
    Put(bytes, ChannelId(layer.picture, channel), 2);
    Put(bytes, static_cast<uint32_t>(2 + spec.width * spec.height), 4);
  }
  bytes += "8BIMnorm";
  Put(bytes, 0xff000000, 4);   // opaque, not clipped, visible
  std::string extra(8, '\0');  // no mask, no blending ranges
  std::string name(1, static_cast<char>(layer.name.size()));
  name += layer.name;
  while (name.size() % 4 != 0) name += '\0';
  PutSized(bytes, extra + name);
  return bytes;
}

std::string Layers(const std::vector<PsdLayer>& layers) {
  if (layers.empty()) return {};
  std::string info;
  Put(info, static_cast<uint32_t>(layers.size()), 2);
  for (const PsdLayer& layer : layers) info += LayerRecord(layer);
  for (const PsdLayer& layer : layers) {
    for (int channel = 0; channel < layer.picture.spec.nchannels; ++channel) {
      Put(info, kUncompressed, 2);
      info += Plane(layer.picture, channel);
    }
  }
  if (info.size() % 2 != 0) info += '\0';
  std::string section;
  PutSized(section, info);
  Put(section, 0, 4);  // no mask of them all
  return section;
}

}  // namespace

void WritePsdFile(const std::filesystem::path& file, const PsdFile& psd) {
  std::string bytes = Header(psd.flat.spec);
  PutSized(bytes, "");  // no palette
  PutSized(bytes, psd.orientation == 0 ? "" : ExifResource(psd.orientation));
  PutSized(bytes, Layers(psd.layers));
  Put(bytes, kUncompressed, 2);
  for (int channel = 0; channel < psd.flat.spec.nchannels; ++channel) {
    bytes += Plane(psd.flat, channel);
  }
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace vitrell::media
