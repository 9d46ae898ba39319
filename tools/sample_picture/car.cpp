// The car that drives past.
#include "random.h"
#include "scene.h"

namespace vitrell::sample {
namespace {

constexpr Rgb kBody = {0.020, 0.026, 0.040};
constexpr Rgb kTrim = {0.16, 0.12, 0.09};
constexpr double kWheelRadius = 15;

void DrawWheel(Canvas& canvas, double x) {
  canvas.FillDisc(x, kKerb - kWheelRadius + 2, kWheelRadius, {0.006, 0.006, 0.008});
  canvas.FillDisc(x, kKerb - kWheelRadius + 2, kWheelRadius * 0.5, {0.07, 0.07, 0.08});
}

// The cabin narrows towards its roof, more at the windscreen than behind.
void DrawCabin(Canvas& canvas, double x) {
  const auto outline = [=](double inset) {
    return [=](double px, double py) {
      const double up = kKerb - 52 - py;
      const double rear = x - 84 + inset + up * 0.5 - px;
      const double front = px - (x + 62 - inset - up * 1.0);
      return std::max({rear, front, up - 34 + inset, -up});
    };
  };
  const Box box{x - 90, kKerb - 90, x + 70, kKerb - 50};
  canvas.Fill(box, outline(0), [](double, double) { return kBody; });
  canvas.Fill(box, outline(5), [=](double px, double py) {
    const double sheen = Smooth(0.3, 0.8, (px - x + 90) / 160 + (py - kKerb) / 90);
    return Mix(Rgb{0.05, 0.045, 0.05}, Rgb{0.20, 0.14, 0.09}, sheen);
  });
  canvas.Line(x - 8, kKerb - 86, x - 8, kKerb - 52, 2.6, kBody);
}

}  // namespace

void DrawCar(Canvas& canvas, double time) {
  constexpr double kSpeed = 1080;
  const double x = -560 + kSpeed * time;
  DrawCabin(canvas, x);
  canvas.FillRound({x - 128, kKerb - 54, x + 126, kKerb - 12}, 12, kBody);
  canvas.Line(x - 118, kKerb - 52, x + 112, kKerb - 52, 0.9, kTrim);
  canvas.Line(x - 122, kKerb - 26, x + 120, kKerb - 26, 0.6, kTrim * 0.6);
  DrawWheel(canvas, x - 78);
  DrawWheel(canvas, x + 76);
  // Head lamp, its light ahead, and tail lamp.
  canvas.FillRound({x + 112, kKerb - 46, x + 128, kKerb - 33}, 5, {9.0, 8.2, 6.6});
  canvas.Glow(x + 128, kKerb - 40, 130, Rgb{1.5, 1.35, 1.0});
  canvas.Glow(x + 230, kKerb - 20, 200, Rgb{0.32, 0.29, 0.22});
  canvas.FillRound({x - 130, kKerb - 48, x - 120, kKerb - 34}, 4, {6.0, 0.5, 0.25});
  canvas.Glow(x - 126, kKerb - 41, 90, Rgb{0.9, 0.07, 0.04});
}

}  // namespace vitrell::sample
