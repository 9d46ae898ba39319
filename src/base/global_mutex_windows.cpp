// The mutex by Windows's own lock: the compiler's std::recursive_mutex comes with a thread library
// that the module would have to carry.
#include <windows.h>

#include <atomic>

#include "base/global_mutex.h"

namespace vitrell {
namespace {

SRWLOCK g_lock = SRWLOCK_INIT;
std::atomic<DWORD> g_owner = 0;  // No thread has the number 0.
unsigned g_depth = 0;            // Read and written by the owner alone.

}  // namespace

// Only this thread writes its own number, so that an old value is never mistaken for it.
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
