// The operating system's functions that AllocationFaults uses. Each system has its own source file,
// allocation_system_*.cpp.
#ifndef VITRELL_RELIABILITY_ALLOCATION_SYSTEM_H_
#define VITRELL_RELIABILITY_ALLOCATION_SYSTEM_H_

#include <map>
#include <string>
#include <vector>

#include "headless/effect_module.h"

namespace vitrell::reliability {

// Counts an allocation; true when it must fail.
bool MustFail();
// Counts a block if it is not null, and returns it.
void* Counted(void* block);
// Counts the release of a block that is not null.
void Uncount(const void* block);

// A function that a module imports, and the table entry from which its code takes the address.
struct ImportedFunction {
  std::string name;
  void** address;
};
// Throws std::runtime_error when the loader does not know the module.
std::vector<ImportedFunction> ImportsOf(const headless::EffectModule& module);

// Overwrites such an entry, which may lie in a page that the loader has made read-only.
void WriteImport(void** address, void* value);

// Replacements that count and then call the system's own functions, by the names that the loader
// uses.
const std::map<std::string, void*>& CountingFunctions();

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_ALLOCATION_SYSTEM_H_
