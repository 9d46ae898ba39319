// Slots, and the workers that render what is in them.
#include "cli/video_crew.h"

#include <sys/wait.h>

#include <csignal>
#include <cstring>
#include <string>

#include "cli/failure.h"
#include "cli/job_count.h"
#include "media/quiet_libraries.h"

namespace vitrell::cli {
namespace {

// A frame in work, and one that is at hand when that is done: until the frames before it are
// written, a done one keeps its slot.
constexpr int kSlotsOfJob = 2;

// Of a killed one: so the system ends what takes more memory than there is.
int ExitCodeOf(int signal) { return signal == SIGKILL ? kTryLater : kFailed; }

}  // namespace

VideoCrew::VideoCrew(const RenderArguments& arguments, headless::EffectHost& host,
                     const VideoShot& shot, int jobs)
    : shot_(shot) {
  const int slots = jobs > 1 ? jobs * kSlotsOfJob : 1;
  slots_.reserve(static_cast<std::size_t>(slots));
  for (int i = 0; i < slots; ++i) {
    slots_.push_back({media::SharedFrame(shot.Width(), shot.Height()),
                      media::SharedFrame(shot.Width(), shot.Height())});
    free_.push_back(i);
  }
  places_.resize(slots_.size());
  if (jobs <= 1) {
    alone_.emplace(arguments, host, shot, slots_);
    return;
  }
  slotOf_.resize(static_cast<std::size_t>(jobs));
  pool_.emplace([&, jobs](int number) -> WorkerPool::Work {
    RenderArguments own = arguments;
    own.threads = ThreadsOf(number, jobs, arguments.threads);
    media::SetLibraryThreads(own.threads);
    const auto worker = std::make_shared<VideoWorker>(own, host, shot, slots_);
    return [worker](const std::string& job) { return Pack(worker->Render(UnpackVideoJob(job))); };
  });
  pool_->SetSize(jobs);
  pool_->StartAll();
}

std::int64_t VideoCrew::BytesOfJob(const VideoShot& shot) {
  const std::int64_t pixel = shot.IsDeep() ? 8 : 4;
  // In its process: RGB, what the effect gets and gives back, the layer, two working worlds and the
  // one of a pass; and the lens, a double for each pixel.
  constexpr std::int64_t kWorlds = 7;
  constexpr std::int64_t kLensBytes = 8;
  // A slot holds the frame twice; few formats are larger than RGB with alpha.
  const std::int64_t slots = kSlotsOfJob * 2 * pixel;
  return std::int64_t{shot.Width()} * shot.Height() * (slots + kWorlds * pixel + kLensBytes);
}

void VideoCrew::PutIn(VideoFrameJob job, const AVFrame& decoded) {
  const int slot = free_.front();
  VideoSlot& memory = slots_.at(static_cast<std::size_t>(slot));
  job.slot = slot;
  job.form = memory.decoded.Put(decoded, shot_.Reader().Name());
  places_.at(static_cast<std::size_t>(slot)) = {job, std::nullopt};
  free_.pop_front();
  order_.push_back(slot);
  waiting_.push_back(slot);
  if (pool_) HandOut();
}

void VideoCrew::HandOut() {
  while (!stopped_ && !waiting_.empty()) {
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
  answer.lost = true;
  answer.frame.state = FrameState::kFailed;
  answer.frame.exitCode = ExitCodeOf(signal);
  answer.frame.error = shot_.Reader().Name().string() + ": the process that rendered frame " +
                       std::to_string(job.number) +
                       (signal == 0 ? " ended early"
                                    : " was ended by signal " + std::to_string(signal) + " (" +
                                          ::strsignal(signal) + ")");
  return answer;
}

void VideoCrew::Wait(int milliseconds) {
  if (!pool_) return;
  for (const WorkerPool::Result& result : pool_->Wait(milliseconds)) {
    Place& place =
        places_.at(static_cast<std::size_t>(slotOf_.at(static_cast<std::size_t>(result.worker))));
    place.answer = AnswerOf(result, place.job);
    // Another process in its place cannot be started beside the threads of the codecs.
    if (!result.answer) stopped_ = true;
  }
  HandOut();
}

bool VideoCrew::IsOldestDone() {
  if (order_.empty()) return false;
  Place& oldest = places_.at(static_cast<std::size_t>(order_.front()));
  if (alone_ && !oldest.answer) {
    waiting_.clear();
    oldest.answer = alone_->Render(oldest.job);
  }
  return oldest.answer.has_value();
}

VideoCrew::Done VideoCrew::TakeOldest() {
  const int slot = order_.front();
  const auto index = static_cast<std::size_t>(slot);
  order_.pop_front();
  free_.push_back(slot);
  return {*places_.at(index).answer, slots_.at(index).rendered.As(media::RgbForm(shot_.IsDeep()))};
}

void VideoCrew::Stop() {
  stopped_ = true;
  if (pool_) pool_->StopAll();
}

}  // namespace vitrell::cli
