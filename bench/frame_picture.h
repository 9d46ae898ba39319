// The pictures that frames are rendered from.
#ifndef VITRELL_BENCH_FRAME_PICTURE_H_
#define VITRELL_BENCH_FRAME_PICTURE_H_

#include <cstdint>

#include "headless/world_buffer.h"

namespace vitrell::bench {

// The sample picture in its own size; larger frames show it again, mirrored at its far edges.
// Throws std::runtime_error when it cannot be read.
headless::WorldBuffer MakeStreet(std::int32_t width, std::int32_t height, bool deep);

// Soft gradients with fine noise, bright spots and a transparent corner: nothing that a stage could
// take a short cut through.
headless::WorldBuffer MakeNoise(std::int32_t width, std::int32_t height, bool deep);

}  // namespace vitrell::bench

#endif  // VITRELL_BENCH_FRAME_PICTURE_H_
