// Linux and macOS.
#include <dlfcn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "headless/platform.h"

namespace vitrell::headless {
namespace {

// dlopen searches the system's directories for a bare file name; a path with a slash is used as is.
std::string LoadablePath(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.string() : (std::filesystem::path(".") / path).string();
}

}  // namespace

void* OpenLibrary(const std::filesystem::path& path, std::string* message) {
  void* const library = dlopen(LoadablePath(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    const char* const text = dlerror();
    *message = text != nullptr ? text : "the loader gives no reason";
  }
  return library;
}

void* FindSymbol(void* library, const char* name) { return dlsym(library, name); }

void CloseLibrary(void* library) { dlclose(library); }

void* AllocateAligned(std::size_t alignment, std::size_t bytes) {
  return std::aligned_alloc(alignment, bytes);
}

void FreeAligned(void* memory) { std::free(memory); }

std::size_t PageBytes() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

std::byte* MapBetweenClosedPages(std::size_t bytes) {
  const std::size_t page = PageBytes();
  void* const mapping =
      mmap(nullptr, bytes + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping == MAP_FAILED) return nullptr;
  std::byte* const open = static_cast<std::byte*>(mapping) + page;
  if (mprotect(open, bytes, PROT_READ | PROT_WRITE) != 0) {
    munmap(mapping, bytes + 2 * page);
    return nullptr;
  }
  return open;
}

void UnmapBetweenClosedPages(std::byte* memory, std::size_t bytes) {
  const std::size_t page = PageBytes();
  munmap(memory - page, bytes + 2 * page);
}

}  // namespace vitrell::headless
