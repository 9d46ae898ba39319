// The input images of the measured frames.
#ifndef VITRELL_BENCH_FRAME_PICTURE_H_
#define VITRELL_BENCH_FRAME_PICTURE_H_

#include <cstdint>

#include "headless/world_buffer.h"

namespace vitrell::bench {

// The sample picture at its own size; larger frames repeat it, mirrored at its right and lower
// edge. Throws std::runtime_error if it cannot be read.
headless::WorldBuffer MakeStreet(std::int32_t width, std::int32_t height, bool deep);

// Soft gradients with fine noise, bright spots and a transparent corner, which leave no stage a
// shortcut.
headless::WorldBuffer MakeNoise(std::int32_t width, std::int32_t height, bool deep);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_FRAME_PICTURE_H_
