// Intercepts the memory functions that the loaded module imports.
#ifndef VITRELL_RELIABILITY_ALLOCATION_FAULTS_H_
#define VITRELL_RELIABILITY_ALLOCATION_FAULTS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "headless/effect_module.h"

namespace vitrell::reliability {

// As long as the object lives, the module's own calls of malloc, calloc, realloc, the aligned
// allocators, every operator new and everything that gives memory back are counted, and one
// allocation can be made to fail. The addresses that the loader put into the module's tables are
// replaced, so that only the module is affected: neither the host nor the test, and sanitizers stay
// in force beneath. One object at a time; the module may be used from several threads.
class AllocationFaults {
 public:
  explicit AllocationFaults(const headless::EffectModule& module);
  ~AllocationFaults();
  AllocationFaults(const AllocationFaults&) = delete;
  AllocationFaults& operator=(const AllocationFaults&) = delete;

  // Starts counting anew; the nth allocation from now on fails, n from 1. With 0 none does.
  // With `andAllLater` every one after it fails, too.
  void FailNth(int n, bool andAllLater = false);
  // Allocations since FailNth, the failed one included.
  int Count() const;
  // Of these, how many were made to fail.
  int Failed() const;
  // Blocks that the module has allocated since this object was made and not freed.
  std::int64_t LiveBlocks() const;

  // The imported functions that are stood between, and all functions that the module imports.
  const std::vector<std::string>& Hooked() const { return hooked_; }
  const std::vector<std::string>& Imported() const { return imported_; }

 private:
  struct Slot {
    void** address;
    void* original;
  };
  void Replace(void** address, const std::string& name);

  std::vector<Slot> slots_;
  std::vector<std::string> hooked_;
  std::vector<std::string> imported_;
};

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_ALLOCATION_FAULTS_H_
