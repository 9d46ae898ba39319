// Small frames first, exact ones when the hand rests.
#include "panel/model/render_worker.h"

#include <utility>

#include "panel/model/answering.h"
#include "panel/model/module_copy.h"

namespace vitrell::panel {

RenderWorker::RenderWorker(const std::shared_ptr<const headless::EffectModule>& module,
                           std::function<void()> answered)
    : answered_(std::move(answered)),
      exact_(module, smaller_, [this](const ExactWorker::Order& order) { TakeExact(order); }),
      thread_([this, module] { Run(module); }) {}

RenderWorker::~RenderWorker() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    cancel_ = true;
    exact_.Stop();
  }
  wake_.notify_all();
  thread_.join();
}

std::uint64_t RenderWorker::Put(RenderRequest request) {
  const std::lock_guard lock(mutex_);
  next_.emplace(Job{++newest_, std::move(request)});
  StopIfOutdated();
  exact_.Stop();
  wake_.notify_all();
  return newest_;
}

void RenderWorker::Cancel() {
  const std::lock_guard lock(mutex_);
  next_.reset();
  ++newest_;
  cancel_ = true;
  exact_.Stop();
}

bool RenderWorker::StopOutdated() {
  const std::lock_guard lock(mutex_);
  return StopIfOutdated();
}

bool RenderWorker::StopIfOutdated() {
  if (!running_ || running_->number == newest_) return false;
  if (Clock::now() - running_->start < kPatience) return true;
  cancel_ = true;
  return false;
}

std::optional<RenderAnswer> RenderWorker::Take() {
  const std::lock_guard lock(mutex_);
  if (answers_.empty()) return {};
  std::optional<RenderAnswer> answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

std::optional<RenderWorker::Job> RenderWorker::WaitForJob() {
  std::unique_lock lock(mutex_);
  wake_.wait(lock, [this] { return ends_ || next_; });
  if (ends_) return {};
  return std::exchange(next_, std::nullopt);
}

void RenderWorker::Give(RenderAnswer answer) {
  {
    const std::lock_guard lock(mutex_);
    answers_.push_back(std::move(answer));
  }
  answered_();
}

void RenderWorker::HandOver(ExactWorker::Order order) {
  const std::lock_guard lock(mutex_);
  if (newest_ == order.answer.request) exact_.Put(std::move(order));
}

void RenderWorker::TakeExact(const ExactWorker::Order& order) {
  if (order.answer.world != nullptr) store_.Keep(order.request, order.key, order.answer);
  {
    const std::lock_guard lock(mutex_);
    if (ends_ || newest_ != order.answer.request) return;
    answers_.push_back(order.answer);
  }
  answered_();
}

void RenderWorker::Run(std::shared_ptr<const headless::EffectModule> module) {
  module = LoadAgain(module);
  std::optional<FrameEffect> effect;
  while (const std::optional<Job> job = WaitForJob()) {
    try {
      if (!effect) effect.emplace(module, smaller_);
      Serve(*effect, *job);
    } catch (const std::exception& failure) {
      Give(AnswerOfFailure(job->number, failure));
    }
  }
}

void RenderWorker::Serve(FrameEffect& effect, const Job& job) {
  ExactWorker::Order order{job.request, {}, FrameStore::KeyOf(job.request)};
  order.answer.request = job.number;
  if (!ReadFrame(order.request, order.answer) || GiveKept(order)) return;
  if (watch_.SeesOther(job.request.settings)) budget_.Forget();
  if (previewed_ == order.key || GiveSmall(effect, order)) HandOver(std::move(order));
}

bool RenderWorker::ReadFrame(const RenderRequest& request, RenderAnswer& answer) {
  const Clock::time_point start = Clock::now();
  try {
    if (store_.Read(request, answer)) previewed_.clear();
  } catch (const media::Failure& failure) {
    answer.message = QString::fromStdString(failure.what());
    Give(answer);
    return false;
  }
  answer.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  return true;
}

bool RenderWorker::GiveKept(const ExactWorker::Order& order) {
  if (order.request.wantMask) return false;
  RenderAnswer answer = order.answer;
  if (!store_.Find(order.request, order.key, answer)) return false;
  Give(std::move(answer));
  return true;
}

bool RenderWorker::GiveSmall(FrameEffect& effect, const ExactWorker::Order& order) {
  const SourceFrame& frame = *order.answer.frame;
  const std::int64_t pixels = std::int64_t{frame.Width()} * frame.Height();
  int divisor = budget_.DivisorFor(pixels);
  Ending ending = Render(effect, order, divisor, true);
  if (ending == Ending::kTooSlow) {
    divisor = budget_.DivisorFor(pixels);
    ending = Render(effect, order, divisor, false);
  }
  if (ending != Ending::kAnswered || divisor == 1) return false;
  previewed_ = order.key;
  return true;
}

RenderWorker::Ending RenderWorker::Render(FrameEffect& effect, ExactWorker::Order order,
                                          int divisor, bool mayBeTooSlow) {
  RenderAnswer& answer = order.answer;
  const Clock::time_point start = Clock::now();
  {
    const std::lock_guard lock(mutex_);
    if (ends_) return Ending::kOutdated;
    cancel_ = false;
    running_ = {answer.request, start};
  }
  EffectOrder whole{answer.frame, order.request.settings, divisor, &cancel_};
  if (mayBeTooSlow) whole.latest = start + PreviewBudget::kMostTime;
  const bool done = RenderInto(answer, effect, whole, order.request.wantMask);
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  bool outdated = false;
  {
    const std::lock_guard lock(mutex_);
    running_.reset();
    outdated = ends_ || newest_ != answer.request;
  }
  const QSize size = DividedSize(answer.frame->Width(), answer.frame->Height(), divisor);
  budget_.Learn(std::int64_t{size.width()} * size.height(), seconds, done);
  if (!done) return outdated ? Ending::kOutdated : Ending::kTooSlow;
  if (answer.world != nullptr) store_.Keep(order.request, order.key, answer);
  Give(std::move(answer));
  return Ending::kAnswered;
}

}  // namespace vitrell::panel
