// The record that __builtin_cpu_supports reads. Apple's compilers supply it in a library; the cross
// build has to define it. Only the features that the effect asks for are filled in: AVX2 and
// AVX-512 F.
#include <cpuid.h>

#include <cstdint>

namespace {

// Bit positions that the compiler tests.
constexpr unsigned kAvx2Feature = 1u << 10;
constexpr unsigned kAvx512Feature = 1u << 15;
constexpr std::uint32_t kYmmState = 6;

std::uint32_t EnabledStates() {
  std::uint32_t low = 0;
  std::uint32_t high = 0;
  __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

unsigned Features() {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0 || (c & bit_OSXSAVE) == 0 ||
      (EnabledStates() & kYmmState) != kYmmState || __get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) {
    return 0;
  }
  // The operating system's AVX-512 state bits are not tested: macOS enables that state only when a
  // thread first executes such an instruction.
  return ((b & bit_AVX2) != 0 ? kAvx2Feature : 0) | ((b & bit_AVX512F) != 0 ? kAvx512Feature : 0);
}

struct CpuModel {
  unsigned vendor;
  unsigned type;
  unsigned subtype;
  unsigned features[1];
};

}  // namespace

extern "C" {
extern CpuModel vitrellCpuModel __asm__("___cpu_model");
__attribute__((visibility("hidden"))) CpuModel vitrellCpuModel = {0, 0, 0, {Features()}};
}
