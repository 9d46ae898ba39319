// The worlds that host and effect share during a command.
#ifndef VITRELL_HEADLESS_WORLD_REGISTRY_H_
#define VITRELL_HEADLESS_WORLD_REGISTRY_H_

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "headless/world_buffer.h"
#include "host/host_api.h"

namespace vitrell::headless {

// What the host knows about a world, whatever an effect's copy of the record claims.
struct KnownWorld {
  std::string name;
  bool deep = false;
  PF_LayerDef def{};
};

// Worlds are identified by the address of their pixels, since effects copy the records. Safe to use
// from several threads.
class WorldRegistry {
 public:
  void Clear();
  // A world of the caller's that outlives the command.
  void AddBorrowed(const char* name, const WorldBuffer& world);
  // Names the world "world1", "world2", ... in order.
  KnownWorld AddOwned(std::unique_ptr<WorldBuffer> buffer);

  std::optional<KnownWorld> Find(const PF_LayerDef* world) const;
  // "none" if there is no record or no pixels, "foreign" if the pixels are unknown.
  std::string NameOf(const PF_LayerDef* world) const;

  enum class Removal { kDone, kBorrowed, kAlreadyDisposed, kUnknown };
  // Removes an owned world and moves its buffer to `buffer`.
  Removal Remove(const PF_LayerDef* world, std::unique_ptr<WorldBuffer>& buffer);
  // Removes and returns all owned worlds with their names, in order of creation.
  std::vector<std::pair<std::string, std::unique_ptr<WorldBuffer>>> TakeOutstanding();

 private:
  struct Entry {
    KnownWorld known;
    std::unique_ptr<WorldBuffer> buffer;  // Null for borrowed worlds.
  };

  const Entry* FindEntry(const PF_LayerDef* world) const;

  mutable std::mutex mutex_;
  std::vector<Entry> entries_;
  std::vector<const void*> disposed_;
  int made_ = 0;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_WORLD_REGISTRY_H_
