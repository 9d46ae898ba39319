// Small pictures and masks for tests of the literal versions.
#ifndef VITRELL_LITERAL_PICTURE_H_
#define VITRELL_LITERAL_PICTURE_H_

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "literal/base/types.h"

namespace vitrell::literal {

inline constexpr double kPi = 3.141592653589793;

inline const Maths kMaths = {std::sin, std::cos, std::tan, std::atan, std::sqrt, std::pow};

inline Pixel MakePixel(int alpha, int red, int green, int blue) {
  Pixel pixel;
  pixel.channel[0] = static_cast<std::uint16_t>(alpha);
  pixel.channel[1] = static_cast<std::uint16_t>(red);
  pixel.channel[2] = static_cast<std::uint16_t>(green);
  pixel.channel[3] = static_cast<std::uint16_t>(blue);
  return pixel;
}

inline Pixel Gray(int value) { return MakePixel(255, value, value, value); }

// 8-bit, with its extent at (0, 0).
inline World MakeWorld(int width, int height, Pixel fill = Pixel{}) {
  World world;
  world.width = width;
  world.height = height;
  world.extent = {0, 0, width, height};
  world.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), fill);
  return world;
}

// Every pixel (white, red(row, column), 0, 0).
inline World MakeWorld(int width, int height, bool deep,
                       std::uint16_t (*red)(std::int32_t row, std::int32_t column)) {
  World world = MakeWorld(width, height);
  world.deep = deep;
  for (std::int32_t row = 0; row < height; ++row) {
    for (std::int32_t column = 0; column < width; ++column) {
      world.At(row, column) = MakePixel(deep ? 32768 : 255, red(row, column), 0, 0);
    }
  }
  return world;
}

inline std::uint16_t ByPosition(std::int32_t row, std::int32_t column) {
  return static_cast<std::uint16_t>(row * 10 + column);
}

inline World GrayRow(const std::vector<int>& values) {
  World world = MakeWorld(static_cast<int>(values.size()), 1);
  for (std::size_t i = 0; i < values.size(); ++i) world.pixels[i] = Gray(values[i]);
  return world;
}

// A mask of `value` everywhere.
inline Mask MakeMask(const World& world, double value) {
  return {world.extent, std::vector<double>(world.pixels.size(), value)};
}

inline Mask UniformMask(std::int32_t width, std::int32_t height, double value) {
  return MakeMask(MakeWorld(width, height), value);
}

inline std::string Text(const Pixel& p) {
  return std::to_string(p.channel[0]) + " " + std::to_string(p.channel[1]) + " " +
         std::to_string(p.channel[2]) + " " + std::to_string(p.channel[3]);
}

inline std::vector<std::string> Texts(const World& world) {
  std::vector<std::string> texts;
  for (const Pixel& pixel : world.pixels) texts.push_back(Text(pixel));
  return texts;
}

inline std::vector<int> Reds(const World& world) {
  std::vector<int> reds;
  for (const Pixel& pixel : world.pixels) reds.push_back(pixel.channel[1]);
  return reds;
}

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_PICTURE_H_
