// Acquires the host's function suites on first use and releases all of them.
#include "host/suite_handler.h"

namespace vitrell {
namespace {

// A suite that lacks the one function that the effect calls counts as missing.
template <typename Suite, typename Function>
const Suite* WithFunction(const void* acquired, Function Suite::*function) {
  const auto* const suite = static_cast<const Suite*>(acquired);
  if (suite->*function == nullptr) {
    AEGP_SuiteHandler::MissingSuiteError();
  }
  return suite;
}

}  // namespace

AEGP_SuiteHandler::AEGP_SuiteHandler(const SPBasicSuite* basic) : basic_(basic) {
  if (basic_ == nullptr) {
    MissingSuiteError();
  }
}

const PF_ANSICallbacksSuite1* AEGP_SuiteHandler::ANSICallbacksSuite1() {
  return WithFunction(Acquire(kPFAnsiSuite, kPFAnsiSuiteVersion1),
                      &PF_ANSICallbacksSuite1::sprintf);
}

const PF_ParamUtilsSuite3* AEGP_SuiteHandler::ParamUtilsSuite3() {
  return WithFunction(Acquire(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3),
                      &PF_ParamUtilsSuite3::PF_UpdateParamUI);
}

const PF_Iterate8Suite1* AEGP_SuiteHandler::Iterate8Suite1() {
  return WithFunction(Acquire(kPFIterate8Suite, kPFIterate8SuiteVersion1),
                      &PF_Iterate8Suite1::iterate);
}

const PF_iterate16Suite1* AEGP_SuiteHandler::Iterate16Suite1() {
  return WithFunction(Acquire(kPFIterate16Suite, kPFIterate16SuiteVersion1),
                      &PF_iterate16Suite1::iterate);
}

const PF_WorldSuite2* AEGP_SuiteHandler::WorldSuite2() {
  return WithFunction(Acquire(kPFWorldSuite, kPFWorldSuiteVersion2),
                      &PF_WorldSuite2::PF_GetPixelFormat);
}

void AEGP_SuiteHandler::ReleaseAllSuites() noexcept {
  for (std::size_t i = 0; i < count_; ++i) {
    // A failed release is ignored: the command's result does not depend on it.
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
  if (basic_->AcquireSuite == nullptr || basic_->ReleaseSuite == nullptr ||
      basic_->AcquireSuite(name, version, &suite) != 0 || suite == nullptr) {
    MissingSuiteError();
  }
  acquired_[count_++] = {name, version, suite};
  return suite;
}

}  // namespace vitrell
