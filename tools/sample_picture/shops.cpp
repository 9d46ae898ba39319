// The ground floors: shop windows and their displays, doors and awnings.
#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

constexpr double kSill = 752;
constexpr double kLintel = 655;

void DrawFront(Canvas& canvas, Box front, Rgb colour) {
  canvas.Fill(
      front, [&](double x, double y) { return BoxDistance(front, x, y); },
      [&](double x, double y) {
        const double panel = Smooth(0, 3, std::abs(y - kSill - 22));
        return colour * LightOn(x, y) * Mix(0.5, 1.0, panel);
      });
}

// A lit shop window: light from above, a back wall, a floor.
void DrawGlass(Canvas& canvas, Box pane, Rgb light) {
  canvas.FillBox(Grow(pane, 4), {0.05, 0.035, 0.025});
  canvas.Fill(
      pane, [&](double x, double y) { return BoxDistance(pane, x, y); },
      [&](double x, double y) {
        const double down = (y - pane.y0) / (pane.y1 - pane.y0);
        const double across = (x - pane.x0) / (pane.x1 - pane.x0) - 0.5;
        const double spot = 1 / (1 + 3 * down * down + 2.2 * across * across);
        return light * (0.30 + 1.15 * spot) * (down > 0.86 ? 0.55 : 1.0);
      });
}

void DrawDoor(Canvas& canvas, double x, Rgb colour, Rgb light) {
  canvas.FillBox({x - 26, kLintel - 6, x + 26, kGround}, {0.03, 0.022, 0.018});
  canvas.FillBox({x - 22, kLintel - 2, x + 22, kGround}, colour);
  DrawGlass(canvas, {x - 15, kLintel + 8, x + 15, kGround - 34}, light);
  canvas.FillBox({x - 0.8, kLintel + 8, x + 0.8, kGround - 34}, colour);
  canvas.Line(x + 18, kGround - 58, x + 18, kGround - 44, 1.6, {1.1, 0.8, 0.35});
}

void DrawBooks(Canvas& canvas, Box pane) {
  Random random(801);
  for (double shelf = pane.y0 + 30; shelf < pane.y1; shelf += 30) {
    canvas.FillBox({pane.x0 + 5, shelf, pane.x1 - 5, shelf + 2.5}, {0.16, 0.08, 0.035});
    double x = pane.x0 + 8;
    while (x < pane.x1 - 14) {
      const double thick = random.Between(3, 7.5);
      const double tall = random.Between(13, 22);
      const Rgb cover = Rgb{random.Unit(), random.Unit() * 0.8, random.Unit() * 0.8} * 0.7;
      canvas.FillBox({x, shelf - tall, x + thick - 0.8, shelf}, cover);
      canvas.FillBox({x, shelf - tall + 3, x + thick - 0.8, shelf - tall + 4}, {0.9, 0.75, 0.4});
      x += random.Chance(0.12) ? thick + 9 : thick;
    }
  }
}

void DrawLoaves(Canvas& canvas, Box pane) {
  Random random(802);
  for (double shelf = pane.y0 + 36; shelf < pane.y1; shelf += 27) {
    canvas.FillBox({pane.x0 + 4, shelf, pane.x1 - 4, shelf + 2}, {0.3, 0.16, 0.06});
    for (double x = pane.x0 + 15; x < pane.x1 - 10; x += random.Between(17, 25)) {
      const double half = random.Between(5, 8);
      const Rgb crust = Mix(Rgb{0.62, 0.30, 0.09}, Rgb{0.85, 0.5, 0.18}, random.Unit());
      canvas.Line(x - half * 0.6, shelf - 6, x + half * 0.6, shelf - 6, 5.5, crust * 0.6);
      canvas.Line(x - half * 0.6, shelf - 7, x + half * 0.6, shelf - 7, 4.4, crust);
      for (int cut = -1; cut <= 1; ++cut) {
        canvas.Line(x + cut * 4 - 1, shelf - 5, x + cut * 4 + 2, shelf - 10, 0.6,
                    {0.95, 0.75, 0.42});
      }
    }
  }
}

// Hanging lamps over small tables.
void DrawTables(Canvas& canvas, Box pane) {
  for (double x = pane.x0 + 30; x < pane.x1 - 10; x += 52) {
    canvas.Line(x, pane.y0, x, pane.y0 + 22, 0.8, {0.05, 0.03, 0.02});
    canvas.Glow(x, pane.y0 + 30, 46, {0.9, 0.5, 0.18});
    canvas.FillRound({x - 9, pane.y0 + 20, x + 9, pane.y0 + 29}, 4, {0.3, 0.06, 0.03});
    canvas.FillDisc(x, pane.y0 + 30, 3.6, {4.5, 3.2, 1.6});
    canvas.Line(x - 14, pane.y1 - 26, x + 14, pane.y1 - 26, 1.5, {0.08, 0.04, 0.02});
    canvas.Line(x, pane.y1 - 26, x, pane.y1, 1.3, {0.06, 0.03, 0.02});
    canvas.FillRound({x - 5, pane.y1 - 35, x - 1, pane.y1 - 27}, 1, {0.9, 0.85, 0.75});
    canvas.FillRound({x + 3, pane.y1 - 39, x + 6, pane.y1 - 27}, 1, {0.1, 0.35, 0.12});
  }
}

