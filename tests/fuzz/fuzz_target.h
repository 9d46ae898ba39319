// What every fuzz target shares: the function that is called with the bytes, and how it complains.
#ifndef VITRELL_FUZZ_FUZZ_TARGET_H_
#define VITRELL_FUZZ_FUZZ_TARGET_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/host_api.h"

// Answers 0. A finding ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// The effect, linked in: its objects are instrumented together with the target.
extern "C" PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                 PF_ParamDef* params[], PF_LayerDef* output, void* extra);

namespace vitrell::fuzz {

// Also in builds without assertions.
inline void Require(bool holds, const std::string& complaint) {
  if (holds) return;
  std::fprintf(stderr, "finding: %s\n", complaint.c_str());
  std::abort();
}

}  // namespace vitrell::fuzz

#endif  // VITRELL_FUZZ_FUZZ_TARGET_H_
