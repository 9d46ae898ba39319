// The worlds that host and effect share during one command.
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

// What the host knows of a world, whatever an effect's copy of the record says.
struct KnownWorld {
  std::string name;
  bool deep = false;
  PF_LayerDef def{};
};

// Worlds are recognised by their pixels' address, since effects keep the records by value. May be
// used from several threads.
class WorldRegistry {
 public:
  void Clear();
  // A world of the caller's, which outlives the command.
  void AddBorrowed(const char* name, const WorldBuffer& world);
  // Takes the next free name "world1", "world2", ...
  KnownWorld AddOwned(std::unique_ptr<WorldBuffer> buffer);

  std::optional<KnownWorld> Find(const PF_LayerDef* world) const;
  // "none" without a record or pixels, "foreign" for unknown pixels.
  std::string NameOf(const PF_LayerDef* world) const;

  enum class Removal { kDone, kBorrowed, kAlreadyDisposed, kUnknown };
  // Takes an owned world out; its buffer goes to `buffer`.
  Removal Remove(const PF_LayerDef* world, std::unique_ptr<WorldBuffer>& buffer);
  // Takes all owned worlds out, with their names, in order of creation.
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
