// What a worker does with a frame: one still after the other through one loaded effect.
#ifndef VITRELL_CLI_FRAME_WORKER_H_
#define VITRELL_CLI_FRAME_WORKER_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "cli/arguments.h"
#include "cli/frame_job.h"
#include "cli/layer_frames.h"
#include "headless/effect_host.h"
#include "look/settings.h"
#include "media/fingerprint.h"
#include "media/picture.h"

namespace vitrell::cli {

struct FrameWishes {
  bool reports = false;  // each frame's own report is in its answer
  bool skips = false;    // a frame that is there, whole and made of the same, stays
  std::string effect;    // its name and version, for fingerprints
  media::Sidecar* sidecar = nullptr;
  std::int64_t firstFrame = 0;  // with which the first one of a video as layer goes
};

// Of a frame that is no file of its own.
struct FrameSource {
  std::function<media::Picture()> read;
  // With the frame's values.
  std::function<look::Settings()> settings;
  // Nothing where nobody can know what the frame is made of.
  std::function<std::optional<media::Fingerprint>(const look::Settings& settings)> fingerprint;
};

class FrameWorker {
 public:
  // The arguments are those of a still but for the names; their length is known. The effect and
  // the settings must outlive it.
  FrameWorker(RenderArguments arguments, headless::EffectHost& host, const look::Settings& settings,
              FrameWishes wishes)
      : arguments_(std::move(arguments)),
        host_(host),
        settings_(settings),
        wishes_(std::move(wishes)),
        layers_(arguments_) {}

  // From the job's input. Never throws: what goes wrong is in the answer.
  FrameAnswer Render(const FrameJob& job) noexcept;
  // From somewhere else; the job's input is what messages name.
  FrameAnswer Render(const FrameJob& job, const FrameSource& source) noexcept;

 private:
  // Why a frame that is there is rendered again; empty if it stays.
  std::string WhyAgain(const FrameJob& job, const media::Fingerprint& wanted) const;
  void RenderStill(const FrameJob& job, const FrameSource& source, look::Settings& settings,
                   const std::optional<media::Fingerprint>& fingerprint, FrameAnswer& answer);
  // Tells in the fingerprint which layer the frame has.
  void AddLayer(const FrameJob& job, media::Fingerprint& fingerprint);
  void RenderOrThrow(const FrameJob& job, const FrameSource& source, FrameAnswer& answer);
  std::int64_t LayerFrameOf(const FrameJob& job) const { return job.frame - wishes_.firstFrame; }
  RenderArguments ArgumentsFor(const FrameJob& job) const;
  look::Settings SettingsFor(const FrameJob& job) const;

  const RenderArguments arguments_;
  headless::EffectHost& host_;
  const look::Settings& settings_;
  FrameWishes wishes_;
  LayerFrames layers_;
};

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_FRAME_WORKER_H_
