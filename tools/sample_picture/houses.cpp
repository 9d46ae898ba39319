// The houses' walls, roofs and upper windows.
#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

// Bricks in running bond, each with its own tone, and pale joints.
Rgb BrickTone(Rgb colour, double x, double y, std::uint32_t seed) {
  constexpr double kCourse = 8.0;
  constexpr double kLength = 23.0;
  const double course = std::floor(y / kCourse);
  const auto row = static_cast<std::int32_t>(course);
  const double along = x / kLength + (row % 2 != 0 ? 0.5 : 0.0);
  const auto column = static_cast<std::int32_t>(std::floor(along));
  const double inX = (along - std::floor(along)) * kLength;
  const double inY = y - course * kCourse;
  const double joint = Smooth(0.3, 1.5, inX) * Smooth(0.3, 1.5, inY);
  const double tone = 0.68 + 0.62 * HashUnit(column, row, seed);
  return Mix(Rgb{0.20, 0.17, 0.15}, colour * tone, joint);
}

Rgb PlasterTone(Rgb colour, double x, double y, std::uint32_t seed) {
  const double stain = 0.72 + 0.42 * Clouds(x / 46, y / 120, seed);
  const double grain = 0.95 + 0.1 * Noise(x / 1.6, y / 1.6, seed + 9);
  return colour * (stain * grain);
}

void DrawWall(Canvas& canvas, const House& house) {
  const Box wall = house.wall;
  canvas.Fill(
      wall, [&](double x, double y) { return BoxDistance(wall, x, y); },
      [&](double x, double y) {
        const Rgb tone = house.brick ? BrickTone(house.colour, x, y, house.seed)
                                     : PlasterTone(house.colour, x, y, house.seed);
        const double edge = Smooth(0, 26, std::min(x - wall.x0, wall.x1 - x));
        return tone * LightOn(x, y) * Mix(0.55, 1.0, edge);
      });
}

void DrawRoof(Canvas& canvas, const House& house) {
  const Box wall = house.wall;
  Random random(house.seed + 7);
  for (int i = 0; i < 3; ++i) {
    const double x = random.Between(wall.x0 + 20, wall.x1 - 50);
    const double top = wall.y0 - random.Between(30, 58);
    canvas.FillBox({x, top, x + 24, wall.y0}, house.colour * 0.16);
    canvas.FillBox({x - 3, top, x + 27, top + 6}, house.colour * 0.3);
    canvas.FillBox({x + 5, top - 9, x + 10, top}, {0.03, 0.02, 0.02});
    canvas.FillBox({x + 14, top - 12, x + 19, top}, {0.03, 0.02, 0.02});
  }
  // A cornice of three mouldings with brackets, lit from below.
  canvas.FillBox({wall.x0 - 6, wall.y0 - 12, wall.x1 + 6, wall.y0 - 5}, house.colour * 0.55);
  canvas.FillBox({wall.x0 - 3, wall.y0 - 5, wall.x1 + 3, wall.y0 + 5}, house.colour * 0.32);
  canvas.FillBox({wall.x0, wall.y0 + 5, wall.x1, wall.y0 + 9}, house.colour * 0.12);
  for (double x = wall.x0 + 8; x < wall.x1 - 8; x += 16) {
    canvas.FillBox({x, wall.y0 + 5, x + 6, wall.y0 + 15}, house.colour * 0.42);
  }
}

