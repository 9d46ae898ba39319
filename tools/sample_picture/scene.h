// The layers of the sample picture's night street, from back to front.
#ifndef VITRELL_TOOLS_SAMPLE_PICTURE_SCENE_H_
#define VITRELL_TOOLS_SAMPLE_PICTURE_SCENE_H_

#include <array>
#include <cstdint>
#include <string_view>

#include "canvas.h"

namespace vitrell::sample {

inline constexpr double kGround = 792;   // Where the houses stand.
inline constexpr double kKerb = 838;     // Where the pavement ends and the road begins.
inline constexpr double kShopTop = 600;  // The upper edge of the ground floors.
inline constexpr double kLampTop = 470;  // The lanterns' height.
inline constexpr std::array<double, 3> kLamps = {318, 846, 1566};

inline constexpr Rgb kLampLight = {1.0, 0.62, 0.26};

struct House {
  Box wall;
  Rgb colour;
  bool brick = false;
  int columns = 3;
  int rows = 3;
  std::uint32_t seed = 0;
};

inline constexpr std::array<House, 6> kHouses = {{
    {{-40, 288, 322, kGround}, {0.30, 0.12, 0.08}, true, 4, 3, 11},
    {{322, 206, 690, kGround}, {0.10, 0.20, 0.22}, false, 4, 4, 23},
    {{690, 372, 838, kGround}, {0.24, 0.20, 0.15}, true, 2, 1, 31},
    {{838, 150, 1226, kGround}, {0.28, 0.23, 0.17}, false, 5, 5, 47},
    {{1226, 300, 1560, kGround}, {0.34, 0.10, 0.08}, true, 4, 3, 59},
    {{1560, 238, 1960, kGround}, {0.13, 0.12, 0.24}, false, 5, 4, 61},
}};

// The archway through the narrow house; nothing is behind it, not even the sky.
inline constexpr Box kArch = {724, 650, 804, kGround};

// Swings between 1 (at 0 and every whole number) and -1, smoothly.
inline double Swing(double turns) {
  const double part = turns - std::floor(turns);
  return 2 * Smooth(0, 1, std::abs(2 * part - 1)) - 1;
}

// Light that lamps, sky and shops cast on a surface at this position.
Rgb LightOn(double x, double y);

// Sky, moon, stars and the distant houses. The sky's alpha falls to 0 towards the top.
void DrawSky(Canvas& canvas);
void DrawHouses(Canvas& canvas);
void DrawShops(Canvas& canvas);
// The signs and their lettering.
void DrawSigns(Canvas& canvas);
void DrawPavement(Canvas& canvas);
// What moves takes the time in seconds; at 0 the scene is the sample picture.
void DrawPeople(Canvas& canvas, double time);
// Street lamps, and the bulbs on wires across the street, which swing in the wind.
void DrawLamps(Canvas& canvas);
void DrawBulbs(Canvas& canvas, double time);
// A car that drives past along the kerb. It is out of sight at 0 seconds.
void DrawCar(Canvas& canvas, double time);
// The wet road, reflecting whatever was drawn above it.
void DrawRoad(Canvas& canvas);
// The wire fence in front.
void DrawFence(Canvas& canvas);
// Makes the archway transparent, with haze, and the shop windows partly so.
void CutAlpha(Canvas& canvas);

}  // namespace vitrell::sample

#endif  // VITRELL_TOOLS_SAMPLE_PICTURE_SCENE_H_
