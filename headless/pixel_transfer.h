// Copies, converts and fills worlds the way the host's utility callbacks do.
#ifndef VITRELL_HEADLESS_PIXEL_TRANSFER_H_
#define VITRELL_HEADLESS_PIXEL_TRANSFER_H_

#include "headless/thread_pool.h"
#include "host/host_api.h"

namespace vitrell::headless {

// A world's pixels and their true depth.
struct PixelView {
  void* data = nullptr;
  A_long rowbytes = 0;
  A_long width = 0;
  A_long height = 0;
  bool deep = false;
};

// Maps white to white (255 and 32768), rounding to nearest; 16-bit values above white give 255.
A_u_short WidenChannel(A_u_char value);
A_u_char NarrowChannel(A_u_short value);

// Copies a rectangle of one world to a rectangle of another; null means the whole world. Rectangles
// of different sizes are resampled to the nearest pixel, and parts outside their world are skipped.
// Both worlds may be the same one.
void CopyPixels(const PixelView& source, const PixelView& destination, const PF_LRect* sourceRect,
                const PF_LRect* destinationRect, ThreadPool& pool, int threads);

// Fills the part of the rectangle that lies within the world; null means the whole world. The pixel
// type must match the world's depth.
void FillPixels(const PixelView& world, const PF_Pixel& color, const PF_LRect* rect);
void FillPixels(const PixelView& world, const PF_Pixel16& color, const PF_LRect* rect);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_PIXEL_TRANSFER_H_
