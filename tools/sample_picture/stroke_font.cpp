// The strokes of each letter, and their drawing.
#include "stroke_font.h"

#include <cstddef>

namespace vitrell::sample {
namespace {

struct Letter {
  char name;
  // Strokes separated by commas. Each is a sequence of points, given by one digit for x (0..4) and
  // one for y (0..6).
  std::string_view strokes;
};

constexpr Letter kLetters[] = {
    {'A', "06 20 46,14 34"},
    {'B', "00 30 41 42 33 03,33 44 45 36 06 00"},
    {'C', "41 30 10 01 05 16 36 45"},
    {'D', "00 06 26 44 42 20 00"},
    {'E', "40 00 06 46,03 33"},
    {'F', "40 00 06,03 33"},
    {'G', "41 30 10 01 05 16 36 45 43 23"},
    {'H', "00 06,40 46,03 43"},
    {'I', "20 26"},
    {'J', "40 45 36 16 05"},
    {'K', "00 06,40 03 46"},
    {'L', "00 06 46"},
    {'M', "06 00 23 40 46"},
    {'N', "06 00 46 40"},
    {'O', "10 30 41 45 36 16 05 01 10"},
    {'P', "06 00 30 41 42 33 03"},
    {'Q', "10 30 41 45 36 16 05 01 10,34 46"},
    {'R', "06 00 30 41 42 33 03,23 46"},
    {'S', "41 30 10 01 02 13 33 44 45 36 16 05"},
    {'T', "00 40,20 26"},
    {'U', "00 05 16 36 45 40"},
    {'V', "00 26 40"},
    {'W', "00 16 23 36 40"},
    {'X', "00 46,40 06"},
    {'Y', "00 23 40,23 26"},
    {'Z', "00 40 06 46"},
    {'0', "10 30 41 45 36 16 05 01 10"},
    {'1', "11 20 26"},
    {'2', "01 10 30 41 42 06 46"},
    {'3', "00 40 23 33 44 45 36 16 05"},
    {'4', "36 30 04 44"},
    {'7', "00 40 16"},
    {'8', "10 30 41 42 33 13 02 01 10,33 44 45 36 16 05 04 13"},
    {'9', "43 13 02 01 10 30 41 45 36 16"},
    {'&', "46 11 20 31 04 05 16 26 44"},
    {'-', "13 33"},
    {'.', "26 26"},
    {':', "22 22,25 25"},
};

constexpr double kAdvance = 6;  // Grid units from one letter to the next.

std::string_view StrokesOf(char name) {
  for (const Letter& letter : kLetters) {
    if (letter.name == name) return letter.strokes;
  }
  return {};
}

// Draws one letter; `step` is the size of a grid unit.
void DrawLetter(Canvas& canvas, std::string_view strokes, double x, double y,
                const Lettering& lettering) {
  const double step = lettering.size / 6;
  bool joined = false;
  double lastX = 0;
  double lastY = 0;
  for (std::size_t i = 0; i + 1 < strokes.size(); i += 3) {
    const double px = x + (strokes[i] - '0') * step;
    const double py = y + (strokes[i + 1] - '0') * step;
    const double fromX = joined ? lastX : px;
    const double fromY = joined ? lastY : py;
    canvas.Line(fromX, fromY, px, py, lettering.radius, lettering.colour);
    if (lettering.glow > 0) {
      canvas.Glow((fromX + px) / 2, (fromY + py) / 2, lettering.size * 1.5,
                  lettering.colour * lettering.glow);
    }
    lastX = px;
    lastY = py;
    joined = i + 2 < strokes.size() && strokes[i + 2] == ' ';
  }
}

}  // namespace

double TextWidth(std::string_view text, const Lettering& lettering) {
  return (static_cast<double>(text.size()) * kAdvance - 2) * lettering.size / 6;
}

void DrawText(Canvas& canvas, std::string_view text, double x, double y,
              const Lettering& lettering) {
  for (const char name : text) {
    DrawLetter(canvas, StrokesOf(name), x, y, lettering);
    x += kAdvance * lettering.size / 6;
  }
}

void DrawTextCentred(Canvas& canvas, std::string_view text, double x, double y,
                     const Lettering& lettering) {
  DrawText(canvas, text, x - TextWidth(text, lettering) / 2, y, lettering);
}

void DrawTextDown(Canvas& canvas, std::string_view text, double x, double y,
                  const Lettering& lettering) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    DrawTextCentred(canvas, text.substr(i, 1), x, y, lettering);
    y += lettering.size * 1.4;
  }
}

}  // namespace vitrell::sample
