// The C library, LLVM's C++ runtime, and the few functions that only macOS has.
#include "packaging/system_symbols.h"

#include <dlfcn.h>

#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

// Keeps all registers but rax: the general ones on the stack, the rest by the processor's own
// saving instruction (x87, SSE, AVX and AVX-512 state).
__asm__(R"(
  .text
  .globl VitrellThreadLocalThunk
  .hidden VitrellThreadLocalThunk
  .type VitrellThreadLocalThunk, @function
VitrellThreadLocalThunk:
  push %rbp
  mov %rsp, %rbp
  push %rbx
  push %rcx
  push %rdx
  push %rsi
  push %rdi
  push %r8
  push %r9
  push %r10
  push %r11
  sub $4096, %rsp
  and $-64, %rsp
  xor %eax, %eax
  mov %rax, 512(%rsp)
  mov %rax, 520(%rsp)
  mov %rax, 528(%rsp)
  mov %rax, 536(%rsp)
  mov %rax, 544(%rsp)
  mov %rax, 552(%rsp)
  mov %rax, 560(%rsp)
  mov %rax, 568(%rsp)
  mov $0xE7, %eax
  xor %edx, %edx
  xsave64 (%rsp)
  call VitrellThreadLocalAddress
  mov %rax, %rbx
  mov $0xE7, %eax
  xor %edx, %edx
  xrstor64 (%rsp)
  mov %rbx, %rax
  lea -72(%rbp), %rsp
  pop %r11
  pop %r10
  pop %r9
  pop %r8
  pop %rdi
  pop %rsi
  pop %rdx
  pop %rcx
  pop %rbx
  pop %rbp
  ret
  .size VitrellThreadLocalThunk, . - VitrellThreadLocalThunk
)");

extern "C" {

void VitrellThreadLocalThunk();

__attribute__((visibility("hidden"), used)) void* VitrellThreadLocalAddress(
    const vitrell::packaging::ThreadLocalDescriptor* descriptor) {
  // Aligned as strictly as any variable can ask for.
  struct alignas(64) Line {
    std::uint8_t bytes[64];
  };
  thread_local std::map<const void*, std::vector<Line>> copies;
  const vitrell::packaging::ThreadLocals& variables = *descriptor->variables;
  std::vector<Line>& copy = copies[&variables];
  if (copy.empty()) {
    copy.resize(variables.size / sizeof(Line) + 1);
    std::memcpy(copy.data(), variables.start, variables.size);
  }
  return reinterpret_cast<std::uint8_t*>(copy.data()) + descriptor->offset;
}

}  // extern "C"

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
      {"_tlv_bootstrap", reinterpret_cast<void*>(&VitrellThreadLocalThunk)},
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