void DrawAwning(Canvas& canvas, Box box, Rgb first, Rgb second) {
  canvas.Fill(
      box,
      [&](double x, double y) {
        const double scallop = (x - box.x0) / 17 - std::floor((x - box.x0) / 17) - 0.5;
        const double lower = box.y1 - 7 + 7 * std::sqrt(std::max(0.0, 1 - 4 * scallop * scallop));
        return std::max(BoxDistance(box, x, y), y - lower);
      },
      [&](double x, double y) {
        const auto stripe = static_cast<int>(std::floor((x - box.x0) / 17));
        const double shade = Mix(1.25, 0.6, (y - box.y0) / (box.y1 - box.y0));
        return (stripe % 2 == 0 ? first : second) * LightOn(x, y) * shade;
      });
  canvas.FillBox({box.x0, box.y1 + 1, box.x1, box.y1 + 7}, {0.02, 0.014, 0.01});
}

// The cinema's entrance: doors, posters, and the row of bulbs over them.
void DrawCinema(Canvas& canvas) {
  for (int i = 0; i < 4; ++i) {
    const double x = 1672 + i * 46;
    DrawGlass(canvas, {x, 668, x + 38, kGround}, {1.5, 0.85, 0.32});
    canvas.Line(x + 33, 728, x + 33, 744, 1.4, {1.6, 1.2, 0.5});
  }
  constexpr std::array<Rgb, 2> kPosters = {{{0.75, 0.12, 0.10}, {0.10, 0.35, 0.55}}};
  for (int i = 0; i < 2; ++i) {
    const double x = i == 0 ? 1592 : 1874;
    canvas.FillBox({x - 3, 672, x + 55, 764}, {0.9, 0.72, 0.34});
    canvas.FillBox({x, 675, x + 52, 761}, kPosters[static_cast<std::size_t>(i)] * 0.8);
    canvas.FillDisc(x + 26, 706, 17, {1.1, 0.9, 0.62});
    canvas.FillDisc(x + 32, 702, 14, kPosters[static_cast<std::size_t>(i)] * 0.8);
    for (double y = 734; y < 756; y += 6) canvas.Line(x + 9, y, x + 43, y, 0.9, {1, 0.95, 0.8});
  }
}

}  // namespace

void DrawShops(Canvas& canvas) {
  DrawFront(canvas, {-40, kShopTop, 320, kGround}, {0.09, 0.16, 0.11});
  DrawGlass(canvas, {24, kLintel, 206, kSill}, {1.35, 0.82, 0.36});
  DrawBooks(canvas, {24, kLintel, 206, kSill});
  DrawDoor(canvas, 258, {0.11, 0.045, 0.03}, {1.1, 0.66, 0.28});

  DrawFront(canvas, {322, kShopTop, 690, kGround}, {0.20, 0.05, 0.06});
  DrawGlass(canvas, {346, kLintel, 566, kSill}, {0.95, 0.52, 0.24});
  DrawTables(canvas, {346, kLintel, 566, kSill});
  DrawDoor(canvas, 626, {0.16, 0.05, 0.04}, {1.2, 0.66, 0.26});
  DrawAwning(canvas, {334, 640, 580, 672}, {0.75, 0.14, 0.12}, {0.85, 0.78, 0.66});

  DrawFront(canvas, {838, kShopTop, 1226, kGround}, {0.15, 0.14, 0.15});
  DrawGlass(canvas, {864, kLintel, 962, kSill}, {1.15, 0.86, 0.48});
  DrawGlass(canvas, {1102, kLintel, 1200, kSill}, {1.15, 0.86, 0.48});
  DrawTables(canvas, {864, kLintel, 962, kSill});
  DrawTables(canvas, {1102, kLintel, 1200, kSill});
  DrawDoor(canvas, 1004, {0.22, 0.13, 0.05}, {1.5, 1.05, 0.5});
  DrawDoor(canvas, 1058, {0.22, 0.13, 0.05}, {1.5, 1.05, 0.5});

  DrawFront(canvas, {1226, kShopTop, 1560, kGround}, {0.14, 0.17, 0.26});
  DrawGlass(canvas, {1328, kLintel, 1534, kSill}, {1.5, 0.98, 0.46});
  DrawLoaves(canvas, {1328, kLintel, 1534, kSill});
  DrawDoor(canvas, 1276, {0.07, 0.10, 0.20}, {1.3, 0.86, 0.4});
  DrawAwning(canvas, {1316, 640, 1546, 670}, {0.12, 0.26, 0.5}, {0.88, 0.84, 0.74});

  DrawFront(canvas, {1560, kShopTop, 1960, kGround}, {0.16, 0.05, 0.09});
  DrawCinema(canvas);
}

}  // namespace vitrell::sample
