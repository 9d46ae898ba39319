// What AllocationFaults needs of the operating system. One source file for each system,
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
// Counts a block that was given, if it was, and hands it on.
void* Counted(void* block);
// Counts a block that is given back, if there is one.
void Uncount(const void* block);

// A function that a module imports, and where its code looks the address up.
struct ImportedFunction {
  std::string name;
  void** address;
};
// Throws std::runtime_error when the loader does not know the module.
std::vector<ImportedFunction> ImportsOf(const headless::EffectModule& module);

// Writes one such address, which may lie in a page that the loader has closed.
void WriteImport(void** address, void* value);

// The functions that count and then do what the system's own do, by the names that the loader
// knows.
const std::map<std::string, void*>& CountingFunctions();

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_ALLOCATION_SYSTEM_H_
