// `vitrell render`: which kind of render it is.
#include <array>
#include <string>
#include <thread>
#include <utility>

#include "cli/commands.h"
#include "cli/failure.h"
#include "cli/render_checks.h"
#include "cli/render_still.h"
#include "cli/render_video.h"
#include "cli/sequence_plan.h"
#include "cli/thread_count.h"
#include "media/video_containers.h"

namespace vitrell::cli {
namespace {

// --part chooses a part of the file, or, as K/N, a share of the frames.
void ChooseParts(bool sequence, RenderArguments& arguments) {
  for (const std::string& part : arguments.parts) {
    const bool ofFrames = sequence && ParsePartOfFrames(part);
    std::string& chosen = ofFrames ? arguments.frames.part : arguments.part;
    if (!chosen.empty()) {
      std::string message = "--part: " + chosen;
      message.append(" and ").append(part).append(" cannot both be rendered. Give one of them.");
      throw Failure(kWrongUsage, message);
    }
    chosen = part;
  }
}

// Options that mean nothing for a single picture, or for a video.
void RefuseFrameOptions(const FrameArguments& arguments, bool video) {
  struct Option {
    const char* name;
    bool isGiven;
    bool isForVideos;
  };
  const std::array<Option, 7> options = {
      {{"--frames-out", !arguments.framesOut.empty(), false},
       {"--missing", arguments.missing != "fail", false},
       {"--existing", !arguments.existing.empty(), true},
       {"--keep-going", arguments.keepGoing, false},
       {"--memory", arguments.memory != 0, true},
       {"--status", !arguments.status.empty(), true},
       {"--progress plain", arguments.progress == "plain", true}}};
  for (const Option& option : options) {
    if (!option.isGiven || (video && option.isForVideos)) continue;
    throw Failure(kWrongUsage, std::string(option.name) +
                                   ": is for sequences. Write plate.####.png as INPUT, or leave "
                                   "the option out.");
  }
}

// What a sequence takes and one video of its frames does not.
void RefuseForSequenceVideo(const FrameArguments& arguments) {
  const std::array<std::pair<const char*, bool>, 2> options = {
      {{"--frames-out", !arguments.framesOut.empty()}, {"--keep-going", arguments.keepGoing}}};
  for (const auto& [name, isGiven] : options) {
    if (!isGiven) continue;
    throw Failure(kWrongUsage,
                  std::string(name) + ": is for sequences, and OUTPUT is a video. Leave it out.");
  }
}

}  // namespace

void RunRender(const RenderArguments& arguments) {
  CheckStandardInput(arguments.input, arguments.effect);
  const int wanted = arguments.threads > 0 ? arguments.threads
                                           : static_cast<int>(std::thread::hardware_concurrency());
  RenderArguments possible = arguments;
  possible.threads = CountPossibleThreads(wanted);
  possible.processors = arguments.threads;
  const bool videoFrames = IsVideoToSequence(possible);
  const bool video = !videoFrames && !IsSequenceName(arguments.input) && IsVideoJob(possible);
  const bool sequence = videoFrames || (!video && MeansSequence(arguments));
  ChooseParts(sequence, possible);
  if (videoFrames) return RenderVideoAsSequence(possible);
  if (sequence && media::IsVideoName(arguments.output) && !IsSequenceName(arguments.output)) {
    RefuseForSequenceVideo(possible.frames);
    RenderSequenceAsVideo(possible, CountEncoderThreads(arguments.threads));
    return;
  }
  if (sequence) {
    RunSequence(possible);
    return;
  }
  RefuseFrameOptions(arguments.frames, video);
  if (video) return RenderVideo(possible, CountEncoderThreads(arguments.threads));
  RenderStill(possible);
}

}  // namespace vitrell::cli
