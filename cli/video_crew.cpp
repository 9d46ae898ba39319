// Slots, and the workers that render what is in them.
#include "cli/video_crew.h"

#include <poll.h>
#include <sys/wait.h>

#include <csignal>
#include <cstring>
#include <utility>

#include "cli/failure.h"
#include "cli/job_count.h"
#include "media/quiet_libraries.h"

namespace vitrell::cli {
namespace {

// A frame in work, and one that is at hand when that is done: until the frames before it are
// written, a done one keeps its slot.
constexpr int kSlotsOfJob = 2;

// How long a signal may wait that comes just before the workers are waited for.
constexpr int kPatienceMs = 200;

// Until the processors are looked at again.
constexpr int kMomentMs = 5;

// Of a killed one: so the system ends what takes more memory than there is.
int ExitCodeOf(int signal) { return signal == SIGKILL ? kTryLater : kFailed; }

}  // namespace

VideoCrew::VideoCrew(Order order, const MakeRender& makeRender)
    : order_(std::move(order)), budget_(order_.processors) {
  const int jobs = order_.jobs;
  const bool alone = jobs <= 1 && !order_.apart;
  const int slots = alone ? 1 : jobs * kSlotsOfJob;
  slots_.reserve(static_cast<std::size_t>(slots));
  for (int i = 0; i < slots; ++i) {
    slots_.push_back({media::SharedFrame(order_.size.width, order_.size.height),
                      media::SharedFrame(order_.size.width, order_.size.height)});
    free_.push_back(i);
  }
  places_.resize(slots_.size());
  if (alone) {
    alone_ = makeRender(slots_, order_.threads);
    return;
  }
  slotOf_.resize(static_cast<std::size_t>(jobs));
  pool_.emplace([this, makeRender](int worker) -> WorkerPool::Work {
    const int threads = ThreadsOf(worker, order_.jobs, order_.threads);
    media::SetLibraryThreads(threads);
    const Render render = makeRender(slots_, threads);
    return [render](const std::string& job) { return Pack(render(UnpackVideoJob(job))); };
  });
  pool_->SetSize(jobs);
  pool_->StartAll();
}

std::int64_t VideoCrew::BytesOfJob(const VideoSize& size) {
  const std::int64_t pixel = size.deep ? 8 : 4;
  // In its process: RGB, what the effect gets and gives back, the layer, two working worlds and the
  // one of a pass; and the lens, a double for each pixel.
  constexpr std::int64_t kWorlds = 7;
  constexpr std::int64_t kLensBytes = 8;
  // A slot holds the frame twice; few formats are larger than RGB with alpha.
  const std::int64_t slots = std::int64_t{kSlotsOfJob} * 2 * pixel;
  return std::int64_t{size.width} * size.height * (slots + kWorlds * pixel + kLensBytes);
}

void VideoCrew::PutIn(VideoFrameJob job, const AVFrame* decoded) {
  const int slot = free_.front();
  job.slot = slot;
  if (decoded != nullptr) {
    job.form = slots_.at(static_cast<std::size_t>(slot)).decoded.Put(*decoded, order_.name);
  }
  places_.at(static_cast<std::size_t>(slot)) = {job, std::nullopt};
  free_.pop_front();
  used_.push_back(slot);
  waiting_.push_back(slot);
  if (pool_) HandOut();
}

bool VideoCrew::HasProcessors() {
  if (!budget_.IsLimited()) return true;
  budget_.Account(clock_.Total(), ProcessorSeconds() + (pool_ ? pool_->ProcessorSeconds() : 0));
  return budget_.HasRoom();
}

void VideoCrew::HandOut() {
  while (!stopped_ && !waiting_.empty() && HasProcessors()) {
    const std::optional<int> worker = pool_->FindIdle();
    if (!worker) return;
    const int slot = waiting_.front();
    waiting_.pop_front();
    slotOf_.at(static_cast<std::size_t>(*worker)) = slot;
    pool_->Give(*worker, Pack(places_.at(static_cast<std::size_t>(slot)).job));
  }
}

VideoFrameAnswer VideoCrew::AnswerOf(const WorkerPool::Result& result,
                                     const VideoFrameJob& job) const {
  if (result.answer) return UnpackVideoAnswer(*result.answer);
  const int signal = WIFSIGNALED(result.waitStatus) ? WTERMSIG(result.waitStatus) : 0;
  VideoFrameAnswer answer;
  answer.frame.frame = job.number;
  answer.endsVideo = true;
  answer.frame.state = FrameState::kFailed;
  answer.frame.exitCode = ExitCodeOf(signal);
  answer.frame.error =
      order_.name + ": the process that rendered frame " + std::to_string(job.number) +
      (signal == 0
           ? " ended early"
           : " was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")");
  return answer;
}

void VideoCrew::Wait(int milliseconds) {
  if (!pool_) {
    ::poll(nullptr, 0, milliseconds);
    return;
  }
  for (const WorkerPool::Result& result : pool_->Wait(milliseconds)) {
    Place& place =
        places_.at(static_cast<std::size_t>(slotOf_.at(static_cast<std::size_t>(result.worker))));
    place.answer = AnswerOf(result, place.job);
    // Another process in its place cannot be started beside the threads of the codecs.
    if (!result.answer) stopped_ = true;
  }
  HandOut();
}

VideoCrew::Turn VideoCrew::NextTurn(bool moreFrames) {
  if (!stopped_ && (moreFrames || !used_.empty()) && !HasProcessors()) {
    Wait(kMomentMs);
    return Turn::kWaited;
  }
  const bool mayRead = moreFrames && HasRoom();
  const bool starves = mayRead && WantsFrames();
  if (!starves && IsOldestDone()) return Turn::kTakeOldest;
  if (mayRead) return Turn::kPutIn;
  if (used_.empty()) return Turn::kEnd;
  if (pool_) HandOut();
  Wait(kPatienceMs);
  return Turn::kWaited;
}

bool VideoCrew::IsOldestDone() {
  if (used_.empty()) return false;
  Place& oldest = places_.at(static_cast<std::size_t>(used_.front()));
  if (alone_ && !oldest.answer) {
    waiting_.clear();
    oldest.answer = alone_(oldest.job);
  }
  return oldest.answer.has_value();
}

VideoCrew::Done VideoCrew::TakeOldest() {
  const int slot = used_.front();
  const auto index = static_cast<std::size_t>(slot);
  used_.pop_front();
  free_.push_back(slot);
  const Place& place = places_.at(index);
  return {*place.answer, slots_.at(index).rendered.As(media::RgbForm(order_.size.deep)), place.job};
}

bool VideoCrew::IsOldestGivenUp() const {
  return stopped_ && !waiting_.empty() && waiting_.front() == used_.front();
}

VideoFrameJob VideoCrew::TakeBack() {
  const int slot = used_.front();
  used_.pop_front();
  waiting_.pop_front();
  free_.push_back(slot);
  return places_.at(static_cast<std::size_t>(slot)).job;
}

void VideoCrew::Stop() {
  stopped_ = true;
  if (pool_) pool_->StopAll();
}

}  // namespace vitrell::cli
