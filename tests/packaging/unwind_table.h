// The unwind information of a Mach-O image, in the form that another system's unwinder reads.
#ifndef VITRELL_TESTS_PACKAGING_UNWIND_TABLE_H_
#define VITRELL_TESTS_PACKAGING_UNWIND_TABLE_H_

#include <cstdint>
#include <vector>

namespace vitrell::packaging {

// One function of an image's compact unwind table. Addresses count from the image's address 0.
struct UnwindFunction {
  std::uint64_t begin;
  std::uint64_t end;
  std::uint32_t encoding;     // How its frame is laid out; see CallFrameRecords.
  std::uint64_t exceptions;   // Its table of handlers; 0 if it has none.
  std::uint64_t personality;  // Where the address of the function that reads it lies; 0 if none.
};

// Reads the section __unwind_info, whose pages may be regular or compressed. Throws
// std::runtime_error for a table that cannot be.
std::vector<UnwindFunction> ReadCompactUnwind(const std::uint8_t* section, std::uint64_t size);

// Call frame records in the form of the section .eh_frame for the functions that keep a frame
// pointer, each after a common record of its own. A function with handlers that keeps none is an
// error (std::runtime_error); others without a frame pointer are left out. `base` is where the
// image's address 0 lies. The records end with the vector.
std::vector<std::uint8_t> CallFrameRecords(const std::vector<UnwindFunction>& functions,
                                           const std::uint8_t* base);

}  // namespace vitrell::packaging

#endif  // VITRELL_TESTS_PACKAGING_UNWIND_TABLE_H_
