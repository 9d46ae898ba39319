// `vitrell check`: which frames of a rendered sequence are not as they should be.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "cli/commands.h"
#include "cli/effect_finder.h"
#include "cli/failure.h"
#include "cli/frame_fingerprint.h"
#include "cli/gathered_frames.h"
#include "cli/interrupt.h"
#include "cli/printable.h"
#include "media/fingerprint.h"
#include "media/picture.h"
#include "media/sequence.h"

namespace vitrell::cli {
namespace {

namespace fs = std::filesystem;

bool IsWhole(const fs::path& frame) {
  try {
    media::ReadPicture(frame, [](float) { return InterruptFlag().load(); });
    return true;
  } catch (const Failure& failure) {
    if (failure.Kind() != kFailed) throw;
    return false;
  }
}

// What frames are made of, on one side: their inputs, or their layers. A file that several frames
// in a row have in common, as all have that come from one video, is hashed once.
class Sources {
 public:
  // Whether a source, named relative to the frame's folder, has other contents now. False if it is
  // gone.
  bool HaveChanged(const fs::path& frame, const std::string& file, const std::string& hash) {
    if (file.empty()) return false;
    const fs::path there = frame.parent_path() / file;
    std::error_code ignored;
    if (!fs::exists(there, ignored)) return false;
    if (there != hashed_) {
      hash_ = media::HashOfFile(there);
      hashed_ = there;
    }
    return hash_ != hash;
  }

 private:
  fs::path hashed_;
  std::string hash_;
};

struct AllSources {
  Sources inputs;
  Sources layers;
};

bool IsStale(const fs::path& frame, const std::string& effect, media::Sidecar& sidecar,
             AllSources& sources) {
  const auto found = media::FindFingerprint(frame, sidecar);
  return !found || found->effect != effect ||
         sources.inputs.HaveChanged(frame, found->inputFile, found->input) ||
         sources.layers.HaveChanged(frame, found->layerFile, found->layer);
}

struct Verdict {
  GatheredFrames missing;
  GatheredFrames torn;
  GatheredFrames stale;
};

Verdict Judge(const media::Sequence& sequence, const media::FrameSet& frames,
              const std::string& effect) {
  media::Sidecar sidecar(sequence);
  AllSources sources;
  Verdict verdict;
  media::FrameCursor cursor(frames);
  while (const std::optional<std::int64_t> frame = cursor.Next()) {
    const fs::path file = sequence.FileOf(*frame);
    std::error_code ignored;
    if (!fs::exists(file, ignored)) {
      verdict.missing.Add(*frame);
    } else if (!IsWhole(file)) {
      verdict.torn.Add(*frame);
    } else if (IsStale(file, effect, sidecar, sources)) {
      verdict.stale.Add(*frame);
    }
  }
  return verdict;
}

void Tell(const char* what, const GatheredFrames& frames, GatheredFrames& all) {
  if (frames.IsEmpty()) return;
  std::printf("%s: %s\n", what, frames.Text().c_str());
  all.AddAll(frames);
}

}  // namespace

void RunCheck(const CheckArguments& arguments) {
  const auto sequence = media::Sequence::Find(arguments.sequence);
  if (!sequence) {
    throw Failure(kWrongUsage,
                  arguments.sequence + ": has no place for a frame's number. Write look.####.png.");
  }
  const media::FrameSet frames = arguments.frames.empty()
                                     ? sequence->FramesInFolder()
                                     : media::FrameSet::Parse(arguments.frames);
  const std::string effect = EffectVersion(*OpenEffect(arguments.effect.effect));
  const Verdict verdict = Judge(*sequence, frames, effect);
  GatheredFrames all;
  Tell("missing", verdict.missing, all);
  Tell("torn", verdict.torn, all);
  Tell("stale", verdict.stale, all);
  const std::string size = std::to_string(frames.Size());
  if (!all.IsEmpty()) {
    static_cast<void>(std::fflush(stdout));
    throw Failure(kFailed, std::to_string(all.Size()) + " of " + size +
                               " frames are not as they should be: " + all.Text() + ".");
  }
  std::printf("%s: %s frames are whole\n", Printable(arguments.sequence).c_str(), size.c_str());
}

}  // namespace vitrell::cli
