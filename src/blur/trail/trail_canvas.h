// The image that the trail's rays paint. The result is the same in whatever order and on however
// many threads the rays are cast.
#ifndef VITRELL_BLUR_TRAIL_TRAIL_CANVAS_H_
#define VITRELL_BLUR_TRAIL_TRAIL_CANVAS_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <thread>

#include "base/buffer.h"
#include "base/pixel_access.h"
#include "host/host_api.h"

namespace vitrell {

// Of all rays that reach a pixel with a colour that is not all zero, the pixel keeps the colour of
// the first, in row-major order of the border pixels from which they start. A ray's colour for a
// pixel depends only on the source, so that this is a maximum over the rays: each pixel stores the
// precedence of the ray that painted it, and a ray of higher precedence paints over it. Pixels are
// protected by the lock of their tile, since a ray stays within a tile for many pixels.
class TrailCanvas {
 public:
  // Prepares painting on the world, which must outlive the pass. False if memory is short.
  [[nodiscard]] bool Prepare(PF_LayerDef* world);

  // Paints the pixels of one ray. Colours are collected without a lock and written in groups, each
  // under the lock of one tile, so that threads seldom wait for each other.
  template <typename Pixel>
  class Brush {
   public:
    // For the ray that starts at the border pixel (x, y).
    Brush(TrailCanvas* canvas, A_long x, A_long y)
        : canvas_(canvas), precedence_(canvas->PrecedenceOf(x, y)) {}
    ~Brush() { Write(); }
    Brush(const Brush&) = delete;
    Brush& operator=(const Brush&) = delete;

    // False if a ray of at least this precedence has painted the pixel at a layer position.
    bool MayPaint(const PF_FixedPoint& point) const {
      const std::uint32_t* const painter = canvas_->PainterOf(canvas_->PlaceOf(point));
      return __atomic_load_n(painter, __ATOMIC_RELAXED) < precedence_;
    }

    // Paints the pixel at a layer position, reflected at the edges, unless a ray of at least this
    // precedence has painted it. colour() is called only if its result may be needed.
    template <typename Colour>
    void Paint(const PF_FixedPoint& point, const Colour& colour) {
      const Place place = canvas_->PlaceOf(point);
      std::uint32_t* const painter = canvas_->PainterOf(place);
      if (__atomic_load_n(painter, __ATOMIC_RELAXED) >= precedence_) {
        return;
      }
      const Pixel painted = colour();
      if (IsTransparentBlack(painted)) {
        return;
      }
      std::uint8_t* const tile = canvas_->TileOf(place);
      if (tile != tile_ || count_ == kMaxStrokes) {
        Write();
        tile_ = tile;
      }
      strokes_[count_++] = {painter, canvas_->PixelAt<Pixel>(place), painted};
    }

   private:
    struct Stroke {
      std::uint32_t* painter;
      Pixel* pixel;
      Pixel colour;
    };
    static constexpr int kMaxStrokes = 256;

    void Write() {
      if (count_ == 0) {
        return;
      }
      while (__atomic_exchange_n(tile_, std::uint8_t{1}, __ATOMIC_ACQUIRE) != 0) {
        std::this_thread::yield();
      }
      std::for_each(strokes_, strokes_ + count_, [this](const Stroke& stroke) { Write(stroke); });
      __atomic_store_n(tile_, std::uint8_t{0}, __ATOMIC_RELEASE);
      count_ = 0;
    }

    void Write(const Stroke& stroke) const {
      if (*stroke.painter >= precedence_) {
        return;
      }
      if (*stroke.painter == kNobody && !IsTransparentBlack(*stroke.pixel)) {
        __atomic_store_n(stroke.painter, kFilledBefore, __ATOMIC_RELAXED);
        return;
      }
      *stroke.pixel = stroke.colour;
      __atomic_store_n(stroke.painter, precedence_, __ATOMIC_RELAXED);
    }

    TrailCanvas* canvas_;
    std::uint32_t precedence_;
    std::uint8_t* tile_ = nullptr;  // The lock of the strokes' tile.
    int count_ = 0;
    Stroke strokes_[kMaxStrokes];
  };

  // False for a world without pixels, on which Paint must not be called.
  bool HasPixels() const { return painters_.size() > 0; }

 private:
  // A position in the world's memory.
  struct Place {
    std::int64_t row;
    std::int64_t column;
  };

  static constexpr std::uint32_t kNobody = 0;
  static constexpr std::uint32_t kFilledBefore = 0xFFFFFFFF;  // Not all zero before the pass.
  static constexpr int kTileShift = 8;                        // Tiles of 256 x 256 pixels.
  static constexpr std::int64_t kLockBytes = 64;              // A cache line for each lock.

  // Decreases from border pixel to border pixel in row-major order; at least 1.
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
  Buffer<std::uint32_t> painters_;  // Per pixel: the precedence of the ray that painted it.
  // Atomic builtins of the compilers replace std::atomic_ref, which older standard libraries of
  // macOS lack.
  Buffer<std::uint8_t> locks_;
};

}  // namespace vitrell

#endif  // VITRELL_BLUR_TRAIL_TRAIL_CANVAS_H_
