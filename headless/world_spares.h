// Disposed worlds kept for reuse by the next one of the same shape.
#ifndef VITRELL_HEADLESS_WORLD_SPARES_H_
#define VITRELL_HEADLESS_WORLD_SPARES_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "headless/world_buffer.h"

namespace vitrell::headless {

// Spares an effect that makes worlds in every stage the page faults of fresh memory, as hosts do.
// With the address sanitizer nothing is kept, so that use after disposal is detected.
class WorldSpares {
 public:
  // A world with fresh pixels and guards. Throws HostError as WorldBuffer's constructor does.
  std::unique_ptr<WorldBuffer> Make(std::int32_t width, std::int32_t height, bool deep,
                                    const WorldLayout& layout);
  // Keeps a world whose guards are intact.
  void Keep(std::unique_ptr<WorldBuffer> world);

 private:
  std::mutex mutex_;
  std::vector<std::unique_ptr<WorldBuffer>> spares_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_WORLD_SPARES_H_
