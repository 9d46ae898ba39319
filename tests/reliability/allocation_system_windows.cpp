// Windows: the module's import table. The C++ allocation functions are part of the module itself
// and call the C library.
#include <malloc.h>
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <stdexcept>

#include "reliability/allocation_system.h"

namespace vitrell::reliability {
namespace {

void* Malloc(std::size_t size) { return MustFail() ? nullptr : Counted(std::malloc(size)); }

void* Calloc(std::size_t count, std::size_t size) {
  return MustFail() ? nullptr : Counted(std::calloc(count, size));
}

void* Realloc(void* old, std::size_t size) {
  if (MustFail()) return nullptr;
  const bool hadBlock = old != nullptr;
  void* const block = std::realloc(old, size);
  return hadBlock ? block : Counted(block);
}

void* AlignedMalloc(std::size_t size, std::size_t alignment) {
  return MustFail() ? nullptr : Counted(_aligned_malloc(size, alignment));
}

void Free(void* block) {
  Uncount(block);
  std::free(block);
}

void AlignedFree(void* block) {
  Uncount(block);
  _aligned_free(block);
}

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

template <typename Record>
Record* At(std::uint8_t* base, std::uint64_t offset) {
  return reinterpret_cast<Record*>(base + offset);
}

}  // namespace

std::vector<ImportedFunction> ImportsOf(const headless::EffectModule& module) {
  HMODULE handle = nullptr;
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<LPCWSTR>(module.EntryPoint()), &handle) == 0) {
    throw std::runtime_error("the loader does not know the module " + module.Name());
  }
  auto* const base = reinterpret_cast<std::uint8_t*>(handle);
  const auto& headers =
      *At<IMAGE_NT_HEADERS64>(base, static_cast<DWORD>(At<IMAGE_DOS_HEADER>(base, 0)->e_lfanew));
  const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  std::vector<ImportedFunction> imports;
  for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(base, directory.VirtualAddress);
       library->Name != 0; ++library) {
    auto* names = At<IMAGE_THUNK_DATA64>(base, library->OriginalFirstThunk);
    auto* addresses = At<IMAGE_THUNK_DATA64>(base, library->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
      const auto* const name = At<IMAGE_IMPORT_BY_NAME>(base, names->u1.AddressOfData);
      imports.push_back({reinterpret_cast<const char*>(name->Name),
                         reinterpret_cast<void**>(&addresses->u1.Function)});
    }
  }
  return imports;
}

void WriteImport(void** address, void* value) {
  DWORD before = 0;
  if (VirtualProtect(address, sizeof(*address), PAGE_READWRITE, &before) == 0) {
    throw std::runtime_error("the module's tables cannot be written");
  }
  *address = value;
}

const std::map<std::string, void*>& CountingFunctions() {
  static const std::map<std::string, void*> functions = {
      {"malloc", Address(Malloc)},   {"calloc", Address(Calloc)},
      {"realloc", Address(Realloc)}, {"_aligned_malloc", Address(AlignedMalloc)},
      {"free", Address(Free)},       {"_aligned_free", Address(AlignedFree)},
  };
  return functions;
}

}  // namespace vitrell::reliability
