// One frame rendered twice: by the effect module in the headless host, and as the literal versions
// define it. A fresh case has every stage off, no lens and a final blend that shows the result.
#ifndef VITRELL_BLUR_RENDER_CASE_H_
#define VITRELL_BLUR_RENDER_CASE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/effect_host.h"
#include "literal/base/types.h"

namespace vitrell {

// The content of a test image. Neighbouring pixels differ unless stated otherwise.
enum class Pattern {
  kNoise,         // Every channel at random over the whole range.
  kHoles,         // Noise with transparent areas that still hold colours, and transparent black.
  kBrightToDark,  // Opaque bright noise on the left, then opaque black with a few faint dots.
  kNearBlack,     // Channels 0 to 3.
  kNearWhite,     // The depth's three highest regular values.
  kAboveWhite,    // 16-bit channels up to 65535; as kNearWhite in 8-bit pictures.
  kUniform,       // One colour, half transparent.
  kTransparent,   // Alpha 0 with colours.
  kBlack,         // Opaque black.
};

inline constexpr Pattern kAllPatterns[] = {
    Pattern::kNoise,     Pattern::kHoles,       Pattern::kBrightToDark,
    Pattern::kNearBlack, Pattern::kNearWhite,   Pattern::kAboveWhite,
    Pattern::kUniform,   Pattern::kTransparent, Pattern::kBlack};

literal::World MakePicture(Pattern pattern, std::int32_t width, std::int32_t height, bool deep,
                           std::uint64_t seed = 1);

// An 8-bit picture of one opaque grey row.
literal::World MakeGreyRow(const std::vector<int>& values);

literal::Pixel MakePixel(int alpha, int red, int green, int blue);

// The red channels of a picture, row by row.
std::vector<int> Reds(const literal::World& world);

class RenderCase {
 public:
  RenderCase();

  // Sets a slider, popup (1-based), checkbox (0 or 1) or angle (degrees) by its path.
  RenderCase& Set(std::string_view path, double value);
  // Sets a point so that the effect reads exactly these whole pixels (up to about +-1000).
  RenderCase& SetPoint(std::string_view path, int x, int y);
  // A circle of about this radius around a pixel of a picture of this width.
  RenderCase& SetCircle(int x, int y, double radiusPx, int pictureWidth);
  // The luminance of this picture, stretched over the layer, becomes the lens.
  RenderCase& SetCustomLens(const literal::World& lens);

  headless::EffectHost& Host() { return *host_; }
  headless::RenderOptions& Options() { return options_; }
  // Memory layout of the input and the output.
  headless::WorldLayout& Layout() { return layout_; }

  // What the effect makes of the picture. Fails the test for an error or a complaint of the host.
  literal::World Actual(const literal::World& input);
  // What the definition makes of it.
  literal::World Expected(const literal::World& input);

  // Fails the test unless both agree in every bit.
  void ExpectExact(const literal::World& input);
  // Renders with 1, 2 and 7 threads and in every order of pixels.
  void ExpectExactInEveryOrder(const literal::World& input);

  std::string Describe(const literal::World& input) const;

 private:
  std::unique_ptr<headless::EffectHost> host_;
  headless::RenderOptions options_;
  headless::WorldLayout layout_;
  std::optional<literal::World> lens_;
  std::vector<std::string> changes_;
};

// Fails the test unless both pictures agree in every bit.
void ExpectSamePicture(const literal::World& expected, const literal::World& actual,
                       const std::string& what);

// Whether the pictures differ anywhere.
bool Differ(const literal::World& a, const literal::World& b);

}  // namespace vitrell

#endif  // VITRELL_BLUR_RENDER_CASE_H_
