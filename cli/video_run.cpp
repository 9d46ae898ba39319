// The loop over frames.
#include "cli/video_run.h"

#include <new>
#include <utility>

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

// Encoders hand over what they hold back before a file can end.
constexpr unsigned kSecondsToStop = 20;
// How long a signal may wait that comes just before the workers are waited for.
constexpr int kPatienceMs = 200;

}  // namespace

void VideoRun::Run() {
  GrantSecondsToStop(kSecondsToStop);
  try {
    PutIn(shot_.First());
    while (Step()) {
    }
  } catch (const Failure& failure) {
    crew_.Stop();
    if (failure.Kind() != kCancelled || telling_.GetReport().frames == 0) throw;
    FailUnfinished(kCancelled, "cancelled");
  }
  WritePackets(shot_.Frames().TakePackets());
  const std::string damage = shot_.Frames().Damage();
  if (!damage.empty()) FailUnfinished(kFailed, shot_.Reader().Name().string() + ": " + damage);
}

// The workers come first, then room for what they have done, then frames ahead of them.
bool VideoRun::Step() {
  ThrowIfInterrupted();
  crew_.Wait(0);
  const bool mayRead = !ended_ && crew_.HasRoom();
  if (mayRead && crew_.WantsFrames()) {
    ReadFrame();
  } else if (crew_.IsOldestDone()) {
    WriteFrame();
  } else if (mayRead) {
    ReadFrame();
  } else if (crew_.IsEmpty()) {
    return false;
  } else {
    crew_.Wait(kPatienceMs);
  }
  return true;
}

void VideoRun::ReadFrame() {
  telling_.Clock().Lap();
  if (shot_.Frames().Next(*decoded_)) {
    telling_.GetReport().readSeconds += telling_.Clock().Lap();
    PutIn(*decoded_);
  } else {
    ended_ = true;
  }
}

void VideoRun::PutIn(const AVFrame& decoded) {
  VideoFrameJob job;
  job.number = shot_.Frames().Number();
  job.seconds = shot_.SecondsTo(decoded);
  job.overBlack = !writer_.KeepsAlpha();
  crew_.PutIn(job, decoded);
  Frame frame{media::MakeFrame(), shot_.Frames().TakePackets()};
  if (av_frame_copy_props(frame.marks.get(), &decoded) < 0) throw std::bad_alloc();
  frames_.push_back(std::move(frame));
}

void VideoRun::WriteFrame() {
  const VideoCrew::Done done = crew_.TakeOldest();
  const Frame frame = std::move(frames_.front());
  frames_.pop_front();
  telling_.Clock().Lap();
  TakeAnswer(done.answer);
  WritePackets(frame.packets);
  if (done.answer.transparent && !writer_.KeepsAlpha()) TellAlpha();
  writer_.Write(*done.rendered, *frame.marks);
  telling_.GetReport().writeSeconds += telling_.Clock().Lap();
  telling_.TellFrame(shot_.ExpectedFrames());
}

void VideoRun::TakeAnswer(const VideoFrameAnswer& answer) {
  telling_.GetNotes().Add(answer.frame.notes);
  if (answer.lost) FailUnfinished(answer.frame.exitCode, answer.frame.error);
  if (answer.frame.exitCode != kDone) {
    throw Failure(static_cast<media::FailureKind>(answer.frame.exitCode), answer.frame.error);
  }
  telling_.GetNotes().FailIfStrict();
  Report& report = telling_.GetReport();
  report.readSeconds += answer.readSeconds;
  report.effectSeconds += answer.effectSeconds;
  report.writeSeconds += answer.writeSeconds;
}

void VideoRun::TellAlpha() {
  if (std::exchange(toldAlpha_, true)) return;
  telling_.GetNotes().Tell(media::ShownTarget(arguments_.output) + ": " +
                           writer_.Form().codec->name +
                           " stores no transparency; the video is laid over black.");
  telling_.GetNotes().FailIfStrict();
}

void VideoRun::WritePackets(const std::vector<media::PacketHandle>& packets) {
  for (const media::PacketHandle& packet : packets) writer_.WritePacket(*packet);
}

void VideoRun::FailUnfinished(int exitCode, const std::string& cause) {
  const auto kind = static_cast<media::FailureKind>(exitCode);
  const std::int64_t count = telling_.GetReport().frames;
  if (count == 0) throw Failure(kind, cause + "; no frame is rendered.");
  const std::string kept = writer_.KeepUnfinished().string();
  const std::string frames = count == 1 ? "frame is" : std::to_string(count) + " frames are";
  throw Failure(kind, cause + "; the first " + frames +
                          (kept.empty() ? " written." : " kept as " + kept + "."));
}

}  // namespace vitrell::cli
