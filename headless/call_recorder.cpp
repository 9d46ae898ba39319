// Records time stamps, positions and results of host calls.
#include "headless/call_recorder.h"

#include <utility>

namespace vitrell::headless {

void CallRecorder::Start() {
  const std::lock_guard<std::mutex> lock(mutex_);
  calls_.clear();
  faults_.StartCounting();
  start_ = Clock::now();
}

RecordedCall::RecordedCall(CallRecorder& recorder, CallKind kind) : recorder_(recorder) {
  const std::lock_guard<std::mutex> lock(recorder_.mutex_);
  position_ = recorder_.calls_.size();
  fault_ = recorder_.faults_.NextCall(kind);
  HostCall& call = recorder_.calls_.emplace_back();
  call.kind = kind;
  call.startSeconds =
      std::chrono::duration<double>(CallRecorder::Clock::now() - recorder_.start_).count();
}

PF_Err RecordedCall::Answer(std::string text, PF_Err result) {
  const std::lock_guard<std::mutex> lock(recorder_.mutex_);
  HostCall& call = recorder_.calls_[position_];
  call.result = result;
  call.text = std::move(text);
  if (result != PF_Err_NONE) call.text += " fails with " + std::to_string(result);
  call.seconds =
      std::chrono::duration<double>(CallRecorder::Clock::now() - recorder_.start_).count() -
      call.startSeconds;
  return result;
}

}  // namespace vitrell::headless
