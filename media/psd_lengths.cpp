// Sections of a PSD file, in the order of its format. All numbers are big-endian.
#include "media/psd_lengths.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace vitrell::media {
namespace {

constexpr std::size_t kVersionAt = 4;
constexpr std::size_t kHeaderBytes = 26;
constexpr std::int64_t kLargestSide = 300000;

// Reads from the front of a section. What lies beyond its end reads as zero, and IsSound tells.
class Section {
 public:
  explicit Section(std::string_view bytes) : bytes_(bytes) {}

  bool IsSound() const { return sound_; }
  bool IsAtEnd() const { return bytes_.empty() || !sound_; }

  std::uint64_t Number(std::size_t size) {
    std::uint64_t number = 0;
    for (const char byte : Take(size).bytes_)
      number = number << 8U | static_cast<std::uint8_t>(byte);
    return number;
  }
  std::int64_t Signed32() { return static_cast<std::int32_t>(Number(4)); }

  Section Take(std::uint64_t size) {
    if (size > bytes_.size()) {
      sound_ = false;
      return Section({});
    }
    const Section taken(bytes_.substr(0, size));
    bytes_.remove_prefix(size);
    return taken;
  }

  std::uint64_t Left() const { return bytes_.size(); }

 private:
  std::string_view bytes_;
  bool sound_ = true;
};

bool HasSoundResources(Section section) {
  constexpr std::size_t kSmallestBlock = 12;
  while (section.Left() >= kSmallestBlock) {
    section.Take(4 + 2);  // signature, number
    const std::uint64_t name = section.Number(1);
    section.Take(name + (name + 1) % 2);
    const std::uint64_t size = section.Number(4);
    section.Take(size);
    if (!section.IsSound()) return false;
    if (size % 2 != 0 && !section.IsAtEnd()) section.Take(1);
  }
  return true;
}

// One record; adds to `pixels` what its channels take behind the last record.
bool HasSoundLayer(Section& layers, std::size_t lengthBytes, std::uint64_t& pixels) {
  const std::int64_t top = layers.Signed32();
  const std::int64_t left = layers.Signed32();
  const std::int64_t height = layers.Signed32() - top;
  const std::int64_t width = layers.Signed32() - left;
  if (std::abs(height) > kLargestSide || std::abs(width) > kLargestSide) return false;
  for (std::uint64_t channels = layers.Number(2); channels > 0 && layers.IsSound(); --channels) {
    layers.Take(2);
    const std::uint64_t size = layers.Number(lengthBytes);
    if (size > layers.Left()) return false;
    pixels += size;
  }
  layers.Take(4 + 4 + 4);  // signature, blend mode, opacity and flags
  layers.Take(layers.Number(4));
  return layers.IsSound();
}

bool HasSoundLayers(Section section, std::size_t lengthBytes) {
  if (section.IsAtEnd()) return true;
  Section layers = section.Take(section.Number(lengthBytes));
  if (!section.IsSound()) return false;
  if (layers.IsAtEnd()) return true;
  const auto count = static_cast<std::int16_t>(layers.Number(2));
  std::uint64_t pixels = 0;
  for (int layer = 0; layer < std::abs(count); ++layer) {
    if (!HasSoundLayer(layers, lengthBytes, pixels)) return false;
  }
  return pixels <= layers.Left();
}

}  // namespace

bool HasSoundPsdLengths(std::string_view file) {
  Section whole(file);
  Section header = whole.Take(kHeaderBytes);
  header.Take(kVersionAt);
  const std::size_t lengthBytes = header.Number(2) == 2 ? 8 : 4;
  whole.Take(whole.Number(4));  // palette
  const Section resources = whole.Take(whole.Number(4));
  const Section layers = whole.Take(whole.Number(lengthBytes));
  return whole.IsSound() && HasSoundResources(resources) && HasSoundLayers(layers, lengthBytes);
}

}  // namespace vitrell::media
