// Disposed worlds kept for the next one of the same shape.
#ifndef VITRELL_HEADLESS_WORLD_SPARES_H_
#define VITRELL_HEADLESS_WORLD_SPARES_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "headless/world_buffer.h"

namespace vitrell::headless {

// Saves an effect that makes worlds in every stage the cost of fresh memory pages, as hosts do. A
// build with the address sanitizer keeps none, so that uses after disposal are found.
class WorldSpares {
 public:
  // A world with fresh pixels and guards; throws HostError as WorldBuffer does.
  std::unique_ptr<WorldBuffer> Make(std::int32_t width, std::int32_t height, bool deep,
                                    const WorldLayout& layout);
  // Takes a world whose guards are whole.
  void Keep(std::unique_ptr<WorldBuffer> world);

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<WorldBuffer>> spares_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_WORLD_SPARES_H_
