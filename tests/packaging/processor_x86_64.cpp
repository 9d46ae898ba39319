// Intel: both systems call functions in the same way.
#include <stdexcept>

#include "packaging/processor.h"

namespace vitrell::packaging {

const char* const kSlice = "x86_64";
const FrameRules kFrameRules = {0x01000000, 6, 16};

// Five fields of three bits number the registers from the lowest address upwards; bits 16 to 23
// tell how far below the frame pointer the first one lies.
std::vector<SavedRegister> SavedRegisters(std::uint32_t encoding) {
  constexpr int kNumberOf[] = {0, 3, 12, 13, 14, 15};  // rbx, r12 to r15.
  const std::uint32_t offset = (encoding >> 16) & 0xFF;
  std::vector<SavedRegister> registers;
  for (std::uint32_t i = 0; i < 5; ++i) {
    const std::uint32_t saved = (encoding >> (3 * i)) & 7;
    if (saved == 0) continue;
    if (saved > 5) throw std::runtime_error("an unwind entry saves no known register");
    registers.push_back({kNumberOf[saved], 2 + offset - i});
  }
  return registers;
}

PF_EntryPoint AdaptEntryPoint(PF_EntryPoint image) { return image; }

}  // namespace vitrell::packaging