// The room behind a lit window: a lamp's gradient, curtains, sometimes a person.
void DrawRoom(Canvas& canvas, Box pane, Random& random) {
  const bool cold = random.Chance(0.16);
  const Rgb light = cold ? Rgb{0.35, 0.62, 1.05}
                         : Mix(Rgb{1.5, 0.66, 0.19}, Rgb{1.35, 0.86, 0.38}, random.Unit());
  const double strength = random.Between(0.30, 0.85);
  const double lampX = random.Between(pane.x0, pane.x1);
  const double height = pane.y1 - pane.y0;
  canvas.Fill(
      pane, [&](double x, double y) { return BoxDistance(pane, x, y); },
      [&](double x, double y) {
        const double dx = (x - lampX) / height;
        const double dy = (y - pane.y0) / height - 0.25;
        return light * (strength * (0.24 + 1.25 / (1 + 6 * (dx * dx + dy * dy))));
      });
  if (random.Chance(0.55)) {
    const double part = (pane.x1 - pane.x0) * random.Between(0.16, 0.3);
    for (double x = 0; x < part; x += 3) {
      const Rgb fold = light * (strength * (0.22 + 0.1 * ((static_cast<int>(x / 3)) % 2)));
      canvas.FillBox({pane.x0 + x, pane.y0, pane.x0 + x + 3, pane.y1}, fold);
      canvas.FillBox({pane.x1 - x - 3, pane.y0, pane.x1 - x, pane.y1}, fold);
    }
  }
  if (random.Chance(0.22)) {
    const double x = random.Between(pane.x0 + 12, pane.x1 - 12);
    const Rgb dark{0.03, 0.018, 0.012};
    canvas.FillDisc(x, pane.y1 - 26, 5.5, dark);
    canvas.Fill(
        {x - 11, pane.y1 - 20, x + 11, pane.y1 - 1},
        [=](double px, double py) {
          return RoundBoxDistance({x - 11, pane.y1 - 20, x + 11, pane.y1 + 20}, 9, px, py);
        },
        [=](double, double) { return dark; });
  }
}

void DrawWindow(Canvas& canvas, Box pane, const House& house, Random& random) {
  const Rgb frame =
      (house.colour * 0.5 + Rgb{0.16, 0.15, 0.14}) * LightOn((pane.x0 + pane.x1) / 2, pane.y1);
  canvas.FillBox(Grow(pane, 5), frame);
  canvas.FillBox({pane.x0 - 9, pane.y1 + 4, pane.x1 + 9, pane.y1 + 9}, frame * 1.5);
  canvas.FillBox({pane.x0 - 8, pane.y0 - 12, pane.x1 + 8, pane.y0 - 6}, frame * 1.2);
  if (random.Chance(0.56)) {
    DrawRoom(canvas, pane, random);
  } else {
    const double shine = random.Between(0.5, 1.2);
    canvas.Fill(
        pane, [&](double x, double y) { return BoxDistance(pane, x, y); },
        [&](double x, double y) {
          const double streak = Smooth(0.5, 0.62, Noise((x + y) / 21, 0.5, house.seed));
          return Rgb{0.012, 0.018, 0.045} * (shine * (1 + 1.4 * streak)) +
                 Rgb{0.03, 0.012, 0.012} * Clamp01((y - pane.y0) / 70);
        });
  }
  const double middle = (pane.x0 + pane.x1) / 2;
  const double bar = pane.y0 + (pane.y1 - pane.y0) * 0.36;
  canvas.FillBox({middle - 1.4, pane.y0, middle + 1.4, pane.y1}, frame * 0.7);
  canvas.FillBox({pane.x0, bar - 1.2, pane.x1, bar + 1.2}, frame * 0.7);
}

}  // namespace

Rgb LightOn(double x, double y) {
  Rgb light = Rgb{0.085, 0.10, 0.19} * Mix(0.75, 1.0, Clamp01((620 - y) / 400));
  for (const double lamp : kLamps) {
    const double dx = (x - lamp) / 150;
    const double dy = (y - kLampTop) / 170;
    light = light + kLampLight * (1.15 / (1 + 1.4 * (dx * dx + dy * dy)));
  }
  return light + Rgb{0.30, 0.17, 0.10} * Smooth(430, 600, y);
}

void DrawHouses(Canvas& canvas) {
  for (const House& house : kHouses) {
    DrawRoof(canvas, house);
    DrawWall(canvas, house);
    Random random(house.seed);
    const double floorHeight = (kShopTop - house.wall.y0 - 26) / house.rows;
    const double bay = (house.wall.x1 - house.wall.x0 - 24) / house.columns;
    for (int row = 0; row < house.rows; ++row) {
      for (int column = 0; column < house.columns; ++column) {
        const double x = house.wall.x0 + 12 + bay * (column + 0.5);
        const double y = house.wall.y0 + 26 + floorHeight * row;
        const double half = std::min(25.0, bay * 0.3);
        DrawWindow(canvas, {x - half, y + floorHeight * 0.16, x + half, y + floorHeight * 0.8},
                   house, random);
      }
    }
  }
}

}  // namespace vitrell::sample
