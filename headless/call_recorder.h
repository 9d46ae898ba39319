// Logs host calls and injects the failures planned for them.
#ifndef VITRELL_HEADLESS_CALL_RECORDER_H_
#define VITRELL_HEADLESS_CALL_RECORDER_H_

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include "headless/call_log.h"
#include "headless/faults.h"
#include "host/host_api.h"

namespace vitrell::headless {

// Safe to use from several threads. Calls are logged in the order in which they began.
class CallRecorder {
 public:
  void Start();
  const std::vector<HostCall>& Calls() const { return calls_; }
  Faults& GetFaults() { return faults_; }

 private:
  friend class RecordedCall;
  using Clock = std::chrono::steady_clock;

  std::mutex mutex_;
  Clock::time_point start_ = Clock::now();
  std::vector<HostCall> calls_;
  Faults faults_;
};

// One host call, from entry to return.
class RecordedCall {
 public:
  RecordedCall(CallRecorder& recorder, CallKind kind);
  RecordedCall(const RecordedCall&) = delete;
  RecordedCall& operator=(const RecordedCall&) = delete;

  // The planned failure of this call, or 0.
  PF_Err Fault() const { return fault_; }
  // Completes the log line and returns the result.
  PF_Err Answer(std::string text, PF_Err result);

 private:
  CallRecorder& recorder_;
  std::size_t position_ = 0;
  PF_Err fault_ = PF_Err_NONE;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_CALL_RECORDER_H_
