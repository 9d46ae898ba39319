// Image files for the measurements: straight RGBA, row-major.
#ifndef VITRELL_BENCH_PICTURE_H_
#define VITRELL_BENCH_PICTURE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vitrell::bench {

template <typename Channel>
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<Channel> rgba;

  // Index of a pixel's first channel.
  [[nodiscard]] std::size_t At(int x, int y) const {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
            static_cast<std::size_t>(x)) *
           4;
  }
};

// Reads an image's four channels as full-range integers. Throws std::runtime_error for a file that
// cannot be read or does not have four channels.
Picture<std::uint8_t> ReadPicture8(const std::string& path);
Picture<std::uint16_t> ReadPicture16(const std::string& path);

// Throws std::runtime_error.
void WritePicture8(const std::string& path, const Picture<std::uint8_t>& picture);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_PICTURE_H_
