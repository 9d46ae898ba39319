// The processor-specific part of running a Mach-O image in a Linux process. Each processor has its
// own source file.
#ifndef VITRELL_TESTS_PACKAGING_PROCESSOR_H_
#define VITRELL_TESTS_PACKAGING_PROCESSOR_H_

#include <cstdint>
#include <vector>

#include "host/host_api.h"

namespace vitrell::packaging {

// The slice of a universal file that this processor runs.
extern const char* const kSlice;

// Compact unwinding of a function that keeps a frame pointer. The frame pointer points at the
// caller's, the return address lies above it, and the frame's canonical address above that.
struct FrameRules {
  std::uint32_t mode;  // How an encoding tells such a function, under its mode mask.
  int framePointer;    // Registers by their DWARF numbers.
  int returnAddress;
};
extern const FrameRules kFrameRules;

// A register that a function keeps, 8 bytes each, at a distance below the canonical address.
struct SavedRegister {
  int number;
  std::uint32_t distance;  // In units of 8 bytes.
};
// Those that an encoding of kFrameRules.mode names. Throws std::runtime_error for unknown ones.
std::vector<SavedRegister> SavedRegisters(std::uint32_t encoding);

// An entry point that a Linux host calls to reach `image`, which was compiled for macOS. Where the
// two calling conventions differ, the image gets host functions that understand its own. At most
// one image in a process.
PF_EntryPoint AdaptEntryPoint(PF_EntryPoint image);

}  // namespace vitrell::packaging

#endif  // VITRELL_TESTS_PACKAGING_PROCESSOR_H_
