// Street lamps, strings of bulbs, the fence in front, and the transparent areas.
#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

constexpr Rgb kIron = {0.016, 0.016, 0.020};

void DrawLamp(Canvas& canvas, double x) {
  const double foot = kKerb - 12;
  canvas.Line(x, foot, x, kLampTop + 34, 3.4, kIron);
  canvas.Line(x + 1.6, foot - 8, x + 1.6, kLampTop + 40, 0.8, {0.16, 0.10, 0.05});
  canvas.FillRound({x - 9, foot - 34, x + 9, foot}, 3, kIron);
  canvas.FillRound({x - 13, foot - 8, x + 13, foot + 2}, 2, kIron);
  canvas.FillRound({x - 6, kLampTop + 96, x + 6, kLampTop + 102}, 2, kIron);
  canvas.Line(x - 24, kLampTop + 62, x + 24, kLampTop + 62, 2.2, kIron);
  canvas.FillDisc(x - 24, kLampTop + 62, 3.6, kIron);
  canvas.FillDisc(x + 24, kLampTop + 62, 3.6, kIron);
  canvas.Glow(x, kLampTop, 400, kLampLight * 0.20);
  canvas.Glow(x, kLampTop, 110, kLampLight * 0.9);
  // The lantern narrows toward the post.
  const auto lantern = [=](double px, double py) {
    const double half = 17 - (py - kLampTop + 24) * 0.13;
    return std::max(std::abs(px - x) - half, std::abs(py - kLampTop - 2) - 27);
  };
  canvas.Fill({x - 20, kLampTop - 27, x + 20, kLampTop + 31}, lantern, [=](double px, double py) {
    const double d2 = ((px - x) * (px - x) + (py - kLampTop) * (py - kLampTop) * 0.6) / 160;
    return Rgb{7.5, 5.0, 2.3} * (0.35 + 1 / (1 + d2));
  });
  canvas.Line(x - 17, kLampTop - 25, x - 10, kLampTop + 29, 1.3, kIron);
  canvas.Line(x + 17, kLampTop - 25, x + 10, kLampTop + 29, 1.3, kIron);
  canvas.Line(x, kLampTop - 25, x, kLampTop + 29, 0.8, kIron);
  canvas.FillRound({x - 20, kLampTop - 30, x + 20, kLampTop - 25}, 2, kIron);
  canvas.FillRound({x - 13, kLampTop - 37, x + 13, kLampTop - 30}, 3, kIron);
  canvas.Line(x, kLampTop - 36, x, kLampTop - 46, 2, kIron);
  canvas.FillRound({x - 12, kLampTop + 29, x + 12, kLampTop + 35}, 2, kIron);
}

// A sagging wire between two points with coloured bulbs at regular intervals.
void DrawString(Canvas& canvas, double x0, double y0, double x1, double y1, double sag, int bulbs,
                std::uint32_t seed, double time) {
  constexpr std::array<Rgb, 5> kColours = {
      {{4.6, 2.9, 1.1}, {4.8, 1.1, 0.5}, {4.4, 3.4, 1.8}, {0.9, 2.4, 4.2}, {1.2, 3.6, 1.2}}};
  const auto at = [&](double t) { return Mix(y0, y1, t) + sag * 4 * t * (1 - t); };
  // The middle of the wire swings farthest; every wire in its own time, all from rest.
  const double swing = 0.22 * sag * Swing(time / (1.1 + 0.1 * (seed % 5)) - 0.25);
  const auto along = [&](double t) { return Mix(x0, x1, t) + swing * 4 * t * (1 - t); };
  constexpr int kPieces = 64;
  for (int i = 0; i < kPieces; ++i) {
    const double t = i / static_cast<double>(kPieces);
    const double u = (i + 1) / static_cast<double>(kPieces);
    canvas.Line(along(t), at(t), along(u), at(u), 0.75, {0.012, 0.012, 0.018});
  }
  for (int i = 1; i < bulbs; ++i) {
    const double t = i / static_cast<double>(bulbs);
    const double x = along(t);
    const double y = at(t);
    const Rgb colour = kColours[Hash(i, 1, seed) % kColours.size()];
    canvas.Glow(x, y + 7, 40, colour * 0.16);
    canvas.Line(x, y, x, y + 3, 1.5, {0.02, 0.02, 0.02});
    canvas.FillDisc(x, y + 7, 4.1, colour);
  }
}

}  // namespace

