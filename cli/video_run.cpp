// The loop over frames.
#include "cli/video_run.h"

#include <utility>

#include "cli/failure.h"
#include "cli/interrupt.h"
#include "media/standard_streams.h"

namespace vitrell::cli {
namespace {

// Encoders hand over what they hold back before a file can end.
constexpr unsigned kSecondsToStop = 20;

}  // namespace

void VideoRun::Run() {
  GrantSecondsToStop(kSecondsToStop);
  try {
    while (Step()) {
    }
  } catch (const Failure& failure) {
    crew_.Stop();
    if (failure.Kind() != kCancelled || telling_.GetReport().frames == 0) throw;
    FailUnfinished(kCancelled, "cancelled");
  }
  WritePackets(source_.TakeLastPackets());
  const std::string damage = source_.Damage();
  if (!damage.empty()) FailUnfinished(kFailed, source_.Name() + ": " + damage);
}

bool VideoRun::Step() {
  ThrowIfInterrupted();
  crew_.Wait(0);
  switch (crew_.NextTurn(!ended_)) {
    case VideoCrew::Turn::kTakeOldest:
      WriteFrame();
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

void VideoRun::ReadFrame() {
  telling_.Clock().Lap();
  VideoSourceFrame frame;
  if (!source_.Next(frame)) {
    ended_ = true;
    return;
  }
  telling_.GetReport().readSeconds += telling_.Clock().Lap();
  frame.job.overBlack = !writer_.KeepsAlpha();
  crew_.PutIn(frame.job, frame.decoded);
  frames_.push_back(std::move(frame));
}

void VideoRun::WriteFrame() {
  const VideoCrew::Done done = crew_.TakeOldest();
  const VideoSourceFrame frame = std::move(frames_.front());
  frames_.pop_front();
  telling_.Clock().Lap();
  TakeAnswer(done.answer);
  WritePackets(frame.packets);
  if (done.answer.transparent && !writer_.KeepsAlpha()) TellAlpha();
  writer_.Write(*done.rendered, *frame.marks);
  telling_.GetReport().writeSeconds += telling_.Clock().Lap();
  telling_.TellFrame(done.answer.frame, source_.ExpectedFrames());
}

void VideoRun::TakeAnswer(const VideoFrameAnswer& answer) {
  telling_.GetNotes().Add(answer.frame.notes);
  if (answer.frame.exitCode != kDone) {
    telling_.TellFailedFrame(answer.frame, source_.ExpectedFrames());
  }
  if (answer.endsVideo) FailUnfinished(answer.frame.exitCode, answer.frame.error);
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
  std::string why = cause;
  if (why.ends_with('.')) why.pop_back();
  const auto kind = static_cast<media::FailureKind>(exitCode);
  const std::int64_t count = telling_.GetReport().frames;
  if (count == 0) throw Failure(kind, why + "; no frame is rendered.");
  const std::string kept = writer_.KeepUnfinished().string();
  const std::string frames = count == 1 ? "frame is" : std::to_string(count) + " frames are";
  throw Failure(kind, why + "; the first " + frames +
                          (kept.empty() ? " written." : " kept as " + kept + "."));
}

}  // namespace vitrell::cli
