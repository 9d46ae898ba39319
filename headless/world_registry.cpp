// Keeps track of worlds by the address of their pixels.
#include "headless/world_registry.h"

#include <algorithm>

namespace vitrell::headless {

void WorldRegistry::Clear() {
  const std::lock_guard<std::mutex> lock(mutex_);
  entries_.clear();
  disposed_.clear();
  made_ = 0;
}

void WorldRegistry::AddBorrowed(const char* name, const WorldBuffer& world) {
  const std::lock_guard<std::mutex> lock(mutex_);
  entries_.push_back({{name, world.Deep(), world.Def()}, nullptr});
}

KnownWorld WorldRegistry::AddOwned(std::unique_ptr<WorldBuffer> buffer) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const std::string name = "world" + std::to_string(++made_);
  // The allocator may reuse the address of a disposed world.
  disposed_.erase(std::remove(disposed_.begin(), disposed_.end(), buffer->Def().data),
                  disposed_.end());
  entries_.push_back({{name, buffer->Deep(), buffer->Def()}, nullptr});
  entries_.back().buffer = std::move(buffer);
  return entries_.back().known;
}

const WorldRegistry::Entry* WorldRegistry::FindEntry(const PF_LayerDef* world) const {
  if (world == nullptr || world->data == nullptr) return nullptr;
  const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return entry.known.def.data == world->data;
  });
  return found != entries_.end() ? &*found : nullptr;
}

std::optional<KnownWorld> WorldRegistry::Find(const PF_LayerDef* world) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const Entry* entry = FindEntry(world);
  return entry != nullptr ? std::optional<KnownWorld>(entry->known) : std::nullopt;
}

std::string WorldRegistry::NameOf(const PF_LayerDef* world) const {
  if (world == nullptr || world->data == nullptr) return "none";
  const std::lock_guard<std::mutex> lock(mutex_);
  const Entry* entry = FindEntry(world);
  return entry != nullptr ? entry->known.name : "foreign";
}

WorldRegistry::Removal WorldRegistry::Remove(const PF_LayerDef* world,
                                             std::unique_ptr<WorldBuffer>& buffer) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const Entry* entry = FindEntry(world);
  if (entry == nullptr) {
    const bool before =
        std::find(disposed_.begin(), disposed_.end(), world->data) != disposed_.end();
    return before ? Removal::kAlreadyDisposed : Removal::kUnknown;
  }
  if (entry->buffer == nullptr) return Removal::kBorrowed;
  const auto position = entries_.begin() + (entry - entries_.data());
  disposed_.push_back(world->data);
  buffer = std::move(position->buffer);
  entries_.erase(position);
  return Removal::kDone;
}

std::vector<std::pair<std::string, std::unique_ptr<WorldBuffer>>> WorldRegistry::TakeOutstanding() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<std::pair<std::string, std::unique_ptr<WorldBuffer>>> taken;
  for (Entry& entry : entries_) {
    if (entry.buffer != nullptr) taken.emplace_back(entry.known.name, std::move(entry.buffer));
  }
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                [&](const Entry& entry) {
                                  return std::any_of(taken.begin(), taken.end(), [&](auto& world) {
                                    return world.first == entry.known.name;
                                  });
                                }),
                 entries_.end());
  return taken;
}

}  // namespace vitrell::headless