void DrawLamps(Canvas& canvas) {
  for (const double x : kLamps) DrawLamp(canvas, x);
}

void DrawBulbs(Canvas& canvas, double time) {
  DrawString(canvas, -20, 330, 700, 300, 116, 21, 401, time);
  DrawString(canvas, 700, 300, 1240, 330, 92, 16, 409, time);
  DrawString(canvas, 1240, 330, 1950, 290, 112, 21, 419, time);
  DrawString(canvas, 380, 236, 1130, 222, 62, 24, 421, time);
}

void DrawFence(Canvas& canvas) {
  constexpr Rgb kWire = {0.020, 0.022, 0.030};
  constexpr Rgb kShine = {0.30, 0.22, 0.15};
  constexpr double kRight = 430;
  constexpr double kTop = 886;
  constexpr double kMesh = 17;
  const auto rail = [](double x) { return kTop + x * 0.075; };
  for (double x = -320; x < kRight; x += kMesh) {
    // Each wire runs down at an angle until it leaves the image or the fence.
    for (const double slope : {1.0, -1.0}) {
      const double startX = slope > 0 ? x : x + 260;
      double lastX = startX;
      double lastY = rail(startX);
      for (int step = 0; step < 16; ++step) {
        const double nextX = lastX + slope * kMesh;
        const double nextY = lastY + kMesh;
        if (std::max(lastX, nextX) < kRight && nextY < 1200) {
          canvas.Line(lastX, lastY, nextX, nextY, 1.0, kWire);
          canvas.Line(lastX + slope * 5, lastY + 4, lastX + slope * 9, lastY + 8, 0.35, kShine);
        }
        lastX = nextX;
        lastY = nextY;
      }
    }
  }
  canvas.Line(-60, rail(-60), kRight, rail(kRight), 3.2, kWire);
  canvas.Line(-60, rail(-60) - 2, kRight, rail(kRight) - 2, 0.7, kShine);
  for (const double x : {42.0, 236.0, 430.0}) {
    canvas.Line(x, rail(x) - 13, x, 1200, 5.2, kWire);
    canvas.Line(x + 3, rail(x) - 8, x + 3, 1200, 0.9, kShine);
    canvas.FillDisc(x, rail(x) - 15, 6.4, kWire);
  }
}

void CutAlpha(Canvas& canvas) {
  const double middle = (kArch.x0 + kArch.x1) / 2;
  const double half = (kArch.x1 - kArch.x0) / 2;
  const double spring = kArch.y0 + half;
  const auto arch = [=](double x, double y) {
    const double dx = x - middle;
    const double round = std::sqrt(dx * dx + (y - spring) * (y - spring)) - half;
    return std::max(y < spring ? round : std::abs(dx) - half, y - kArch.y1);
  };
  // Stones around the archway, then its opening: transparent, with haze rising from the ground.
  const Box around = Grow(kArch, 14);
  canvas.Fill(
      {around.x0, around.y0, around.x1, kGround},
      [&](double x, double y) { return std::max(arch(x, y) - 12, y - kGround); },
      [](double x, double y) {
        const double tone =
            0.8 + 0.5 * HashUnit(static_cast<int>(x / 13), static_cast<int>(y / 13), 433);
        return Rgb{0.30, 0.25, 0.19} * tone * LightOn(x, y);
      });
  canvas.ForEach(Grow(kArch, 2), [&](double x, double y, CanvasPixel& pixel) {
    const double inside = Clamp01(0.5 - arch(x, y) / canvas.Unit());
    if (inside <= 0) return;
    const double haze = 0.62 * Smooth(700, 796, y) * (0.6 + 0.4 * Clouds(x / 22, y / 16, 439));
    const Rgb fog = Mix(Rgb{0.03, 0.035, 0.08}, Rgb{0.26, 0.16, 0.10}, Smooth(680, 800, y));
    pixel.light = Mix(pixel.light, fog, inside);
    pixel.alpha = Mix(pixel.alpha, haze, inside);
  });
  // Shop windows are slightly transparent.
  for (const Box pane :
       {Box{24, 655, 206, 752}, Box{346, 672, 566, 752}, Box{1328, 670, 1534, 752}}) {
    canvas.ForEach(pane, [&](double x, double y, CanvasPixel& pixel) {
      const double sheen = Smooth(0.44, 0.56, Noise((x + y * 0.6) / 40, 0.5, 443));
      pixel.alpha *= 0.72 + 0.2 * sheen;
    });
  }
}

}  // namespace vitrell::sample
