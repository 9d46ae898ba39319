// Acquires the host's function suites on first use and gives every one of them back.
#ifndef VITRELL_HOST_SUITE_HANDLER_H_
#define VITRELL_HOST_SUITE_HANDLER_H_

#include <cstddef>
#include <cstdint>

#include "host/host_api.h"

namespace vitrell {

// Lives on the stack of one command or one stage; not shared between threads.
//
// A suite is acquired when it is first asked for and kept until ReleaseAllSuites() or the end of
// the handler's life, whichever comes first; suites are given back in the order of acquisition.
class AEGP_SuiteHandler {
 public:
  // Throws (MissingSuiteError) when basic is null.
  explicit AEGP_SuiteHandler(const SPBasicSuite* basic);
  ~AEGP_SuiteHandler() { ReleaseAllSuites(); }
  AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
  AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

  // Each accessor throws (MissingSuiteError) when the host refuses the suite or the suite lacks the
  // function that the effect calls; never null.
  const PF_ANSICallbacksSuite1* ANSICallbacksSuite1();
  const PF_ParamUtilsSuite3* ParamUtilsSuite3();
  const PF_Iterate8Suite1* Iterate8Suite1();
  const PF_iterate16Suite1* Iterate16Suite1();
  const PF_WorldSuite2* WorldSuite2();

  // Gives back what was acquired and forgets it, so that nothing is ever released twice.
  void ReleaseAllSuites() noexcept;

  // Throws PF_Err_BAD_CALLBACK_PARAM as a plain integer; the entry point turns it into the
  // command's result.
  [[noreturn]] static void MissingSuiteError();

 private:
  struct Acquired {
    const char* name;
    std::int32_t version;
    const void* suite;
  };
  static constexpr std::size_t kMaxSuites = 5;

  const void* Acquire(const char* name, std::int32_t version);

  const SPBasicSuite* basic_;
  Acquired acquired_[kMaxSuites] = {};
  std::size_t count_ = 0;
};

}  // namespace vitrell

#endif  // VITRELL_HOST_SUITE_HANDLER_H_
