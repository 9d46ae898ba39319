// How much every source pixel weighs by its brightness.
#ifndef VITRELL_LITERAL_BLUR_REALISTIC_HIGHLIGHT_MAP_H_
#define VITRELL_LITERAL_BLUR_REALISTIC_HIGHLIGHT_MAP_H_

#include <vector>

#include "literal/base/types.h"

namespace vitrell::literal {

// The weight of every source pixel by its brightness: the root of luminance times alpha.
std::vector<float> HighlightMap(const World& src, bool deep, const Maths& maths);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BLUR_REALISTIC_HIGHLIGHT_MAP_H_
