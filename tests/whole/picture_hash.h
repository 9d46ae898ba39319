// One hash over many images, by which platforms are compared.
#ifndef VITRELL_WHOLE_PICTURE_HASH_H_
#define VITRELL_WHOLE_PICTURE_HASH_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::whole {

// FNV-1a over numbers of 32 bits.
class PictureHash {
 public:
  void Add(std::uint32_t number) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
      value_ = (value_ ^ ((number >> shift) & 0xFFU)) * 0x100000001B3ULL;
    }
  }
  // Size, depth and all channels.
  void Add(const literal::World& world) {
    Add(static_cast<std::uint32_t>(world.width));
    Add(static_cast<std::uint32_t>(world.height));
    Add(world.deep ? 16U : 8U);
    for (const literal::Pixel& pixel : world.pixels) {
      for (const std::uint16_t channel : pixel.channel) {
        Add(channel);
      }
    }
  }
  std::uint64_t Value() const { return value_; }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325ULL;
};

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_PICTURE_HASH_H_
