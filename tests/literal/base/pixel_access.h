// Reads of a world at any position: by address, by value, by bilinear sample.
//
// Positions are (row, column) in layer coordinates: the extent hint's top and left are the world's
// origin. A mirror flag of exactly 1 folds positions outside the world back in; with any other flag
// such a position is missing. Pure reads, for any number of threads.
#ifndef VITRELL_LITERAL_BASE_PIXEL_ACCESS_H_
#define VITRELL_LITERAL_BASE_PIXEL_ACCESS_H_

#include <cstdint>

#include "literal/base/types.h"

namespace vitrell::literal {

// Folds an origin-relative position into the world. An empty world leaves the position alone.
void RecomputePosition(const World& world, std::int64_t& row, std::int64_t& column);

// The pixel's address, or null when the position is missing or the world is empty.
const Pixel* GetPointerFromDataP(const World& world, std::int32_t row, std::int32_t column,
                                 std::uint8_t mirror);
Pixel* GetPointerFromDataP(World& world, std::int32_t row, std::int32_t column,
                           std::uint8_t mirror);

// The pixel's value, all zero when missing. Kept: a mirrored position has the origin subtracted a
// second time, so that a world whose extent hint does not start at (0, 0) reads elsewhere or zero.
Pixel GetPointerFromData(const World& world, std::int32_t row, std::int32_t column,
                         std::uint8_t mirror);

// The bilinear sample into `out`, which stays as it is when a needed neighbour is missing.
void GetPointerFromDataDP(const World& world, double row, double column, Pixel& out,
                          std::uint8_t mirror);

}  // namespace vitrell::literal

#endif  // VITRELL_LITERAL_BASE_PIXEL_ACCESS_H_
