// Failures that the host plays on purpose, to see what the effect makes of them.
#ifndef VITRELL_HEADLESS_FAULTS_H_
#define VITRELL_HEADLESS_FAULTS_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "headless/call_log.h"
#include "host/host_api.h"

namespace vitrell::headless {

// What a failing new_world leaves in the record that it was to fill.
enum class FailedWorldRecord { kCleared, kJunk };

// A list of failures. Call counts start at 1 with every command sent by a public function of
// EffectHost (Render counts over its three commands); the list itself stays until Clear().
//
// A failing call does nothing but answer the error. The calls that give something back
// (checkin_param, dispose_world, release_suite) do their work and then answer the error.
class Faults {
 public:
  // The nth call of the kind answers `error`; with kAny the nth call of all kinds. n from 1.
  void FailNth(CallKind kind, int n, PF_Err error);
  // Acquiring this suite answers kSPSuiteNotFoundError. Version 0 stands for all versions.
  void RefuseSuite(std::string name, std::int32_t version = 0);
  void SetFailedWorldRecord(FailedWorldRecord record) { failedWorldRecord_ = record; }
  // in_data->pica_basicP is null from the next command on.
  void SetNullBasicSuite(bool null) { nullBasicSuite_ = null; }
  void Clear();

  // For the host itself.
  void StartCounting();
  PF_Err NextCall(CallKind kind);  // Counts a call; the error it must answer, or 0.
  bool IsRefused(const std::string& name, std::int32_t version) const;
  FailedWorldRecord GetFailedWorldRecord() const { return failedWorldRecord_; }
  bool NullBasicSuite() const { return nullBasicSuite_; }

 private:
  struct Fault {
    CallKind kind;
    int n;
    PF_Err error;
  };
  struct Refusal {
    std::string name;
    std::int32_t version;
  };
  static constexpr std::size_t kKinds = static_cast<std::size_t>(CallKind::kUpdateParamUI) + 1;

  std::vector<Fault> faults_;
  std::vector<Refusal> refusals_;
  std::array<int, kKinds> counts_{};
  FailedWorldRecord failedWorldRecord_ = FailedWorldRecord::kCleared;
  bool nullBasicSuite_ = false;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_FAULTS_H_
