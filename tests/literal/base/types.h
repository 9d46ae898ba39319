// Records that the literal, slow versions of the stages share.
//
// These versions follow the effect's definition step by step, share no code with src/ and judge the
// shipped stages bit for bit. They are never optimised.
#ifndef VITRELL_LITERAL_BASE_TYPES_H_
#define VITRELL_LITERAL_BASE_TYPES_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vitrell::literal {

struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;
};

// One pixel of either depth: alpha, red, green, blue. 8-bit pictures use the low byte only.
struct Pixel {
  std::uint16_t channel[4] = {0, 0, 0, 0};
};

// A picture without padding: row r, column c at pixels[r * width + c].
struct World {
  bool deep = false;  // 16-bit channels (white is 32768) instead of 8-bit ones.
  std::int32_t width = 0;
  std::int32_t height = 0;
  Rect extent;  // The world's extent hint; its left and top are the origin of layer coordinates.
  std::vector<Pixel> pixels;

  bool HasData() const { return !pixels.empty(); }
  Pixel& At(std::int32_t row, std::int32_t column) {
    return pixels.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                     static_cast<std::size_t>(column));
  }
  const Pixel& At(std::int32_t row, std::int32_t column) const {
    return const_cast<World*>(this)->At(row, column);
  }
};

// The settings of one render, converted from the host's parameters.
struct Settings {
  std::int32_t lensType = 2;
  const World* customLayer = nullptr;
  std::int32_t placement = 1;
  std::uint8_t invertAlpha = 0;
  float feather = 0;
  std::int32_t positionX = 0, positionY = 0;
  float scaleWidth = 1, scaleHeight = 1;
  double rotation = 0;
  std::uint8_t fastBlurVisible = 0;
  float fastBlurAmount = 0;
  std::uint8_t fastBlurUseLensAsBlurMap = 0;
  std::uint8_t realisticVisible = 0;
  float realisticAmount = 0;
  std::int32_t irisSides = 3;
  float irisRoundness = 0;
  float irisAspectRatio = 1;
  double irisRotation = 0;
  std::uint8_t realisticUseLensAsBlurMap = 0;
  std::uint8_t opticalVisible = 0;
  float opticalAmount = 0;
  std::uint8_t opticalCenterOfLens = 0;
  std::int32_t opticalCenterX = 0, opticalCenterY = 0;
  std::uint8_t trailVisible = 0;
  float trailAmount = 0;
  std::uint8_t trailCenterOfLens = 0;
  std::int32_t trailCenterX = 0, trailCenterY = 0;
  std::uint8_t directionalVisible = 0;
  float directionalAmount = 0;
  double directionalAngle = 0;
  std::uint8_t lightnessVisible = 0;
  float lightnessAmount = 0;
  std::uint8_t colorVisible = 0;
  float colorOpacity = 0;
  std::uint8_t colorValue[4] = {255, 255, 255, 255};  // Alpha, red, green, blue.
  std::uint8_t chromaticVisible = 0;
  float chromaticRedCyan = 0, chromaticGreenMagenta = 0, chromaticBlueYellow = 0;
  float intensity = 1;
  std::int32_t mode = 1;
};

// The lens mask: one double per pixel of the output's extent rectangle, row by row.
struct Mask {
  Rect rect;
  std::vector<double> values;
};

// The maths functions that the host supplies; the same functions are given to the effect.
struct Maths {
  double (*sin)(double);
  double (*cos)(double);
  double (*tan)(double);
  double (*atan)(double);
  double (*sqrt)(double);
  double (*pow)(double, double);
};

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BASE_TYPES_H_
