// The mutex on Windows, made from a native lock: the compiler's std::recursive_mutex would pull in
// a thread library that the module would have to ship.
#include <windows.h>

#include <atomic>

#include "base/global_mutex.h"

namespace vitrell {
namespace {

SRWLOCK g_lock = SRWLOCK_INIT;
std::atomic<DWORD> g_owner = 0;  // No thread has the id 0.
unsigned g_depth = 0;            // Accessed only by the owner.

}  // namespace

// Relaxed order suffices: only this thread ever stores its own id, so that a stale value cannot
// equal it.
void GlobalMutex::lock() {
  const DWORD self = GetCurrentThreadId();
  if (g_owner.load(std::memory_order_relaxed) != self) {
    AcquireSRWLockExclusive(&g_lock);
    g_owner.store(self, std::memory_order_relaxed);
  }
  ++g_depth;
}

void GlobalMutex::unlock() {
  if (--g_depth != 0) return;
  g_owner.store(0, std::memory_order_relaxed);
  ReleaseSRWLockExclusive(&g_lock);
}

}  // namespace vitrell
