// The operating system's functions that the host uses. Each system has its own source file,
// platform_*.cpp.
#ifndef VITRELL_HEADLESS_PLATFORM_H_
#define VITRELL_HEADLESS_PLATFORM_H_

#include <cstddef>
#include <filesystem>
#include <string>

namespace vitrell::headless {

// --- Modules ---

// A path without a directory is relative to the current one. On failure returns null and sets
// *message to the system's text.
void* OpenLibrary(const std::filesystem::path& path, std::string* message);
// Null if the library does not export the name.
void* FindSymbol(void* library, const char* name);
void CloseLibrary(void* library);

// --- Memory; all functions return null on failure ---

// The size must be a multiple of the alignment, which must be a power of two.
void* AllocateAligned(std::size_t alignment, std::size_t bytes);
void FreeAligned(void* memory);

// The granularity of memory protection.
std::size_t PageBytes();
// Maps `bytes` bytes, a multiple of PageBytes(), between two inaccessible pages: an access beyond
// either end terminates the process.
std::byte* MapBetweenClosedPages(std::size_t bytes);
void UnmapBetweenClosedPages(std::byte* memory, std::size_t bytes);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_PLATFORM_H_
