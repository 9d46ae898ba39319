// Small frames first, exact ones when the hand rests.
#include "panel/model/render_worker.h"

#include <utility>

#include "headless/host_error.h"
#include "panel/model/world_image.h"

namespace vitrell::panel {
namespace {

using std::chrono::milliseconds;

// For so long without a change the hand counts as resting.
constexpr milliseconds kRest{150};

double SecondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

RenderWorker::RenderWorker(std::shared_ptr<const headless::EffectModule> module,
                           std::function<void()> answered)
    : answered_(std::move(answered)),
      thread_([this, module = std::move(module)] { Run(module); }) {}

RenderWorker::~RenderWorker() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    cancel_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

std::uint64_t RenderWorker::Put(RenderRequest request) {
  const std::lock_guard lock(mutex_);
  next_.emplace(Job{++newest_, std::move(request)});
  StopIfOutdated();
  wake_.notify_all();
  return newest_;
}

void RenderWorker::Cancel() {
  const std::lock_guard lock(mutex_);
  next_.reset();
  ++newest_;
  cancel_ = true;
  wake_.notify_all();
}

bool RenderWorker::StopOutdated() {
  const std::lock_guard lock(mutex_);
  return StopIfOutdated();
}

bool RenderWorker::StopIfOutdated() {
  if (!running_ || running_->number == newest_) return false;
  if (running_->quick && Clock::now() - running_->start < kPatience) return true;
  cancel_ = true;
  return false;
}

void RenderWorker::SetCacheBudget(std::int64_t bytes) {
  const std::lock_guard lock(mutex_);
  cacheBytes_ = bytes;
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
  store_.SetBudget(cacheBytes_);
  return std::exchange(next_, std::nullopt);
}

bool RenderWorker::IsOutdated(const Job& job, Clock::duration wait) {
  std::unique_lock lock(mutex_);
  return wake_.wait_for(lock, wait, [&] { return ends_ || newest_ != job.number; });
}

void RenderWorker::Give(RenderAnswer answer) {
  {
    const std::lock_guard lock(mutex_);
    answers_.push_back(std::move(answer));
  }
  answered_();
}

void RenderWorker::Run(std::shared_ptr<const headless::EffectModule> module) {
  std::optional<FrameEffect> effect;
  while (const std::optional<Job> job = WaitForJob()) {
    try {
      if (!effect) effect.emplace(module);
      Serve(*effect, *job);
    } catch (const std::exception& error) {
      // Above all memory that there is not enough of.
      RenderAnswer answer;
      answer.request = job->number;
      answer.message = QString(
                           "This could not be rendered: %1. Undo the last change, or open a "
                           "smaller picture.")
                           .arg(error.what());
      Give(std::move(answer));
    }
  }
}

void RenderWorker::Serve(FrameEffect& effect, const Job& job) {
  RenderAnswer answer;
  answer.request = job.number;
  if (!ReadFrame(job, answer) || GiveCached(job, answer)) return;
  const std::int64_t pixels = std::int64_t{answer.frame->Width()} * answer.frame->Height();
  const int divisor = budget_.DivisorFor(pixels);
  if (divisor == 1) {
    static_cast<void>(Render(effect, job, 1, true, std::move(answer)));
    return;
  }
  if (!store_.IsPreviewed(job.request)) {
    if (!Render(effect, job, divisor, true, answer)) return;
    store_.NotePreview(job.request);
  }
  const bool dragging = job.request.phase == EditPhase::kDragging;
  if (IsOutdated(job, dragging ? kRest : Clock::duration{})) return;
  if (Render(effect, job, 1, false, answer)) Prepare(effect, job, answer);
}

void RenderWorker::Prepare(FrameEffect& effect, const Job& job, const RenderAnswer& answer) {
  for (const int divisor : PreviewBudget::kDivisors) {
    if (IsOutdated(job, {})) return;
    effect.Prepare(answer.frame, divisor);
  }
}

bool RenderWorker::ReadFrame(const Job& job, RenderAnswer& answer) {
  const Clock::time_point start = Clock::now();
  try {
    answer.frame = store_.Read(job.request);
  } catch (const media::Failure& failure) {
    answer.message = QString::fromStdString(failure.what());
    Give(answer);
    return false;
  }
  answer.before = store_.Before();
  answer.seconds = SecondsSince(start);
  return true;
}

bool RenderWorker::GiveCached(const Job& job, RenderAnswer answer) {
  const FrameStore::Rendered* const found = store_.Find(job.request);
  if (found == nullptr || job.request.wantMask) return false;
  answer.exact = true;
  answer.world = found->world;
  answer.image = found->image;
  Give(std::move(answer));
  return true;
}

bool RenderWorker::Render(FrameEffect& effect, const Job& job, int divisor, bool quick,
                          RenderAnswer answer) {
  const Clock::time_point start = Clock::now();
  {
    const std::lock_guard lock(mutex_);
    if (ends_ || (newest_ != job.number && !quick)) return false;
    cancel_ = false;
    running_ = {job.number, quick, start};
  }
  const EffectOrder order{answer.frame, job.request.settings, divisor, &cancel_};
  const EffectOutcome outcome = effect.Render(order);
  {
    const std::lock_guard lock(mutex_);
    running_.reset();
  }
  if (outcome.world != nullptr) answer.image = ImageOf(*outcome.world);
  const QSize size = DividedSize(answer.frame->Width(), answer.frame->Height(), divisor);
  const double seconds = SecondsSince(start);
  budget_.Learn(std::int64_t{size.width()} * size.height(), seconds, !outcome.stopped);
  if (outcome.stopped) return false;
  if (outcome.world != nullptr && job.request.wantMask) {
    const auto mask = effect.RenderMask(order);
    if (mask != nullptr) answer.mask = ImageOf(*mask);
  }
  answer.exact = divisor == 1;
  answer.scale = static_cast<double>(size.width()) / answer.frame->Width();
  answer.layerSize = outcome.layerSize;
  answer.message = outcome.message;
  answer.seconds += seconds;
  if (answer.exact) answer.world = outcome.world;
  if (answer.world != nullptr) store_.Keep(job.request, {answer.world, answer.image});
  Give(std::move(answer));
  return true;
}

}  // namespace vitrell::panel
