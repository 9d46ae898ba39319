// What the host asks of the operating system. One source file for each system, platform_*.cpp.
#ifndef VITRELL_HEADLESS_PLATFORM_H_
#define VITRELL_HEADLESS_PLATFORM_H_

#include <cstddef>
#include <filesystem>
#include <string>

namespace vitrell::headless {

// --- Modules ---

// A path without a folder means the current one. Null on failure, with the system's own words in
// *message.
void* OpenLibrary(const std::filesystem::path& path, std::string* message);
// Null when the library exports no such name.
void* FindSymbol(void* library, const char* name);
void CloseLibrary(void* library);

// --- Memory; null when there is none ---

// The size is a multiple of the alignment, which is a power of two.
void* AllocateAligned(std::size_t alignment, std::size_t bytes);
void FreeAligned(void* memory);

// The unit of what can be protected.
std::size_t PageBytes();
// So many bytes, a multiple of PageBytes(), between two pages whose access ends the process.
std::byte* MapBetweenClosedPages(std::size_t bytes);
void UnmapBetweenClosedPages(std::byte* memory, std::size_t bytes);

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_PLATFORM_H_
