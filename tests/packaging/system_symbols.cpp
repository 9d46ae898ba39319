// The C library, LLVM's C++ runtime, and the few functions that only macOS has.
#include "packaging/system_symbols.h"

#include <dlfcn.h>

#include <cstring>
#include <map>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vitrell::packaging {
namespace {

void ClearBytes(void* bytes, std::size_t size) { std::memset(bytes, 0, size); }

void FillWithPattern16(void* bytes, const void* pattern, std::size_t size) {
  for (std::size_t done = 0; done < size; done += 16) {
    std::memcpy(static_cast<std::uint8_t*>(bytes) + done, pattern,
                size - done < 16 ? size - done : 16);
  }
}

[[noreturn]] void BindLazily() { throw std::logic_error("every symbol is bound already"); }

const std::map<std::string, void*>& MacOnlySymbols() {
  static const std::map<std::string, void*> symbols{
      {"__bzero", reinterpret_cast<void*>(&ClearBytes)},
      {"bzero", reinterpret_cast<void*>(&ClearBytes)},
      {"memset_pattern16", reinterpret_cast<void*>(&FillWithPattern16)},
      {"dyld_stub_binder", reinterpret_cast<void*>(&BindLazily)},
  };
  return symbols;
}

void* Open(const char* library, int flags) {
  void* const handle = dlopen(library, RTLD_NOW | RTLD_LOCAL | flags);
  if (handle == nullptr) throw std::runtime_error(dlerror());
  return handle;
}

// Sees its own functions first: this program has another C++ runtime.
void* CppRuntime() {
  static void* const handle = Open("libc++.so.1", RTLD_DEEPBIND);
  return handle;
}

// The library of mathematics; what it does not hold is looked for in the C library behind it.
void* CLibrary() {
  static void* const handle = Open("libm.so.6", 0);
  return handle;
}

}  // namespace

void* SystemSymbol(const std::string& library, const std::string& name) {
  void* handle = nullptr;
  if (library == "libc++" || name.starts_with("_Unwind_")) {
    handle = CppRuntime();
  } else if (library == "libSystem") {
    const auto macOnly = MacOnlySymbols().find(name);
    if (macOnly != MacOnlySymbols().end()) return macOnly->second;
    handle = CLibrary();
  } else {
    throw std::runtime_error("nothing stands in for the library " + library);
  }
  void* const symbol = dlsym(handle, name.c_str());
  if (symbol == nullptr) throw std::runtime_error("nothing stands in for " + name);
  return symbol;
}

void RegisterCallFrames(std::vector<std::uint8_t> records) {
  const auto registerFunction =
      reinterpret_cast<void (*)(const void*)>(SystemSymbol("libc++", "__register_frame"));
  // The unwinder keeps pointers into the records.
  const auto& kept = *new std::vector<std::uint8_t>(std::move(records));
  // It takes one function's record at a time. A common record holds 0 behind its length.
  for (std::size_t offset = 0; offset < kept.size();) {
    std::uint32_t words[2];
    std::memcpy(words, kept.data() + offset, sizeof(words));
    if (words[1] != 0) registerFunction(kept.data() + offset);
    offset += 4 + std::size_t{words[0]};
  }
}

}  // namespace vitrell::packaging
