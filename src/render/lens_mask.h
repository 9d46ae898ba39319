// The lens mask: how much each pixel of the output lies inside the lens.
#ifndef VITRELL_RENDER_LENS_MASK_H_
#define VITRELL_RENDER_LENS_MASK_H_

#include <cstddef>
#include <cstdint>

#include "host/host_api.h"
#include "render/settings.h"

namespace vitrell {

// One double per pixel of the output's extent rectangle, row by row; 1 inside, 0 outside. Built by
// the render thread, then only read, by any number of host threads, until the render ends.
extern double* g_LensMask;

// Number of doubles behind g_LensMask; 0 whenever there is no memory behind it.
extern std::size_t g_LensMaskSize;

// Mask values at or below this count as outside the lens; stages differ in strictness.
inline constexpr double kMaskThreshold = 0.0001;

// What the mask is built from besides the settings.
struct LensMaskInput {
  const PF_InData* inData;    // For the host's maths callbacks.
  const PF_LayerDef* output;  // Its extent hint is the rectangle, its width and height the size.
  PF_LRect inputExtent;       // The input layer's extent hint as the host gave it.
};

// Frees a mask left by an earlier render, allocates W x H values and fills them. Answers
// PF_Err_OUT_OF_MEMORY when the memory is not to be had; there is then no mask.
[[nodiscard]] PF_Err BuildLensMask(const LensMaskInput& input, const LX_Info& info);

// Frees the mask. With keepAddress g_LensMask keeps its old, now dangling value, as the failure
// paths before the first stage leave it; it is never read or freed again.
void FreeLensMask(bool keepAddress);

// The mask at layer position (x, y), indexed by the given world's extent hint; 0.0 outside that
// rectangle and wherever the index would leave the buffer.
inline double GetLensMask(int x, int y, const PF_LayerDef* world) {
  const PF_LRect& rect = world->extent_hint;
  if (x < rect.left || x >= rect.right || y < rect.top || y >= rect.bottom) {
    return 0.0;
  }
  const auto distance = [](std::int32_t from, std::int32_t to) {
    return static_cast<std::uint64_t>(std::int64_t{to} - from);
  };
  const std::uint64_t index =
      distance(rect.left, x) + distance(rect.left, rect.right) * distance(rect.top, y);
  return index < g_LensMaskSize ? g_LensMask[index] : 0.0;
}

}  // namespace vitrell

#endif  // VITRELL_RENDER_LENS_MASK_H_
