// Pavement, people and the wet road.
#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

constexpr Rgb kSilhouette = {0.010, 0.009, 0.014};

// A person in a coat, seen from behind against the light of the shops.
// `stride` is 1 with the legs farthest apart, -1 with the other leg in front.
void DrawWalker(Canvas& canvas, double x, double height, double lean, double stride) {
  const double left = height * 0.10 * stride;
  const double right = height * 0.09 * stride;
  const double foot = kGround + 28;
  const double head = foot - height;
  canvas.FillDisc(x + lean, head + height * 0.08, height * 0.075, kSilhouette);
  canvas.Line(x + lean, head + height * 0.23, x, head + height * 0.40, height * 0.115, kSilhouette);
  canvas.Line(x, head + height * 0.40, x - lean, head + height * 0.62, height * 0.105, kSilhouette);
  canvas.Line(x - 2, head + height * 0.60, x - left, foot - 3, height * 0.045, kSilhouette);
  canvas.Line(x + 1, head + height * 0.60, x + right, foot - 2, height * 0.045, kSilhouette);
  canvas.Line(x - left, foot - 2, x - left + height * 0.05, foot - 2, 2.2, kSilhouette);
  canvas.Line(x + right, foot - 1, x + right + height * 0.05, foot - 1, 2.2, kSilhouette);
}

void DrawUmbrella(Canvas& canvas, double x, double y, double radius) {
  canvas.Line(x, y, x, y + radius * 1.3, 1.2, kSilhouette);
  canvas.Fill(
      {x - radius, y - radius, x + radius, y + 2},
      [=](double px, double py) {
        const double flat = (py - y) * 1.45;
        const double dx = px - x;
        const double rib = dx / radius * 2 - std::floor(dx / radius * 2) - 0.5;
        const double hem = y + 1 - 5 * (0.25 - rib * rib) * 4 * 0.8;
        return std::max(std::sqrt(dx * dx + flat * flat) - radius, py - hem);
      },
      [=](double px, double py) {
        const double rim = Smooth(0.80, 1.0, (px - x) / radius * 0.6 + (y - py) / radius);
        return Mix(Rgb{0.055, 0.008, 0.012}, Rgb{0.65, 0.20, 0.09}, rim);
      });
  canvas.Line(x, y - radius * 0.69, x, y - radius * 0.69 - 6, 1.1, kSilhouette);
}

// How strongly the road reflects at a position: puddles between rougher patches.
double Wetness(double x, double y) {
  const double depth = (y - kKerb) / 242;
  const double puddle = Clouds(x / (150 + 160 * depth), y / (20 + 26 * depth), 301);
  return Mix(0.34, 0.92, Smooth(0.42, 0.60, puddle));
}

// The reflected street, stretched downwards as on wet asphalt.
Rgb Mirrored(const Canvas& canvas, double x, double y, double wet) {
  const double below = y - kKerb;
  const double ripple = (Noise(x / 34, y / 3.2, 311) - 0.5) * (3 + below * 0.05) * (1.5 - wet) +
                        (Noise(x / 9, y / 1.7, 313) - 0.5) * 2.2;
  const double reach = (4 + below * 0.34) * (1.25 - wet * 0.85);
  const double middle = kKerb - 10 - below * 1.62;
  Rgb sum;
  constexpr int kReach = 7;
  for (int tap = -kReach; tap <= kReach; ++tap) {
    const double along = tap / static_cast<double>(kReach);
    const double jitter = HashUnit(static_cast<int>(x * 2), static_cast<int>(y * 2) + tap, 317);
    const double upper = std::min(kKerb - 4, middle + (along + 0.12 * jitter) * reach);
    sum = sum + canvas.LightAt(x + ripple * (1 + 0.5 * along), upper);
  }
  return sum * (1.0 / (2 * kReach + 1));
}

}  // namespace

void DrawPavement(Canvas& canvas) {
  const Box slab{-100, kGround, 2020, kKerb};
  canvas.Fill(
      slab, [&](double x, double y) { return BoxDistance(slab, x, y); },
      [](double x, double y) {
        const double depth = (y - kGround + 30) / 30;
        const double along = (x - 960) / depth / 26;
        const double rowAt = 4.6 * (1 - 1 / depth) * 2;
        const auto row = static_cast<std::int32_t>(std::floor(rowAt));
        const double shifted = along + (row % 2 != 0 ? 0.5 : 0.0);
        const auto column = static_cast<std::int32_t>(std::floor(shifted));
        const double inX = shifted - std::floor(shifted);
        const double inY = rowAt - std::floor(rowAt);
        const double joint = Smooth(0, 0.07, inX) * Smooth(0, 0.14, inY);
        const double tone = (0.8 + 0.4 * HashUnit(column, row, 331)) * Mix(0.35, 1.0, joint);
        Rgb light = LightOn(x, 640) * 0.75;
        for (const double lamp : kLamps) {
          const double dx = (x - lamp) / 120;
          const double dy = (y - 826) / 34;
          light = light + kLampLight * (0.9 / (1 + 2.4 * (dx * dx + dy * dy)));
        }
        return Rgb{0.19, 0.18, 0.18} * tone * light;
      });
  canvas.FillBox({-100, kKerb - 9, 2020, kKerb - 6}, {0.17, 0.125, 0.085});
  canvas.FillBox({-100, kKerb - 6, 2020, kKerb + 2}, {0.035, 0.030, 0.034});
}

void DrawPeople(Canvas& canvas, double time) {
  // Scene units a second, and steps that go with it.
  const auto walk = [&](double x, double height, double lean, double speed) {
    DrawWalker(canvas, x + speed * time, height, lean, Swing(speed * time / 62));
  };
  walk(1112, 108, 2, 62);
  walk(1142, 100, -2, 62);
  DrawUmbrella(canvas, 1126 + 62 * time, 722, 44);
  walk(470, 106, 3, 88);
  walk(1862, 104, -3, -74);
  walk(1600, 98, 3, 70);
}

void DrawRoad(Canvas& canvas) {
  const Box road{-1e5, kKerb + 2, 1e5, 1e5};
  canvas.ForEach(road, [&](double x, double y, CanvasPixel& pixel) {
    const double below = (y - kKerb) / 242;
    const double wet = Wetness(x, y);
    const double grain =
        0.55 + 0.9 * HashUnit(static_cast<int>(x * 1.3), static_cast<int>(y * 1.3), 337);
    Rgb ground = Rgb{0.016, 0.018, 0.028} * grain * (1 + 0.5 * below);
    // The worn stripe along the middle of the road.
    const double stripe = Smooth(965, 969, y) * Smooth(987, 983, y);
    const double dash = (x + 2000) / 300 - std::floor((x + 2000) / 300);
    const double paint = stripe * Smooth(0.10, 0.108, dash) * Smooth(0.62, 0.612, dash) *
                         Smooth(0.30, 0.55, Clouds(x / 7, y / 7, 347));
    ground = Mix(ground, Rgb{0.17, 0.15, 0.13}, paint * 0.75);
    const double sparkle = HashUnit(static_cast<int>(x / 1.5), static_cast<int>(y / 1.5), 349);
    const Rgb mirrored = Mirrored(canvas, x, y, wet);
    const double strength = Mix(0.72, 0.50, below) * wet;
    pixel.light = ground + mirrored * (strength * (sparkle > 0.985 ? 1.7 : 1.0));
    pixel.alpha = 1;
  });
}

}  // namespace vitrell::sample
