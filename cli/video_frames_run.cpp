// The loop over frames.
#include "cli/video_frames_run.h"

#include <new>
#include <utility>
#include <vector>

#include "cli/custom_layer.h"
#include "cli/failure.h"
#include "cli/interrupt.h"

namespace vitrell::cli {

VideoFramesRun::VideoFramesRun(const RenderArguments& arguments, VideoShot& shot,
                               VideoFramePlan& plan, VideoCrew& crew, SequenceProgress& progress,
                               SequenceTally& tally)
    : arguments_(arguments),
      shot_(shot),
      plan_(plan),
      crew_(crew),
      progress_(progress),
      tally_(tally),
      layer_(LayerPath(shot.Settings())) {}

void VideoFramesRun::Run() {
  wanted_ = plan_.Next();
  while (Step()) {
  }
  // Of an open plan nobody knows how many frames are left.
  if (!stopping_ || plan_.IsOpen()) return;
  for (; wanted_; wanted_ = plan_.Next()) {
    tally_.AddNotBegun(wanted_->frame);
    ++frames_;
  }
}

void VideoFramesRun::LookForSignals() {
  if (CaughtSignals() == signals_) return;
  signals_ = CaughtSignals();
  stopping_ = true;
  crew_.Stop();
}

bool VideoFramesRun::Step() {
  LookForSignals();
  crew_.Wait(0);
  if (crew_.IsOldestGivenUp()) {
    tally_.AddNotBegun(crew_.TakeBack().still.frame);
    return true;
  }
  switch (crew_.NextTurn(wanted_ && !stopping_)) {
    case VideoCrew::Turn::kTakeOldest:
      TakeAnswer();
      break;
    case VideoCrew::Turn::kPutIn:
      ReadFrame();
      break;
    case VideoCrew::Turn::kWaited:
      break;
    case VideoCrew::Turn::kEnd:
      return false;
  }
  return true;
}

bool VideoFramesRun::DecodeNext() {
  try {
    return shot_.Next(frame_);
  } catch (const Failure& failure) {
    if (failure.Kind() != kCancelled) throw;
    stopping_ = true;
    return false;
  }
}

void VideoFramesRun::ReadFrame() {
  const bool fills = arguments_.frames.missing == "hold" || arguments_.frames.missing == "black";
  while (!ended_) {
    if (!DecodeNext()) {
      if (stopping_) return;
      EndReading();
      break;
    }
    if (fills) last_.reset(av_frame_clone(frame_.decoded));
    if (frame_.job.number < wanted_->frame) continue;
    PutIn(*wanted_, frame_.decoded);
    wanted_ = plan_.Next();
    return;
  }
  if (wanted_) FillMissing();
}

// One of the frames that the video has not.
void VideoFramesRun::FillMissing() {
  FrameJob job = *wanted_;
  job.black = arguments_.frames.missing == "black";
  frame_.job.number = job.frame;
  frame_.job.seconds = shot_.SecondsOf(job.frame);
  PutIn(job, last_.get());
  wanted_ = plan_.Next();
}

void VideoFramesRun::EndReading() {
  ended_ = true;
  const std::string damage = shot_.Damage();
  const std::string name = shot_.Name();
  if (!damage.empty()) shortage_ = name + ": " + damage + ".";
  if (plan_.IsOpen()) {
    wanted_.reset();
    return;
  }
  const std::string& missing = arguments_.frames.missing;
  if (missing == "hold" || missing == "black") {
    progress_.Say("note: " + name + ": frames from " + std::to_string(wanted_->frame) +
                  " on are not there and are " +
                  (missing == "black" ? "black." : "taken from the last one."));
    return;
  }
  media::FrameSet rest;
  for (; wanted_; wanted_ = plan_.Next()) rest.Add(wanted_->frame);
  const std::string text = name + ": frames " + rest.Text() + " are not there";
  if (missing == "skip") {
    progress_.Say("note: " + text + " and are left out.");
  } else {
    shortage_ += (shortage_.empty() ? "" : " ") + text + ". Add --missing skip, hold or black.";
  }
}

void VideoFramesRun::PutIn(const FrameJob& wanted, const AVFrame* decoded) {
  VideoFrameJob job = frame_.job;
  job.still = wanted;
  job.still.layer = shot_.LayerOf(job.number);
  crew_.PutIn(std::move(job), decoded);
  ++frames_;
}

void VideoFramesRun::TakeAnswer() {
  const VideoCrew::Done done = crew_.TakeOldest();
  FrameAnswer answer = done.answer.frame;
  // A process that died does not know what it had.
  if (done.answer.endsVideo) {
    stopping_ = true;
    if (signals_ > 0) answer.state = FrameState::kCancelled;
  }
  Tell(done.job.still, answer);
}

void VideoFramesRun::Tell(const FrameJob& job, const FrameAnswer& answer) {
  const std::vector<Note> notes =
      tally_.Add(job, answer, {{job.output, arguments_.output}, {job.layer, layer_}});
  for (const Note& note : notes) {
    if (arguments_.quiet || (arguments_.strict && note.kind != NoteKind::kAdvice)) continue;
    progress_.Say("note: " + note.text);
  }
  if (answer.state == FrameState::kFailed) {
    progress_.Say("frame " + std::to_string(answer.frame) + ": " + answer.error);
    if (!arguments_.frames.keepGoing) stopping_ = true;
  }
  progress_.Tell(answer);
}

}  // namespace vitrell::cli
