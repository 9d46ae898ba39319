// A world with its own memory, padded rows and poisoned padding, for direct tests of the stages.
#ifndef VITRELL_TESTS_HOST_PICTURE_H_
#define VITRELL_TESTS_HOST_PICTURE_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "host/host_api.h"

namespace vitrell {

// Pixel is PF_Pixel or PF_Pixel16. The extent hint starts as the whole picture at (0, 0).
template <typename Pixel>
class Picture {
 public:
  static constexpr bool kDeep = sizeof(Pixel) == sizeof(PF_Pixel16);
  static constexpr A_long kWhite = kDeep ? PF_MAX_CHAN16 : PF_MAX_CHAN8;

  Picture(A_long width, A_long height, A_long paddingBytes = 8)
      : rowBytes_(width * static_cast<A_long>(sizeof(Pixel)) + paddingBytes),
        memory_(static_cast<std::size_t>(rowBytes_ * (height > 0 ? height : 1)), kPoison) {
    def_.world_flags = kDeep ? PF_WorldFlag_DEEP : 0;
    def_.data = memory_.data();
    def_.rowbytes = rowBytes_;
    def_.width = width;
    def_.height = height;
    def_.extent_hint = {0, 0, width, height};
  }
  Picture(const Picture& other)
      : def_(other.def_), rowBytes_(other.rowBytes_), memory_(other.memory_) {
    def_.data = memory_.data();
  }
  Picture& operator=(const Picture&) = delete;

  PF_LayerDef* get() { return &def_; }
  const PF_LayerDef* get() const { return &def_; }

  // The pixel stored at this place of the memory, whatever the extent hint says.
  Pixel& At(A_long x, A_long y) {
    return *reinterpret_cast<Pixel*>(memory_.data() + y * rowBytes_ + x * kPixelBytes);
  }
  const Pixel& At(A_long x, A_long y) const { return const_cast<Picture*>(this)->At(x, y); }

  // Every channel at random from 0 to limit.
  Picture& FillNoise(std::uint64_t seed, A_long limit = kWhite) {
    std::mt19937_64 random(seed);
    const auto channel = [&] {
      using Channel = decltype(Pixel::red);
      return static_cast<Channel>(random() % (static_cast<std::uint64_t>(limit) + 1));
    };
    for (A_long y = 0; y < def_.height; ++y) {
      for (A_long x = 0; x < def_.width; ++x) {
        At(x, y) = {channel(), channel(), channel(), channel()};
      }
    }
    return *this;
  }
  // Every channel at random over all that it can hold.
  Picture& FillAnything(std::uint64_t seed) {
    return FillNoise(seed, std::numeric_limits<decltype(Pixel::red)>::max());
  }
  Picture& Fill(Pixel pixel) {
    for (A_long y = 0; y < def_.height; ++y) {
      for (A_long x = 0; x < def_.width; ++x) {
        At(x, y) = pixel;
      }
    }
    return *this;
  }

  // True if no byte outside the pixels has been written.
  bool IsPaddingIntact() const {
    for (A_long y = 0; y < def_.height; ++y) {
      const char* const row = memory_.data() + std::ptrdiff_t{y} * rowBytes_;
      if (!std::all_of(row + std::ptrdiff_t{def_.width} * kPixelBytes, row + rowBytes_,
                       [](char byte) { return byte == kPoison; })) {
        return false;
      }
    }
    return true;
  }
  // All bytes, the padding included, so that writes beside the pixels show.
  bool SameBytes(const Picture& other) const { return memory_ == other.memory_; }

 private:
  static constexpr A_long kPixelBytes = sizeof(Pixel);
  static constexpr char kPoison = 0x5A;

  PF_LayerDef def_ = {};
  A_long rowBytes_;
  std::vector<char> memory_;
};

}  // namespace vitrell

inline bool operator==(const PF_Pixel& a, const PF_Pixel& b) {
  return std::memcmp(&a, &b, sizeof(a)) == 0;
}
inline bool operator==(const PF_Pixel16& a, const PF_Pixel16& b) {
  return std::memcmp(&a, &b, sizeof(a)) == 0;
}

#endif  // VITRELL_TESTS_HOST_PICTURE_H_
