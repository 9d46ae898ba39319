// What a frame is made of, as it is kept with it.
#ifndef VITRELL_CLI_FRAME_FINGERPRINT_H_
#define VITRELL_CLI_FRAME_FINGERPRINT_H_

#include <string>

#include "cli/arguments.h"
#include "cli/frame_job.h"
#include "headless/effect_host.h"
#include "look/settings.h"
#include "media/fingerprint.h"

namespace vitrell::cli {

// Of the frame that these arguments render, but for the layer's contents. Reads the input.
// Throws Failure.
media::Fingerprint FingerprintOf(const RenderArguments& arguments, const FrameJob& job,
                                 const look::Settings& settings, const std::string& effect);

// Hashes of what a video is made of.
struct VideoContents {
  std::string input;
  std::string layer;  // empty: none, or it is told with the input
};

// Of a picture that is rendered from the job's frame of a video, with the frame's own settings; but
// for the layer's contents. `video` is the hash of that.
media::Fingerprint VideoFrameFingerprintOf(const RenderArguments& arguments, const FrameJob& job,
                                           const look::Settings& settings, const std::string& video,
                                           const std::string& effect);

// Of the video that these arguments render, with the settings as they are before they are fitted.
media::Fingerprint VideoFingerprintOf(const RenderArguments& arguments,
                                      const look::Settings& settings, const VideoContents& contents,
                                      const std::string& effect);

// This program's version and what the effect says about itself.
std::string EffectVersion(headless::EffectHost& host);

}  // namespace vitrell::cli

#endif  // VITRELL_CLI_FRAME_FINGERPRINT_H_
