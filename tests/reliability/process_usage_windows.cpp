// Windows.
#include <windows.h>
// The next two need the one above.
#include <psapi.h>
#include <tlhelp32.h>

#include <vector>

#include "reliability/process_usage.h"

namespace vitrell::reliability {
namespace {

unsigned long long AllocatedBytes(HANDLE heap) {
  unsigned long long bytes = 0;
  PROCESS_HEAP_ENTRY entry = {};
  HeapLock(heap);
  while (HeapWalk(heap, &entry) != 0) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
  }
  HeapUnlock(heap);
  return bytes;
}

// The C library has a heap of its own beside the process's.
long AllocatedKb() {
  std::vector<HANDLE> heaps(GetProcessHeaps(0, nullptr));
  heaps.resize(GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data()));
  unsigned long long bytes = 0;
  for (const HANDLE heap : heaps) bytes += AllocatedBytes(heap);
  return static_cast<long>(bytes / 1024);
}

long CountThreads() {
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
  if (snapshot == INVALID_HANDLE_VALUE) return -1;
  long count = 0;
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Thread32First(snapshot, &entry); more != 0;
       more = Thread32Next(snapshot, &entry)) {
    count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
  }
  CloseHandle(snapshot);
  return count;
}

}  // namespace

ProcessUsage MeasureUsage() {
  ProcessUsage usage;
  PROCESS_MEMORY_COUNTERS memory = {};
  memory.cb = sizeof(memory);
  if (K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory)) != 0) {
    usage.residentKb = static_cast<long>(memory.WorkingSetSize / 1024);
  }
  usage.heapKb = AllocatedKb();
  DWORD handles = 0;
  GetProcessHandleCount(GetCurrentProcess(), &handles);
  usage.handles = static_cast<long>(handles);
  usage.threads = CountThreads();
  return usage;
}

}  // namespace vitrell::reliability
