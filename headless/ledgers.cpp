// Counts suites, checkouts and memory blocks.
#include "headless/ledgers.h"

#include <algorithm>
#include <cstdlib>

namespace vitrell::headless {

void SuiteLedger::Acquire(const std::string& name, std::int32_t version) {
  const std::lock_guard<std::mutex> lock(mutex_);
  ++counts_[{name, version}];
}

bool SuiteLedger::Release(const std::string& name, std::int32_t version) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = counts_.find({name, version});
  if (found == counts_.end() || found->second == 0) return false;
  --found->second;
  return true;
}

std::vector<std::pair<std::string, int>> SuiteLedger::TakeOutstanding() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<std::pair<std::string, int>> outstanding;
  for (const auto& [suite, count] : counts_) {
    if (count == 0) continue;
    outstanding.emplace_back("\"" + suite.first + "\" version " + std::to_string(suite.second),
                             count);
  }
  counts_.clear();
  return outstanding;
}

void CheckoutLedger::CheckOut(const PF_ParamDef* record, int index) {
  const std::lock_guard<std::mutex> lock(mutex_);
  open_.emplace_back(record, index);
}

std::optional<int> CheckoutLedger::CheckIn(const PF_ParamDef* record) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = std::find_if(open_.begin(), open_.end(),
                                  [&](const auto& entry) { return entry.first == record; });
  if (found == open_.end()) return std::nullopt;
  const int index = found->second;
  open_.erase(found);
  return index;
}

std::vector<int> CheckoutLedger::TakeOutstanding() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<int> indices;
  for (const auto& entry : open_) indices.push_back(entry.second);
  open_.clear();
  return indices;
}

BlockLedger::~BlockLedger() { FreeOutstanding(); }

void* BlockLedger::Allocate(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  const std::lock_guard<std::mutex> lock(mutex_);
  if (block != nullptr) blocks_.push_back(block);
  return block;
}

bool BlockLedger::Free(void* block) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = std::find(blocks_.begin(), blocks_.end(), block);
  if (found == blocks_.end()) return false;
  blocks_.erase(found);
  std::free(block);
  return true;
}

void* BlockLedger::Reallocate(void* block, std::size_t size) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = std::find(blocks_.begin(), blocks_.end(), block);
  if (found == blocks_.end()) return nullptr;
  void* moved = std::realloc(block, size == 0 ? 1 : size);
  if (moved != nullptr) *found = moved;
  return moved;
}

int BlockLedger::FreeOutstanding() {
  const std::lock_guard<std::mutex> lock(mutex_);
  const int count = static_cast<int>(blocks_.size());
  for (void* block : blocks_) std::free(block);
  blocks_.clear();
  return count;
}

}  // namespace vitrell::headless
