// Windows.
#include <malloc.h>
#include <windows.h>

#include <system_error>

#include "headless/platform.h"

namespace vitrell::headless {

// Made absolute: a relative path would be searched for beside the program first.
void* OpenLibrary(const std::filesystem::path& path, std::string* message) {
  std::error_code failure;
  const std::filesystem::path whole = std::filesystem::absolute(path, failure);
  void* const library = LoadLibraryW((failure ? path : whole).c_str());
  if (library == nullptr) {
    *message = std::system_category().message(static_cast<int>(GetLastError()));
  }
  return library;
}

void* FindSymbol(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void CloseLibrary(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

void* AllocateAligned(std::size_t alignment, std::size_t bytes) {
  return _aligned_malloc(bytes, alignment);
}

void FreeAligned(void* memory) { _aligned_free(memory); }

std::size_t PageBytes() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
}

std::byte* MapBetweenClosedPages(std::size_t bytes) {
  const std::size_t page = PageBytes();
  void* const mapping =
      VirtualAlloc(nullptr, bytes + 2 * page, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
  if (mapping == nullptr) return nullptr;
  std::byte* const open = static_cast<std::byte*>(mapping) + page;
  DWORD before = 0;
  if (VirtualProtect(open, bytes, PAGE_READWRITE, &before) == 0) {
    VirtualFree(mapping, 0, MEM_RELEASE);
    return nullptr;
  }
  return open;
}

void UnmapBetweenClosedPages(std::byte* memory, std::size_t /*bytes*/) {
  VirtualFree(memory - PageBytes(), 0, MEM_RELEASE);
}

}  // namespace vitrell::headless
