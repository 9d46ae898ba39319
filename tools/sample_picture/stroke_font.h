// Capital letters made of strokes, for the signs of the sample picture.
#ifndef VITRELL_TOOLS_SAMPLE_PICTURE_STROKE_FONT_H_
#define VITRELL_TOOLS_SAMPLE_PICTURE_STROKE_FONT_H_

#include <string_view>

#include "canvas.h"

namespace vitrell::sample {

struct Lettering {
  double size = 10;   // Height of a capital, in scene units.
  double radius = 1;  // Half the width of a stroke.
  Rgb colour;         // Light of the strokes.
  double glow = 0;    // Strength of the tube's glow; 0 if painted.
};

// The width of a single line of text.
double TextWidth(std::string_view text, const Lettering& lettering);
// Draws text with its upper left corner at (x, y).
void DrawText(Canvas& canvas, std::string_view text, double x, double y,
              const Lettering& lettering);
// The same, centred on x.
void DrawTextCentred(Canvas& canvas, std::string_view text, double x, double y,
                     const Lettering& lettering);
// Draws the letters one below another, each centred on x.
void DrawTextDown(Canvas& canvas, std::string_view text, double x, double y,
                  const Lettering& lettering);

}  // namespace vitrell::sample

#endif  // VITRELL_TOOLS_SAMPLE_PICTURE_STROKE_FONT_H_
