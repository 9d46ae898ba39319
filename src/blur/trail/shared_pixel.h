// Pixels that several threads may read and write at once without a data race.
#ifndef VITRELL_BLUR_TRAIL_SHARED_PIXEL_H_
#define VITRELL_BLUR_TRAIL_SHARED_PIXEL_H_

#include <bit>
#include <cstdint>
#include <type_traits>

#include "host/host_api.h"

namespace vitrell {

// The integer that a whole pixel is read and written as. It may alias the pixel's channels.
template <typename Pixel>
using PixelWord =
    std::conditional_t<sizeof(Pixel) == sizeof(std::uint32_t), std::uint32_t, std::uint64_t>;

// True when the pixel lies on a boundary of its word. Worlds may start at any byte and rows may be
// any number of bytes long, so that a pixel of four bytes can lie at an odd address.
template <typename Pixel>
bool IsWordAligned(const Pixel* pixel) {
  return reinterpret_cast<std::uintptr_t>(pixel) % sizeof(Pixel) == 0;
}

// Reads a pixel in one piece, or channel by channel where it is not aligned: a pixel that is being
// written at the same time may then come out partly new. Relaxed: nothing else hangs on the order.
//
// The compilers' builtins stand in for std::atomic_ref, which older standard libraries of macOS do
// not have.
template <typename Pixel>
Pixel LoadShared(const Pixel* pixel) {
  using Word [[gnu::may_alias]] = PixelWord<Pixel>;
  if (IsWordAligned(pixel)) {
    return std::bit_cast<Pixel>(
        PixelWord<Pixel>{__atomic_load_n(reinterpret_cast<const Word*>(pixel), __ATOMIC_RELAXED)});
  }
  return {__atomic_load_n(&pixel->alpha, __ATOMIC_RELAXED),
          __atomic_load_n(&pixel->red, __ATOMIC_RELAXED),
          __atomic_load_n(&pixel->green, __ATOMIC_RELAXED),
          __atomic_load_n(&pixel->blue, __ATOMIC_RELAXED)};
}

// Writes a pixel in one piece, or channel by channel where it is not aligned.
template <typename Pixel>
void StoreShared(Pixel* pixel, const Pixel& value) {
  using Word [[gnu::may_alias]] = PixelWord<Pixel>;
  if (IsWordAligned(pixel)) {
    __atomic_store_n(reinterpret_cast<Word*>(pixel), std::bit_cast<PixelWord<Pixel>>(value),
                     __ATOMIC_RELAXED);
    return;
  }
  __atomic_store_n(&pixel->alpha, value.alpha, __ATOMIC_RELAXED);
  __atomic_store_n(&pixel->red, value.red, __ATOMIC_RELAXED);
  __atomic_store_n(&pixel->green, value.green, __ATOMIC_RELAXED);
  __atomic_store_n(&pixel->blue, value.blue, __ATOMIC_RELAXED);
}

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_SHARED_PIXEL_H_
