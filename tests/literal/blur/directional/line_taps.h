// The taps of the directional blur and their weights.
#ifndef VITRELL_LITERAL_BLUR_DIRECTIONAL_LINE_TAPS_H_
#define VITRELL_LITERAL_BLUR_DIRECTIONAL_LINE_TAPS_H_

#include <cstdint>
#include <vector>

#include "literal/base/types.h"

namespace vitrell::literal {

struct LineTap {
  std::int32_t x, y;
  double weight;
};

// The taps of the directional blur; one tap alone when the line has no length.
std::vector<LineTap> DirectionalTaps(float amount, double angleRad, const Maths& maths);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_DIRECTIONAL_LINE_TAPS_H_
