// The literal, slow versions of the four engines: realistic blur, trail, directional blur and
// optical distortion.
//
// Worlds: src and dst have the same size and depth and are never the same world. Every pass reads
// src only and writes every pixel of dst, except the trail, which writes the pixels its rays reach.
#ifndef VITRELL_LITERAL_ENGINES_H_
#define VITRELL_LITERAL_ENGINES_H_

#include <cstdint>
#include <vector>

#include "literal/base/types.h"

namespace vitrell::literal {

// One sample of a row's sliding sum: offsets in pixels from the pixel that is written.
struct WeightPoint {
  std::int32_t x, y;
  float weight;
};

// The radius of the full-size kernel in pixels.
std::int32_t MaximumRadius(const Settings& settings);

// The iris of radius r: (2r + 1) x (2r + 1) weights, row dy + r, column dx + r.
std::vector<float> KernelGrid(std::int32_t radiusPx, const Settings& settings, const Maths& maths);

// The differences of a kernel grid along its rows, in the order in which they are summed.
std::vector<WeightPoint> DifferencePoints(const std::vector<float>& grid, std::int32_t radiusPx);

// The weight of every source pixel by its brightness: the root of luminance times alpha.
std::vector<float> HighlightMap(const World& src, bool deep, const Maths& maths);

// The whole engine: the copy when it is off, else uniform or lens-mapped blur and edge mending.
void RealisticBlur(const Settings& settings, const Maths& maths, const Mask& mask, const World& src,
                   World& dst);

struct LinePoint {
  std::int32_t x, y;
};

// The pixels of the line from (x0, y0) to (x1, y1), both ends included.
std::vector<LinePoint> ComputeLinePoints(std::int32_t x0, std::int32_t y0, std::int32_t x1,
                                         std::int32_t y1);

// Casts a ray from every border pixel, row by row, left to right, to the centre, which the caller
// has clamped. dst is already filled with transparent black.
void TrailPass(const World& src, World& dst, std::int32_t cx, std::int32_t cy, float trailAmount,
               std::int32_t cornerDistance);

struct LineTap {
  std::int32_t x, y;
  double weight;
};

// The taps of the directional blur; one tap alone when the line has no length.
std::vector<LineTap> DirectionalTaps(float amount, double angleRad, const Maths& maths);

void DirectionalPass(const World& src, World& dst, const Mask& mask,
                     const std::vector<LineTap>& taps);

void OpticalPass(const World& src, World& dst, const Mask& mask, const Maths& maths,
                 std::int32_t cx, std::int32_t cy, double focalLength);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_ENGINES_H_
