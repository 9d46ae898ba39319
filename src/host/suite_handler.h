// Acquires the host's function suites on first use and releases all of them.
#ifndef VITRELL_HOST_SUITE_HANDLER_H_
#define VITRELL_HOST_SUITE_HANDLER_H_

#include <cstddef>
#include <cstdint>

#include "host/host_api.h"

namespace vitrell {

// Lives on the stack of one command or one stage; not shared between threads.
//
// A suite is acquired on first use and held until ReleaseAllSuites() or the destructor; suites are
// released in the order of acquisition.
class AEGP_SuiteHandler {
 public:
  // Throws (MissingSuiteError) when basic is null.
  explicit AEGP_SuiteHandler(const SPBasicSuite* basic);
  ~AEGP_SuiteHandler() { ReleaseAllSuites(); }
  AEGP_SuiteHandler(const AEGP_SuiteHandler&) = delete;
  AEGP_SuiteHandler& operator=(const AEGP_SuiteHandler&) = delete;

  // The accessors never return null: they throw (MissingSuiteError) if the host refuses the suite,
  // or if the suite lacks the function that the effect calls.
  const PF_ANSICallbacksSuite1* ANSICallbacksSuite1();
  const PF_ParamUtilsSuite3* ParamUtilsSuite3();
  const PF_Iterate8Suite1* Iterate8Suite1();
  const PF_iterate16Suite1* Iterate16Suite1();
  const PF_WorldSuite2* WorldSuite2();

  // Releases the acquired suites and forgets them, so that none is released twice.
  void ReleaseAllSuites() noexcept;

  // Throws PF_Err_BAD_CALLBACK_PARAM as a plain integer; the entry point returns it as the
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
