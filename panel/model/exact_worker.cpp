// Waiting, rendering, and copies for the next drag.
#include "panel/model/exact_worker.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <utility>

#include "panel/model/answering.h"
#include "panel/model/preview_budget.h"

namespace vitrell::panel {
namespace {

// For so long without a change the hand counts as resting.
constexpr std::chrono::milliseconds kRest{150};
constexpr int kNiceness = 5;

// Of this thread and those that it starts.
void YieldToOthers() {
  const auto thread = static_cast<id_t>(::gettid());
  // Of a program that itself yields, too. A system that refuses it only answers later.
  static_cast<void>(
      ::setpriority(PRIO_PROCESS, thread, ::getpriority(PRIO_PROCESS, thread) + kNiceness));
}

}  // namespace

ExactWorker::ExactWorker(std::shared_ptr<const headless::EffectModule> module,
                         std::shared_ptr<SmallerFrames> smaller, Taker taker)
    : smaller_(std::move(smaller)),
      taker_(std::move(taker)),
      thread_([this, module = std::move(module)] { Run(module); }) {}

ExactWorker::~ExactWorker() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
    stop_ = true;
  }
  wake_.notify_all();
  thread_.join();
}

void ExactWorker::Put(Order order) {
  {
    const std::lock_guard lock(mutex_);
    next_.emplace(std::move(order));
    stop_ = true;
  }
  wake_.notify_all();
}

void ExactWorker::Stop() {
  {
    const std::lock_guard lock(mutex_);
    next_.reset();
    stop_ = true;
  }
  wake_.notify_all();
}

std::optional<ExactWorker::Order> ExactWorker::WaitForOrder() {
  std::unique_lock lock(mutex_);
  wake_.wait(lock, [this] { return ends_ || next_; });
  if (ends_) return {};
  stop_ = false;
  return std::exchange(next_, std::nullopt);
}

bool ExactWorker::WaitForRest() {
  std::unique_lock lock(mutex_);
  return !wake_.wait_for(lock, kRest, [this] { return stop_.load(); });
}

void ExactWorker::Run(const std::shared_ptr<const headless::EffectModule>& module) {
  YieldToOthers();
  std::optional<FrameEffect> effect;
  while (std::optional<Order> order = WaitForOrder()) {
    if (order->request.phase == EditPhase::kDragging && !WaitForRest()) continue;
    try {
      if (!effect) effect.emplace(module, smaller_);
      Serve(*effect, *order);
    } catch (const std::exception& failure) {
      order->answer = AnswerOfFailure(order->answer.request, failure);
      taker_(*order);
    }
  }
}

void ExactWorker::Serve(FrameEffect& effect, Order& order) {
  const EffectOrder exact{order.answer.frame, order.request.settings, 1, &stop_};
  if (!RenderInto(order.answer, effect, exact, order.request.wantMask)) return;
  taker_(order);
  for (const int divisor : PreviewBudget::kDivisors) {
    if (stop_) return;
    if (divisor > 1) static_cast<void>(smaller_->Of(order.answer.frame, divisor));
  }
}

}  // namespace vitrell::panel
