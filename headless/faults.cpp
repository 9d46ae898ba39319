// Counts host calls and matches them against the planned failures.
#include "headless/faults.h"

#include <algorithm>
#include <utility>

namespace vitrell::headless {

void Faults::FailNth(CallKind kind, int n, PF_Err error) { faults_.push_back({kind, n, error}); }

void Faults::RefuseSuite(std::string name, std::int32_t version) {
  refusals_.push_back({std::move(name), version});
}

void Faults::Clear() { *this = Faults(); }

void Faults::StartCounting() { counts_.fill(0); }

PF_Err Faults::NextCall(CallKind kind) {
  const int ofKind = ++counts_[static_cast<std::size_t>(kind)];
  const int ofAll = ++counts_[static_cast<std::size_t>(CallKind::kAny)];
  for (const Fault& fault : faults_) {
    const bool due =
        fault.kind == CallKind::kAny ? fault.n == ofAll : fault.kind == kind && fault.n == ofKind;
    if (due) return fault.error;
  }
  return PF_Err_NONE;
}

bool Faults::IsRefused(const std::string& name, std::int32_t version) const {
  return std::any_of(refusals_.begin(), refusals_.end(), [&](const Refusal& refusal) {
    return refusal.name == name && (refusal.version == 0 || refusal.version == version);
  });
}

}  // namespace vitrell::headless
