// Signs: painted boards, neon tubes and the cinema's marquee.
#include "random.h"
#include "scene.h"
#include "stroke_font.h"

namespace vitrell::sample {
namespace {

void DrawBoard(Canvas& canvas, Box box, Rgb colour, std::string_view text, Rgb letters) {
  canvas.FillRound(Grow(box, 3), 4, Rgb{0.8, 0.6, 0.25} * 0.7);
  canvas.Fill(
      box, [&](double x, double y) { return RoundBoxDistance(box, 3, x, y); },
      [&](double x, double y) {
        return colour * (0.7 + 0.5 * Clamp01((box.y1 - y) / (box.y1 - box.y0))) *
               (LightOn(x, y) + Rgb{0.25, 0.2, 0.15});
      });
  const double size = (box.y1 - box.y0) * 0.56;
  DrawTextCentred(canvas, text, (box.x0 + box.x1) / 2, (box.y0 + box.y1 - size) / 2,
                  {size, size * 0.085, letters, 0});
}

// The hotel's vertical sign, projecting over the street.
void DrawHotel(Canvas& canvas) {
  constexpr Box kPanel = {1180, 214, 1240, 560};
  canvas.Line(1160, 250, 1184, 250, 3, {0.03, 0.03, 0.04});
  canvas.Line(1160, 520, 1184, 520, 3, {0.03, 0.03, 0.04});
  canvas.Glow(1210, 390, 330, {0.42, 0.03, 0.12});
  canvas.FillRound(kPanel, 8, {0.030, 0.012, 0.030});
  constexpr Rgb kTube = {5.5, 0.35, 1.1};
  constexpr Box kEdge = Grow(kPanel, -5);
  canvas.Line(kEdge.x0, kEdge.y0, kEdge.x1, kEdge.y0, 1.3, kTube * 0.6);
  canvas.Line(kEdge.x1, kEdge.y0, kEdge.x1, kEdge.y1, 1.3, kTube * 0.6);
  canvas.Line(kEdge.x1, kEdge.y1, kEdge.x0, kEdge.y1, 1.3, kTube * 0.6);
  canvas.Line(kEdge.x0, kEdge.y1, kEdge.x0, kEdge.y0, 1.3, kTube * 0.6);
  DrawTextDown(canvas, "HOTEL", 1210, 236, {43, 2.9, kTube, 0.008});
}

void DrawCafe(Canvas& canvas) {
  constexpr Rgb kTube = {0.35, 3.6, 4.2};
  canvas.Glow(506, 618, 230, {0.02, 0.16, 0.20});
  DrawTextCentred(canvas, "CAFE LUNA", 500, 605, {28, 2.0, kTube, 0.008});
  // A crescent beside the name: a disc minus an offset disc.
  const auto crescent = [](double x, double y) {
    return std::max(CapsuleDistance(640, 619, 640, 619, 15, x, y),
                    -CapsuleDistance(647, 614, 647, 614, 13, x, y));
  };
  canvas.Fill({622, 602, 660, 640}, crescent, [](double, double) { return Rgb{4.2, 3.3, 1.2}; });
  canvas.Glow(640, 619, 60, {0.3, 0.22, 0.06});
}

void DrawMarquee(Canvas& canvas) {
  constexpr Box kBoard = {1590, 560, 1925, 648};
  canvas.Glow(1757, 604, 330, {0.40, 0.24, 0.08});
  canvas.FillBox(Grow(kBoard, 7), {0.40, 0.045, 0.035});
  canvas.Fill(
      kBoard, [&](double x, double y) { return BoxDistance(kBoard, x, y); },
      [](double x, double y) {
        return Rgb{2.0, 1.72, 1.15} * (0.72 + 0.22 * Noise(x / 60, y / 40, 71));
      });
  const Lettering letters{21, 1.7, {0.03, 0.02, 0.02}, 0};
  DrawTextCentred(canvas, "TONIGHT 8:30", 1757, 573, letters);
  DrawTextCentred(canvas, "THE GLASS EYE", 1757, 609, {23, 1.9, {0.5, 0.02, 0.02}, 0});
  const Box ring = Grow(kBoard, 3.5);
  for (double x = ring.x0; x <= ring.x1 + 1; x += 14) {
    canvas.FillDisc(x, ring.y0, 2.6, {5, 3.6, 1.7});
    canvas.FillDisc(x, ring.y1, 2.6, {5, 3.6, 1.7});
  }
  for (double y = ring.y0 + 14; y < ring.y1; y += 14) {
    canvas.FillDisc(ring.x0, y, 2.6, {5, 3.6, 1.7});
    canvas.FillDisc(ring.x1, y, 2.6, {5, 3.6, 1.7});
  }
  canvas.FillRound({1640, 492, 1874, 560}, 10, {0.030, 0.014, 0.020});
  DrawTextCentred(canvas, "RIALTO", 1757, 505, {40, 2.7, {5.0, 1.9, 0.12}, 0.008});
}

}  // namespace

void DrawSigns(Canvas& canvas) {
  DrawBoard(canvas, {30, 608, 296, 642}, {0.10, 0.24, 0.15}, "BOOKS & MAPS", {1.5, 1.1, 0.5});
  DrawCafe(canvas);
  DrawBoard(canvas, {1250, 604, 1540, 636}, {0.12, 0.20, 0.40}, "BAKERY - 1904", {1.5, 1.3, 0.85});
  DrawBoard(canvas, {930, 612, 1134, 642}, {0.14, 0.10, 0.06}, "GRAND HOTEL", {1.9, 1.4, 0.6});
  DrawHotel(canvas);
  DrawMarquee(canvas);
}

}  // namespace vitrell::sample
