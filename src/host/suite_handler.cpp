// Acquires the host's function suites on first use and gives every one of them back.
#include "host/suite_handler.h"

namespace vitrell {

AEGP_SuiteHandler::AEGP_SuiteHandler(const SPBasicSuite* basic) : basic_(basic) {
  if (basic_ == nullptr) {
    MissingSuiteError();
  }
}

const PF_ANSICallbacksSuite1* AEGP_SuiteHandler::ANSICallbacksSuite1() {
  return static_cast<const PF_ANSICallbacksSuite1*>(Acquire(kPFAnsiSuite, kPFAnsiSuiteVersion1));
}

const PF_ParamUtilsSuite3* AEGP_SuiteHandler::ParamUtilsSuite3() {
  return static_cast<const PF_ParamUtilsSuite3*>(
      Acquire(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3));
}

const PF_Iterate8Suite1* AEGP_SuiteHandler::Iterate8Suite1() {
  return static_cast<const PF_Iterate8Suite1*>(Acquire(kPFIterate8Suite, kPFIterate8SuiteVersion1));
}

const PF_iterate16Suite1* AEGP_SuiteHandler::Iterate16Suite1() {
  return static_cast<const PF_iterate16Suite1*>(
      Acquire(kPFIterate16Suite, kPFIterate16SuiteVersion1));
}

const PF_WorldSuite2* AEGP_SuiteHandler::WorldSuite2() {
  return static_cast<const PF_WorldSuite2*>(Acquire(kPFWorldSuite, kPFWorldSuiteVersion2));
}

void AEGP_SuiteHandler::ReleaseAllSuites() noexcept {
  for (std::size_t i = 0; i < count_; ++i) {
    // A suite that cannot be given back is the host's own trouble; the command's result stands.
    static_cast<void>(basic_->ReleaseSuite(acquired_[i].name, acquired_[i].version));
  }
  count_ = 0;
}

void AEGP_SuiteHandler::MissingSuiteError() { throw PF_Err{PF_Err_BAD_CALLBACK_PARAM}; }

const void* AEGP_SuiteHandler::Acquire(const char* name, std::int32_t version) {
  for (std::size_t i = 0; i < count_; ++i) {
    if (acquired_[i].name == name) {
      return acquired_[i].suite;
    }
  }
  const void* suite = nullptr;
  if (basic_->AcquireSuite(name, version, &suite) != 0 || suite == nullptr) {
    MissingSuiteError();
  }
  acquired_[count_++] = {name, version, suite};
  return suite;
}

}  // namespace vitrell
