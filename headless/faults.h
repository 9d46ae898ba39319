// Host calls that are made to fail on purpose, to test the effect's error paths.
#ifndef VITRELL_HEADLESS_FAULTS_H_
#define VITRELL_HEADLESS_FAULTS_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "headless/call_log.h"
#include "host/host_api.h"

namespace vitrell::headless {

// What a failing new_world leaves in the record that it should fill.
enum class FailedWorldRecord { kCleared, kJunk };

// A list of planned failures. Calls are counted from 1 for every public function of EffectHost that
// sends commands (Render counts across its three); the list itself remains until Clear().
//
// A failing call does nothing except return the error. The calls that give something back
// (checkin_param, dispose_world, release_suite) do their work and then return the error.
class Faults {
 public:
  // The nth call of the kind returns `error`; with kAny, the nth call of any kind. n starts at 1.
  void FailNth(CallKind kind, int n, PF_Err error);
  // Acquiring this suite returns kSPSuiteNotFoundError. Version 0 matches every version.
  void RefuseSuite(std::string name, std::int32_t version = 0);
  void SetFailedWorldRecord(FailedWorldRecord record) { failedWorldRecord_ = record; }
  // in_data->pica_basicP is null from the next command on.
  void SetNullBasicSuite(bool null) { nullBasicSuite_ = null; }
  void Clear();

  // For the host itself.
  void StartCounting();
  PF_Err NextCall(CallKind kind);  // Counts a call; returns the error to inject, or 0.
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
