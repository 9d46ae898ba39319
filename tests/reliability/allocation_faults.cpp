// Intercepts the memory functions that the loaded module imports.
#include "reliability/allocation_faults.h"

#include <atomic>

#include "reliability/allocation_system.h"

namespace vitrell::reliability {
namespace {

std::atomic<int> g_count = 0;
std::atomic<int> g_failed = 0;
std::atomic<int> g_failing = 0;
std::atomic<bool> g_andAllLater = false;
std::atomic<std::int64_t> g_live = 0;

}  // namespace

bool MustFail() {
  const int number = ++g_count;
  const int failing = g_failing;
  const bool fails = failing > 0 && (number == failing || (g_andAllLater && number > failing));
  g_failed += fails ? 1 : 0;
  return fails;
}

void* Counted(void* block) {
  g_live += block != nullptr ? 1 : 0;
  return block;
}

void Uncount(const void* block) { g_live -= block != nullptr ? 1 : 0; }

AllocationFaults::AllocationFaults(const headless::EffectModule& module) {
  for (const ImportedFunction& imported : ImportsOf(module)) {
    Replace(imported.address, imported.name);
  }
  FailNth(0);
  g_live = 0;
}

AllocationFaults::~AllocationFaults() {
  for (const Slot& slot : slots_) *slot.address = slot.original;
}

void AllocationFaults::Replace(void** address, const std::string& name) {
  imported_.push_back(name);
  const auto replacement = CountingFunctions().find(name);
  if (replacement == CountingFunctions().end()) return;
  slots_.push_back({address, *address});
  WriteImport(address, replacement->second);
  hooked_.push_back(name);
}

void AllocationFaults::FailNth(int n, bool andAllLater) {
  g_count = 0;
  g_failed = 0;
  g_andAllLater = andAllLater;
  g_failing = n;
}

int AllocationFaults::Count() const { return g_count; }

int AllocationFaults::Failed() const { return g_failed; }

std::int64_t AllocationFaults::LiveBlocks() const { return g_live; }

}  // namespace vitrell::reliability
