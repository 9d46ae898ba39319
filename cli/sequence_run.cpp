// The loop over frames.
#include "cli/sequence_run.h"

#include <sys/wait.h>

#include <csignal>
#include <cstring>

#include "cli/failure.h"
#include "cli/interrupt.h"

namespace vitrell::cli {
namespace {

// The longest delay of a signal that arrives just before the wait for answers.
constexpr int kPatience = 200;

// Until the processors are looked at again.
constexpr int kMoment = 5;

}  // namespace

void SequenceRun::Run() {
  for (;;) {
    if (CaughtSignals() > signals_) {
      signals_ = CaughtSignals();
      stopping_ = true;
      pool_.StopAll();
    }
    HandOut();
    if (pool_.Busy() == 0) break;
    const bool mayHandOut = !stopping_ && pool_.FindIdle() && budget_.IsLimited();
    for (const auto& result : pool_.Wait(mayHandOut ? kMoment : kPatience)) Take(result);
  }
  while (const std::optional<FrameJob> left = plan_.Next()) tally_.AddNotBegun(left->frame);
}

bool SequenceRun::HasProcessors() {
  if (!budget_.IsLimited()) return true;
  budget_.Account(clock_.Total(), ProcessorSeconds() + pool_.ProcessorSeconds());
  // One worker alone has no more threads than it may.
  return budget_.HasRoom() || pool_.Busy() == 0;
}

void SequenceRun::HandOut() {
  while (!stopping_) {
    const std::optional<int> worker = pool_.FindIdle();
    if (!worker || !HasProcessors()) return;
    const std::optional<FrameJob> job = plan_.Next();
    if (!job) return;
    pool_.Give(*worker, Pack(*job));
    jobs_[*worker] = *job;
  }
}

FrameAnswer SequenceRun::AnswerOf(const WorkerPool::Result& result, const FrameJob& job) const {
  if (result.answer) return UnpackAnswer(*result.answer);
  FrameAnswer answer;
  answer.frame = job.frame;
  if (signals_ > 0) {
    answer.state = FrameState::kCancelled;
    return answer;
  }
  const int signal = WIFSIGNALED(result.waitStatus) ? WTERMSIG(result.waitStatus) : 0;
  answer.state = FrameState::kFailed;
  // SIGKILL is how the system ends a process when memory runs out.
  answer.exitCode = signal == SIGKILL ? kTryLater : kFailed;
  answer.error = job.output + ": the process that rendered it " +
                 (signal == 0 ? "ended early."
                              : "was ended by signal " + std::to_string(signal) + " (" +
                                    ::strsignal(signal) + ").");
  return answer;
}

void SequenceRun::Take(const WorkerPool::Result& result) {
  const FrameJob job = jobs_[result.worker];
  const FrameAnswer answer = AnswerOf(result, job);
  std::vector<std::pair<std::string, std::string>> names = {
      {job.output, arguments_.output}, {job.input, arguments_.input}, {job.layer, layer_}};
  TellNotes(tally_.Add(job, answer, names));
  if (answer.state == FrameState::kFailed) {
    TellFailure(answer);
    if (!arguments_.frames.keepGoing) stopping_ = true;
  }
  TellSizes(answer);
  progress_.Tell(answer);
}

void SequenceRun::TellFailure(const FrameAnswer& answer) {
  progress_.Say("frame " + std::to_string(answer.frame) + ": " + answer.error);
}

void SequenceRun::TellNotes(const std::vector<Note>& notes) {
  if (arguments_.quiet) return;
  for (const Note& note : notes) {
    if (arguments_.strict && note.kind != NoteKind::kAdvice) continue;
    progress_.Say("note: " + note.text);
  }
}

void SequenceRun::TellSizes(const FrameAnswer& answer) {
  if (answer.state != FrameState::kRendered || answer.width == 0) return;
  if (width_ == 0) {
    width_ = answer.width;
    height_ = answer.height;
    bits_ = answer.bits;
  }
  if (sizesDiffer_ || (width_ == answer.width && height_ == answer.height && bits_ == answer.bits))
    return;
  sizesDiffer_ = true;
  const auto told = [](int width, int height, int bits) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels in " +
           std::to_string(bits) + " bits";
  };
  const Note note{NoteKind::kAdvice, arguments_.input + ": frame " + std::to_string(answer.frame) +
                                         " has " + told(answer.width, answer.height, answer.bits) +
                                         ", others have " + told(width_, height_, bits_) +
                                         "; each is rendered as it is."};
  tally_.AddNote(note);
  TellNotes({note});
}

}  // namespace vitrell::cli
