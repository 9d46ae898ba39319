// A short list of reusable worlds.
#include "headless/world_spares.h"

#include <algorithm>
#include <utility>

namespace vitrell::headless {
namespace {

constexpr std::size_t kMaxSpares = 4;
constexpr std::int64_t kMaxSpareBytes = std::int64_t{64} << 20;  // Per world.

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kReuse = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kReuse = false;
#else
constexpr bool kReuse = true;
#endif
#else
constexpr bool kReuse = true;
#endif

}  // namespace

std::unique_ptr<WorldBuffer> WorldSpares::Make(std::int32_t width, std::int32_t height, bool deep,
                                               const WorldLayout& layout) {
  std::unique_ptr<WorldBuffer> world;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = std::find_if(spares_.begin(), spares_.end(), [&](const auto& spare) {
      return spare->Width() == width && spare->Height() == height && spare->Deep() == deep &&
             spare->Layout() == layout;
    });
    if (found != spares_.end()) {
      world = std::move(*found);
      spares_.erase(found);
    }
  }
  if (world == nullptr) return std::make_unique<WorldBuffer>(width, height, deep, layout);
  world->SetExtentHint({0, 0, width, height});
  world->SetWorldFlags(deep ? PF_WorldFlag_DEEP : 0);
  world->FillFresh();
  return world;
}

void WorldSpares::Keep(std::unique_ptr<WorldBuffer> world) {
  if (!kReuse || std::int64_t{world->RowBytes()} * world->Height() > kMaxSpareBytes) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (spares_.size() == kMaxSpares) spares_.erase(spares_.begin());
  spares_.push_back(std::move(world));
}

}  // namespace vitrell::headless
