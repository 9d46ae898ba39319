// The blur chain: the five engines in their fixed order, in two passes.
#include "literal/blur/blur_dispatcher.h"

#include <algorithm>
#include <vector>

#include "literal/base/truncate.h"
#include "literal/blur/directional/directional_blur.h"
#include "literal/blur/directional/line_taps.h"
#include "literal/blur/fast/fast_blur.h"
#include "literal/blur/optical/optical_distortion.h"
#include "literal/blur/realistic/realistic_blur.h"
#include "literal/blur/trail/trail.h"

namespace vitrell::literal {
namespace {

constexpr double kPi = 3.141592653589793;

std::int32_t WrappingSquares(std::int32_t a, std::int32_t b) {
  return WrapAdd(WrapMultiply(a, a), WrapMultiply(b, b));
}

void Copy(const World& from, World& to) { to.pixels = from.pixels; }

void FillWithTransparentBlack(World& world) {
  const Rect& rect = world.extent;
  for (std::int32_t y = std::max(rect.top, 0); y < std::min(rect.bottom, world.height); ++y) {
    for (std::int32_t x = std::max(rect.left, 0); x < std::min(rect.right, world.width); ++x) {
      world.At(y, x) = Pixel{};
    }
  }
}

void Optical(const Settings& s, const Maths& maths, const Mask& mask, const World& src,
             World& dst) {
  const double diagonal = maths.sqrt(WrappingSquares(dst.width, dst.height));
  const bool ofLens = s.opticalCenterOfLens != 0;
  const auto amount = static_cast<double>(s.opticalAmount);
  const double focalLength = diagonal / maths.tan(((amount * kPi) / 180) * 0.5);
  OpticalPass(src, dst, mask, maths, ofLens ? s.positionX : s.opticalCenterX,
              ofLens ? s.positionY : s.opticalCenterY, focalLength);
}

void Trail(const Settings& s, const Maths& maths, const Mask& mask, World& src, World& dst) {
  const TrailGeometry geometry = MakeTrailGeometry(s, maths, dst.extent);
  const std::int32_t radius = TruncateToInt(static_cast<double>(s.trailAmount) * 2.5 + 0.5);
  FillWithTransparentBlack(dst);
  TrailPass(src, dst, geometry.cx, geometry.cy, s.trailAmount, geometry.cornerDistance);
  FastBlurRound(radius, radius, false, mask, dst, src);  // NOLINT: back again, on purpose.
}

void UniformPass(const Settings& s, const Maths& maths, const Mask& mask, World& w1, World& w2) {
  if (s.realisticVisible == 1 && s.realisticUseLensAsBlurMap == 0 && s.realisticAmount > 0) {
    RealisticBlur(s, maths, mask, w1, w2);
  } else {
    Copy(w1, w2);
  }
  if (s.fastBlurVisible == 1 && s.fastBlurAmount > 0) {
    FastBlur(s, mask, w2, w1);
  } else {
    Copy(w2, w1);
  }
  if (s.opticalVisible == 1 && s.opticalAmount > 0) {
    Optical(s, maths, mask, w1, w2);
  } else {
    Copy(w1, w2);
  }
  if (s.trailAmount > 0 && s.trailVisible == 1) {
    Trail(s, maths, mask, w2, w1);
    Copy(w1, w2);
  } else {
    Copy(w2, w1);
  }
  const std::vector<LineTap> taps = DirectionalTaps(s.directionalAmount, s.directionalAngle, maths);
  if (s.directionalVisible == 1 && taps.size() > 1) {
    DirectionalPass(w1, w2, mask, taps);
  } else {
    Copy(w1, w2);
  }
}

void LensMappedPass(const Settings& s, const Maths& maths, const Mask& mask, World& w1, World& w2) {
  if (s.realisticVisible == 1 && s.realisticUseLensAsBlurMap == 1 && s.realisticAmount > 0) {
    RealisticBlur(s, maths, mask, w1, w2);
  } else {
    Copy(w1, w2);
  }
  if (s.fastBlurVisible == 1 && s.fastBlurUseLensAsBlurMap == 1 && s.fastBlurAmount > 0) {
    FastBlur(s, mask, w2, w1);
    Copy(w1, w2);
  } else {
    Copy(w2, w1);
  }
}

}  // namespace

TrailGeometry MakeTrailGeometry(const Settings& s, const Maths& maths, const Rect& extent) {
  const bool ofLens = s.trailCenterOfLens == 1;
  std::int32_t cx = ofLens ? s.positionX : s.trailCenterX;
  std::int32_t cy = ofLens ? s.positionY : s.trailCenterY;
  if (cx <= extent.left) {
    cx = extent.left + 1;
  }
  if (cy <= extent.top) {
    cy = extent.top + 1;
  }
  if (cx >= extent.right - 1) {
    cx = extent.right - 2;
  }
  if (cy >= extent.bottom - 1) {
    cy = extent.bottom - 2;
  }
  const std::int32_t halfX = (extent.left + extent.right) / 2;
  const std::int32_t halfY = (extent.top + extent.bottom) / 2;
  const std::int32_t midX = TruncateToInt(halfX - 0.5);
  const std::int32_t midY = TruncateToInt(halfY - 0.5);
  // The corner opposite the centre's quadrant.
  std::int32_t cornerX = extent.left;
  std::int32_t cornerY = extent.top;
  if (cx < midX && cy < midY) {
    cornerX = extent.right;
    cornerY = extent.bottom;
  } else if (cx < midX) {
    cornerX = extent.right;
    cornerY = extent.top;
  } else if (cy < midY) {
    cornerX = extent.left;
    cornerY = extent.bottom;
  }
  const std::int32_t squares = WrappingSquares(cornerY - cy, cornerX - cx);
  return {cx, cy, TruncateToInt(maths.sqrt(squares))};
}

void BlurChain(const Settings& settings, const Maths& maths, const Mask& mask, std::int32_t pass,
               World& w1, World& w2) {
  if (pass == 0) {
    UniformPass(settings, maths, mask, w1, w2);
  } else {
    LensMappedPass(settings, maths, mask, w1, w2);
  }
}

}  // namespace vitrell::literal
