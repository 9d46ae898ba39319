// Sky, moon, stars and the far side of the town.
#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

Rgb SkyColour(double x, double y) {
  constexpr Rgb kZenith = {0.006, 0.010, 0.036};
  constexpr Rgb kMiddle = {0.020, 0.026, 0.095};
  constexpr Rgb kHorizon = {0.23, 0.085, 0.105};
  const double down = Clamp01(y / 560);
  const Rgb clear = down < 0.45 ? Mix(kZenith, kMiddle, down / 0.45)
                                : Mix(kMiddle, kHorizon, Smooth(0.45, 1.05, down));
  const double cloud = Smooth(0.46, 0.82, Clouds(x / 330 + y / 900, y / 92, 5));
  return Mix(clear, clear * 1.7 + Rgb{0.020, 0.014, 0.026}, cloud);
}

void DrawMoon(Canvas& canvas, double x, double y, double radius) {
  canvas.Glow(x, y, radius * 8, {0.12, 0.13, 0.16});
  const auto disc = [=](double px, double py) {
    return CapsuleDistance(x, y, x, y, radius, px, py);
  };
  const Box box{x - radius, y - radius, x + radius, y + radius};
  canvas.Fill(box, disc, [=](double px, double py) {
    const double seas = Clouds((px - x) / 15 + 9, (py - y) / 15, 77);
    return Rgb{1.5, 1.45, 1.3} * Mix(1.0, 0.55, Smooth(0.42, 0.7, seas));
  });
}

void DrawStars(Canvas& canvas) {
  Random random(3);
  for (int i = 0; i < 420; ++i) {
    const double x = random.Between(0, 1920);
    const double y = random.Unit() * random.Unit() * 420;
    const double light = 0.10 + 1.3 * random.Unit() * random.Unit() * random.Unit();
    const double warm = random.Unit();
    const Rgb colour = Mix(Rgb{0.75, 0.85, 1.2}, Rgb{1.2, 0.95, 0.7}, warm) * light;
    canvas.Line(x, y, x, y, 0.35 + 0.5 * light, colour);
    if (light > 0.75) canvas.Glow(x, y, 13, colour * 0.4);
  }
}

// A row of distant houses with lit windows, in haze.
void DrawFarHouses(Canvas& canvas, double base, double haze, std::uint32_t seed) {
  Random random(seed);
  double x = -30;
  while (x < 1950) {
    const double width = random.Between(46, 118);
    const double top = base - random.Between(0, 130);
    const Rgb wall = Mix(Rgb{0.010, 0.012, 0.030}, Rgb{0.10, 0.05, 0.085}, haze);
    canvas.FillBox({x, top, x + width, 640}, wall);
    if (random.Chance(0.4)) {
      const double mast = x + width * random.Between(0.3, 0.7);
      canvas.Line(mast, top, mast, top - random.Between(20, 58), 0.9, wall);
    }
    for (double wy = top + 10; wy < 600; wy += 13) {
      for (double wx = x + 7; wx < x + width - 8; wx += 10) {
        if (!random.Chance(0.24)) continue;
        const Rgb light = Mix(Rgb{0.95, 0.55, 0.2}, Rgb{0.4, 0.6, 0.95}, random.Unit() * 0.6);
        canvas.FillBox({wx, wy, wx + 4, wy + 6}, light * (0.62 * (1 - haze)));
      }
    }
    x += width - 3;
  }
}

}  // namespace

void DrawSky(Canvas& canvas) {
  canvas.ForEach({-1e6, -1e6, 1e6, 1e6}, [](double x, double y, CanvasPixel& pixel) {
    pixel.light = SkyColour(x, y);
    const double edge = y + 46 * Clouds(x / 260, y / 120, 41) - 0.035 * (x - 960);
    pixel.alpha = Smooth(48, 205, edge);
  });
  DrawStars(canvas);
  DrawMoon(canvas, 1408, 138, 34);
  DrawFarHouses(canvas, 400, 0.8, 101);
  DrawFarHouses(canvas, 455, 0.35, 211);
}

}  // namespace vitrell::sample
