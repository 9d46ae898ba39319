// The picture that the trail's rays paint, the same in whatever order and on however many threads
// they are cast.
#ifndef VITRELL_BLUR_TRAIL_TRAIL_CANVAS_H_
#define VITRELL_BLUR_TRAIL_TRAIL_CANVAS_H_

#include <cstddef>
#include <cstdint>
#include <thread>

#include "base/buffer.h"
#include "base/pixel_access.h"
#include "host/host_api.h"

namespace vitrell {

// A pixel that several rays reach keeps the colour of the first one, by the row-major order of the
// border pixels they start from, whose colour is not all zero. A ray's colour for a pixel depends
// on the source alone, so that this is a maximum over the rays: beside each pixel stands the
// precedence of the ray that painted it, and a ray of higher precedence paints over it. Pixels are
// guarded by the lock of the tile they lie in, for a ray stays within a tile for many pixels.
class TrailCanvas {
 public:
  // Prepares painting over the world, which must outlive the pass. False when there is no memory.
  [[nodiscard]] bool Prepare(PF_LayerDef* world);

  // What one ray paints with. Holds at most one tile at a time, from the first pixel it paints
  // there to the first one elsewhere.
  class Brush {
   public:
    // Of the ray that starts from the border pixel (x, y).
    Brush(TrailCanvas* canvas, A_long x, A_long y)
        : canvas_(canvas), precedence_(canvas->PrecedenceOf(x, y)) {}
    ~Brush() { Release(); }
    Brush(const Brush&) = delete;
    Brush& operator=(const Brush&) = delete;

    // Gives the pixel at a layer position, mirrored beyond the edges, the colour unless an earlier
    // ray has painted it. colour() is called only if need be.
    template <typename Pixel, typename Colour>
    void Paint(const PF_FixedPoint& point, const Colour& colour) {
      const Place place = canvas_->PlaceOf(point);
      std::uint32_t* const painter = canvas_->PainterOf(place);
      if (__atomic_load_n(painter, __ATOMIC_RELAXED) >= precedence_) {
        return;
      }
      Hold(canvas_->TileOf(place));
      if (*painter >= precedence_) {
        return;
      }
      Pixel* const pixel = canvas_->PixelAt<Pixel>(place);
      if (*painter == kNobody && !IsTransparentBlack(*pixel)) {
        __atomic_store_n(painter, kFilledBefore, __ATOMIC_RELAXED);
        return;
      }
      if (const Pixel painted = colour(); !IsTransparentBlack(painted)) {
        *pixel = painted;
        __atomic_store_n(painter, precedence_, __ATOMIC_RELAXED);
      }
    }

   private:
    void Hold(std::uint8_t* tile) {
      if (tile == held_) {
        return;
      }
      Release();
      while (__atomic_exchange_n(tile, std::uint8_t{1}, __ATOMIC_ACQUIRE) != 0) {
        std::this_thread::yield();
      }
      held_ = tile;
    }
    void Release() {
      if (held_ != nullptr) {
        __atomic_store_n(held_, std::uint8_t{0}, __ATOMIC_RELEASE);
        held_ = nullptr;
      }
    }

    TrailCanvas* canvas_;
    std::uint32_t precedence_;
    std::uint8_t* held_ = nullptr;
  };

  // False for a world without pixels, on which nothing may be painted.
  bool HasPixels() const { return painters_.size() > 0; }

 private:
  // Rows and columns of the memory.
  struct Place {
    std::int64_t row;
    std::int64_t column;
  };

  static constexpr std::uint32_t kNobody = 0;
  static constexpr std::uint32_t kFilledBefore = 0xFFFFFFFF;  // Not all zero before the pass.
  static constexpr int kTileShift = 8;                        // Tiles of 256 x 256 pixels.
  static constexpr std::int64_t kLockBytes = 64;              // A cache line for each lock.

  // Falls from border pixel to border pixel in row-major order; at least 1.
  std::uint32_t PrecedenceOf(A_long x, A_long y) const;

  Place PlaceOf(const PF_FixedPoint& point) const {
    return {FoldCoordinate(std::int64_t{point.y} - world_->extent_hint.top, world_->height),
            FoldCoordinate(std::int64_t{point.x} - world_->extent_hint.left, world_->width)};
  }
  template <typename Pixel>
  Pixel* PixelAt(const Place& place) const {
    char* const row = static_cast<char*>(world_->data) + place.row * world_->rowbytes;
    return reinterpret_cast<Pixel*>(row) + place.column;
  }
  std::uint32_t* PainterOf(const Place& place) {
    return painters_.data() + place.row * world_->width + place.column;
  }
  std::uint8_t* TileOf(const Place& place) {
    const std::int64_t tile =
        (place.row >> kTileShift) * tilesAcross_ + (place.column >> kTileShift);
    return locks_.data() + tile * kLockBytes;
  }

  PF_LayerDef* world_ = nullptr;
  std::int64_t tilesAcross_ = 0;
  Buffer<std::uint32_t> painters_;  // Precedences, of the ray that painted each pixel.
  // The compilers' atomic builtins stand in for std::atomic_ref, which older standard libraries of
  // macOS do not have.
  Buffer<std::uint8_t> locks_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_TRAIL_CANVAS_H_
