// Reading worlds at any position: addresses, values and bilinear samples.
//
// Positions are (row, column) in layer coordinates: the world's extent_hint.top and .left are its
// origin. A mirror flag of exactly 1 folds positions outside the world back in; with any other
// value outside is missing. Pure reads, safe on any number of threads. A world without data, width
// or height has no pixels at all.
#ifndef VITRELL_BASE_PIXEL_ACCESS_H_
#define VITRELL_BASE_PIXEL_ACCESS_H_

#include <cstddef>
#include <cstdint>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "host/host_api.h"

namespace vitrell {

// Whether the world has pixels and its origin is (0, 0), so that layer positions are those of its
// memory and a row's pixels are found without the columns.
inline bool HasPixelsFromOrigin(const PF_LayerDef& world) {
  return world.data != nullptr && world.width > 0 && world.height > 0 &&
         world.extent_hint.left == 0 && world.extent_hint.top == 0;
}

// A line of size > 0 pixels, mirrored at its ends, repeats after so many positions.
constexpr std::int64_t MirrorPeriod(std::int64_t size) { return 2 * size - 1; }

// Folds one coordinate into 0..size-1 by repeated reflection: below zero c becomes -c (the edge is
// not repeated), at or above size it becomes 2 x size - 1 - c (the edge is repeated).
// Kept: the reflection is asymmetric, so that the first row appears once and the last one twice.
// The reflections repeat, which makes this a remainder instead of a loop. size must be positive.
inline std::int64_t FoldCoordinate(std::int64_t coordinate, std::int64_t size) {
  const std::int64_t period = MirrorPeriod(size);
  std::int64_t folded = coordinate < 0 ? -coordinate : coordinate;
  if (folded >= size) {
    folded %= period;
    if (folded >= size) {
      folded = period - folded;
    }
  }
  return folded;
}

// Folds both coordinates, relative to the world's origin, in place. An empty world leaves them
// alone.
inline void RecomputePosition(const PF_LayerDef* world, int& row, int& column) {
  if (world->height <= 0 || world->width <= 0) {
    return;
  }
  row = static_cast<int>(FoldCoordinate(row, world->height));
  column = static_cast<int>(FoldCoordinate(column, world->width));
}

// Address of the pixel stored at (row, column) relative to the world's memory, or null.
template <typename Pixel>
inline Pixel* StoredPixel(const PF_LayerDef* world, std::int64_t row, std::int64_t column) {
  if (row < 0 || row >= world->height || column < 0 || column >= world->width ||
      world->data == nullptr) {
    return nullptr;
  }
  char* const base = static_cast<char*>(world->data);
  return reinterpret_cast<Pixel*>(base + row * world->rowbytes) + column;
}

// Address of a pixel, or null where there is none.
template <typename Pixel>
inline Pixel* GetPointerFromDataP(const PF_LayerDef* world, int row, int column,
                                  unsigned char mirror) {
  const std::int64_t r = std::int64_t{row} - world->extent_hint.top;
  const std::int64_t c = std::int64_t{column} - world->extent_hint.left;
  if (Pixel* const pixel = StoredPixel<Pixel>(world, r, c); pixel != nullptr || mirror != 1) {
    return pixel;
  }
  if (world->height <= 0 || world->width <= 0) {
    return nullptr;
  }
  return StoredPixel<Pixel>(world, FoldCoordinate(r, world->height),
                            FoldCoordinate(c, world->width));
}

// A pixel by value; all zero where it is missing.
template <typename Pixel, typename Channel = ChannelOf<Pixel>>
inline Pixel GetPointerFromData(const PF_LayerDef* world, int row, int column,
                                unsigned char mirror) {
  const std::int64_t r = std::int64_t{row} - world->extent_hint.top;
  const std::int64_t c = std::int64_t{column} - world->extent_hint.left;
  if (const Pixel* const pixel = StoredPixel<Pixel>(world, r, c); pixel != nullptr) {
    return *pixel;
  }
  if (mirror != 1 || world->height <= 0 || world->width <= 0) {
    return Pixel{};
  }
  // Kept: the folded position is handed on as a layer position, so that the origin is subtracted a
  // second time. It shows only in worlds whose extent hint does not start at (0, 0).
  const Pixel* const pixel =
      GetPointerFromDataP<Pixel>(world, static_cast<int>(FoldCoordinate(r, world->height)),
                                 static_cast<int>(FoldCoordinate(c, world->width)), mirror);
  return pixel != nullptr ? *pixel : Pixel{};
}

// Bilinear sample at a fractional position, truncated, into *out; *out is left untouched where one
// of the four neighbours is missing. Along the first row and column nothing is interpolated. The
// result carries no meaning.
template <typename Pixel, typename Channel = ChannelOf<Pixel>>
int GetPointerFromDataDP(const PF_LayerDef* world, double row, double column, Pixel* out,
                         unsigned char mirror);

}  // namespace vitrell

#endif  // VITRELL_BASE_PIXEL_ACCESS_H_
