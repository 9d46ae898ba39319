// The lens mask: how much each pixel of the output lies inside the lens.
#ifndef VITRELL_RENDER_LENS_MASK_H_
#define VITRELL_RENDER_LENS_MASK_H_

#include <cstddef>
#include <cstdint>

#include "host/host_api.h"
#include "render/numeric.h"
#include "render/settings.h"

namespace vitrell {

// One double per pixel of the output's extent rectangle, row by row; 1 inside, 0 outside. Of a
// rectangle that is many times larger than the worlds it has the beginning only, which is more than
// they can ask for. Built by the render thread, then only read, by any number of host threads,
// until the render ends.
extern double* g_LensMask;

// Number of doubles behind g_LensMask; 0 whenever there is no memory behind it.
extern std::size_t g_LensMaskSize;

// Mask values at or below this count as outside the lens; stages differ in strictness.
inline constexpr double kMaskThreshold = 0.0001;

// What the mask is built from besides the settings.
struct LensMaskInput {
  const PF_InData* inData;       // For the host's maths callbacks.
  const PF_LayerDef* output;     // Its extent hint is the rectangle, its width and height the size.
  PF_LRect inputExtent;          // The input layer's extent hint as the host gave it.
  std::int64_t inputPixels = 0;  // Width times height of the input, and so of the working worlds.
};

// Frees a mask left by an earlier render, allocates W x H values and fills them. Answers
// PF_Err_OUT_OF_MEMORY when the memory is not to be had; there is then no mask.
[[nodiscard]] PF_Err BuildLensMask(const LensMaskInput& input, const LX_Info& info);

// Frees the mask. With keepAddress g_LensMask keeps its old, now dangling value, as the failure
// paths before the first stage leave it; it is never read or freed again.
void FreeLensMask(bool keepAddress);

// The mask as one world sees it: indexed by that world's extent hint, 0.0 outside that rectangle
// and wherever the index would leave the buffer. For use during one pass.
class LensMaskView {
 public:
  explicit LensMaskView(const PF_LayerDef& world)
      : values_(g_LensMask),
        size_(g_LensMaskSize),
        left_(static_cast<std::uint32_t>(world.extent_hint.left)),
        top_(static_cast<std::uint32_t>(world.extent_hint.top)),
        width_(Extent(world.extent_hint.left, world.extent_hint.right)),
        height_(Extent(world.extent_hint.top, world.extent_hint.bottom)) {}

  VITRELL_UNSIGNED_WRAPS double At(std::int32_t x, std::int32_t y) const {
    const std::uint32_t column = static_cast<std::uint32_t>(x) - left_;
    const std::uint32_t row = static_cast<std::uint32_t>(y) - top_;
    const std::uint64_t index = std::uint64_t{row} * width_ + column;
    return column < width_ && row < height_ && index < size_ ? values_[index] : 0.0;
  }

 private:
  VITRELL_UNSIGNED_WRAPS static std::uint32_t Extent(std::int32_t from, std::int32_t to) {
    return to > from ? static_cast<std::uint32_t>(to) - static_cast<std::uint32_t>(from) : 0;
  }

  const double* values_;
  std::uint64_t size_;
  std::uint32_t left_;
  std::uint32_t top_;
  std::uint32_t width_;
  std::uint32_t height_;
};

// The mask at layer position (x, y) as the given world sees it.
inline double GetLensMask(int x, int y, const PF_LayerDef* world) {
  return LensMaskView(*world).At(x, y);
}

}  // namespace vitrell

#endif  // VITRELL_RENDER_LENS_MASK_H_
