// The iris of the realistic blur: its weights, and their differences along a row.
#ifndef VITRELL_LITERAL_BLUR_REALISTIC_IRIS_KERNEL_H_
#define VITRELL_LITERAL_BLUR_REALISTIC_IRIS_KERNEL_H_

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

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_REALISTIC_IRIS_KERNEL_H_
