// Reads pixels of a world at any position: addresses, values and bilinear samples.
//
// Positions are (row, column) in layer coordinates; the world's first pixel lies at
// (extent_hint.top, extent_hint.left). With a mirror flag of exactly 1, positions outside the world
// are reflected back in; with any other value they have no pixel. A world without data, width or
// height has no pixels at all. Nothing is written, so that every function is safe on any number of
// threads.
#ifndef VITRELL_BASE_PIXEL_ACCESS_H_
#define VITRELL_BASE_PIXEL_ACCESS_H_

#include <cstddef>
#include <cstdint>

#include "base/depth_traits.h"
#include "base/numeric.h"
#include "host/host_api.h"

namespace vitrell {

// Whether the world has pixels and its origin is (0, 0): layer positions are then indices into its
// memory.
inline bool HasPixelsFromOrigin(const PF_LayerDef& world) {
  return world.data != nullptr && world.width > 0 && world.height > 0 &&
         world.extent_hint.left == 0 && world.extent_hint.top == 0;
}

template <typename Pixel>
inline bool IsTransparentBlack(const Pixel& pixel) {
  return (pixel.alpha | pixel.red | pixel.green | pixel.blue) == 0;
}

// The period with which a line of size > 0 pixels repeats when it is mirrored at its ends.
constexpr std::int64_t MirrorPeriod(std::int64_t size) { return 2 * size - 1; }

// Folds one coordinate into [0, size) by repeated reflection: below zero c becomes -c (the edge is
// not repeated), at or above size it becomes 2 x size - 1 - c (the edge is repeated). size must be
// positive. Reflection is periodic, so that a remainder replaces the repetition.
// Kept: it is asymmetric, so that the first row appears once and the last one twice.
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

// Folds both coordinates in place. They are relative to the world's origin; an empty world leaves
// them unchanged.
inline void RecomputePosition(const PF_LayerDef* world, int& row, int& column) {
  if (world->height <= 0 || world->width <= 0) {
    return;
  }
  row = static_cast<int>(FoldCoordinate(row, world->height));
  column = static_cast<int>(FoldCoordinate(column, world->width));
}

// Address of the pixel at (row, column) of the world's memory, or null outside it.
template <typename Pixel>
inline Pixel* StoredPixel(const PF_LayerDef* world, std::int64_t row, std::int64_t column) {
  if (row < 0 || row >= world->height || column < 0 || column >= world->width ||
      world->data == nullptr) {
    return nullptr;
  }
  char* const base = static_cast<char*>(world->data);
  return reinterpret_cast<Pixel*>(base + row * world->rowbytes) + column;
}

// Address of the pixel at a layer position, or null where there is none.
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

// The pixel at a layer position; all channels 0 where there is none.
template <typename Pixel>
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
  // Kept: the folded position is relative to the world but passed on as a layer position, so that
  // the origin is subtracted twice. This shows only where the extent hint does not start at (0, 0).
  const Pixel* const pixel =
      GetPointerFromDataP<Pixel>(world, static_cast<int>(FoldCoordinate(r, world->height)),
                                 static_cast<int>(FoldCoordinate(c, world->width)), mirror);
  return pixel != nullptr ? *pixel : Pixel{};
}

// Stores the bilinear sample at a fractional position, truncated, in *out, or leaves *out unchanged
// where one of the four neighbours is missing. Where the upper left neighbour lies in row 0 or
// column 0, it alone is the sample. Always returns 0.
template <typename Pixel>
int GetPointerFromDataDP(const PF_LayerDef* world, double row, double column, Pixel* out,
                         unsigned char mirror);

}  // namespace vitrell

#endif  // VITRELL_BASE_PIXEL_ACCESS_H_
