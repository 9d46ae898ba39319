// Linux: the tables of the dynamic loader.
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
#include <new>
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

void* AlignedAlloc(std::size_t alignment, std::size_t size) {
  return MustFail() ? nullptr : Counted(std::aligned_alloc(alignment, size));
}

int PosixMemalign(void** block, std::size_t alignment, std::size_t size) {
  if (MustFail()) return 12;  // ENOMEM
  const int result = posix_memalign(block, alignment, size);
  if (result == 0) Counted(*block);
  return result;
}

void Free(void* block) {
  Uncount(block);
  std::free(block);
}

void* New(std::size_t size) {
  if (MustFail()) throw std::bad_alloc();
  return Counted(::operator new(size));
}

void* NewArray(std::size_t size) {
  if (MustFail()) throw std::bad_alloc();
  return Counted(::operator new[](size));
}

void* NewNothrow(std::size_t size, const std::nothrow_t& tag) noexcept {
  return MustFail() ? nullptr : Counted(::operator new(size, tag));
}

void* NewArrayNothrow(std::size_t size, const std::nothrow_t& tag) noexcept {
  return MustFail() ? nullptr : Counted(::operator new[](size, tag));
}

void* NewAligned(std::size_t size, std::align_val_t alignment) {
  if (MustFail()) throw std::bad_alloc();
  return Counted(::operator new(size, alignment));
}

void* NewArrayAligned(std::size_t size, std::align_val_t alignment) {
  if (MustFail()) throw std::bad_alloc();
  return Counted(::operator new[](size, alignment));
}

void* NewAlignedNothrow(std::size_t size, std::align_val_t alignment,
                        const std::nothrow_t& tag) noexcept {
  return MustFail() ? nullptr : Counted(::operator new(size, alignment, tag));
}

void* NewArrayAlignedNothrow(std::size_t size, std::align_val_t alignment,
                             const std::nothrow_t& tag) noexcept {
  return MustFail() ? nullptr : Counted(::operator new[](size, alignment, tag));
}

void Delete(void* block) noexcept {
  Uncount(block);
  ::operator delete(block);
}

void DeleteArray(void* block) noexcept {
  Uncount(block);
  ::operator delete[](block);
}

void DeleteSized(void* block, std::size_t /*size*/) noexcept { Delete(block); }

void DeleteArraySized(void* block, std::size_t /*size*/) noexcept { DeleteArray(block); }

void DeleteAligned(void* block, std::align_val_t alignment) noexcept {
  Uncount(block);
  ::operator delete(block, alignment);
}

void DeleteArrayAligned(void* block, std::align_val_t alignment) noexcept {
  Uncount(block);
  ::operator delete[](block, alignment);
}

void DeleteSizedAligned(void* block, std::size_t /*size*/, std::align_val_t alignment) noexcept {
  DeleteAligned(block, alignment);
}

void DeleteArraySizedAligned(void* block, std::size_t /*size*/,
                             std::align_val_t alignment) noexcept {
  DeleteArrayAligned(block, alignment);
}

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

// The loader's own tables of one module.
struct DynamicTables {
  const ElfW(Sym) * symbols = nullptr;
  const char* names = nullptr;
  struct {
    const ElfW(Rela) * entries = nullptr;
    std::size_t bytes = 0;
  } data, calls;
};

DynamicTables TablesOf(const link_map& module) {
  DynamicTables tables;
  for (const ElfW(Dyn)* entry = module.l_ld; entry->d_tag != DT_NULL; ++entry) {
    switch (entry->d_tag) {
      case DT_SYMTAB:
        tables.symbols = reinterpret_cast<const ElfW(Sym)*>(entry->d_un.d_ptr);
        break;
      case DT_STRTAB:
        tables.names = reinterpret_cast<const char*>(entry->d_un.d_ptr);
        break;
      case DT_RELA:
        tables.data.entries = reinterpret_cast<const ElfW(Rela)*>(entry->d_un.d_ptr);
        break;
      case DT_RELASZ:
        tables.data.bytes = entry->d_un.d_val;
        break;
      case DT_JMPREL:
        tables.calls.entries = reinterpret_cast<const ElfW(Rela)*>(entry->d_un.d_ptr);
        break;
      case DT_PLTRELSZ:
        tables.calls.bytes = entry->d_un.d_val;
        break;
      default:
        break;
    }
  }
  return tables;
}

link_map* LinkMapOf(const headless::EffectModule& module) {
  Dl_info info;
  void* map = nullptr;
  if (dladdr1(reinterpret_cast<void*>(module.EntryPoint()), &info, &map, RTLD_DL_LINKMAP) == 0) {
    throw std::runtime_error("the loader does not know the module " + module.Name());
  }
  return static_cast<link_map*>(map);
}

}  // namespace

std::vector<ImportedFunction> ImportsOf(const headless::EffectModule& module) {
  const link_map& map = *LinkMapOf(module);
  const DynamicTables tables = TablesOf(map);
  std::vector<ImportedFunction> imports;
  for (const auto& part : {tables.data, tables.calls}) {
    for (std::size_t i = 0; i < part.bytes / sizeof(ElfW(Rela)); ++i) {
      const ElfW(Rela)& relocation = part.entries[i];
      const ElfW(Sym)& symbol = tables.symbols[ELF64_R_SYM(relocation.r_info)];
      const std::string name = tables.names + symbol.st_name;
      if (!name.empty() && symbol.st_shndx == SHN_UNDEF) {
        imports.push_back({name, reinterpret_cast<void**>(map.l_addr + relocation.r_offset)});
      }
    }
  }
  return imports;
}

void WriteImport(void** address, void* value) {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  void* const begin =
      reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(address) & ~(page - 1));
  if (mprotect(begin, page, PROT_READ | PROT_WRITE) != 0) {
    throw std::runtime_error("the module's tables cannot be written");
  }
  *address = value;
}

// The m in the names is unsigned long, which is what size_t is here.
const std::map<std::string, void*>& CountingFunctions() {
  static const std::map<std::string, void*> functions = {
      {"malloc", Address(Malloc)},
      {"calloc", Address(Calloc)},
      {"realloc", Address(Realloc)},
      {"aligned_alloc", Address(AlignedAlloc)},
      {"memalign", Address(AlignedAlloc)},
      {"posix_memalign", Address(PosixMemalign)},
      {"free", Address(Free)},
      {"_Znwm", Address(New)},
      {"_Znam", Address(NewArray)},
      {"_ZnwmRKSt9nothrow_t", Address(NewNothrow)},
      {"_ZnamRKSt9nothrow_t", Address(NewArrayNothrow)},
      {"_ZnwmSt11align_val_t", Address(NewAligned)},
      {"_ZnamSt11align_val_t", Address(NewArrayAligned)},
      {"_ZnwmSt11align_val_tRKSt9nothrow_t", Address(NewAlignedNothrow)},
      {"_ZnamSt11align_val_tRKSt9nothrow_t", Address(NewArrayAlignedNothrow)},
      {"_ZdlPv", Address(Delete)},
      {"_ZdaPv", Address(DeleteArray)},
      {"_ZdlPvm", Address(DeleteSized)},
      {"_ZdaPvm", Address(DeleteArraySized)},
      {"_ZdlPvSt11align_val_t", Address(DeleteAligned)},
      {"_ZdaPvSt11align_val_t", Address(DeleteArrayAligned)},
      {"_ZdlPvmSt11align_val_t", Address(DeleteSizedAligned)},
      {"_ZdaPvmSt11align_val_t", Address(DeleteArraySizedAligned)},
  };
  return functions;
}

}  // namespace vitrell::reliability
